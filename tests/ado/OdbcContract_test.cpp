#include "tests/ado/DataSourceContract.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/OdbcNames.h"

namespace varnel {
namespace {

struct NamedServer {
    MariaDbServer server;
    OdbcNames names;
};

/// One server for all cases, reached through the driver manager under a data source name.
ContractSource MakeOdbc() {
    static const auto named = [] {
        auto started = std::make_shared<NamedServer>();
        started->server.Run({"create database if not exists shop"});
        started->names.AddMariaDb("shop", started->server, "shop", "ORACLE");
        return started;
    }();
    const std::string logIn = std::string("UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword + "}";
    return {"Odbc", "DSN=shop;" + logIn, named};
}

INSTANTIATE_TEST_SUITE_P(Odbc, DataSourceContract, testing::Values(ContractCase{"Odbc", MakeOdbc}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
