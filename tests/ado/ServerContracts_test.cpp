// The contract over one MariaDB server, reached as MySQL and as Oracle's stand-in under a data source name.
#include "tests/ado/DataSourceContract.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/OdbcNames.h"

namespace varnel {
namespace {

struct NamedServer {
    MariaDbServer server;
    OdbcNames names;

    NamedServer() {
        server.Run({"create database if not exists shop"});
        names.AddMariaDb("shop", server, "shop", "ORACLE");
    }
};

/// One server for all cases; each case begins with an empty table of its own making.
const std::shared_ptr<NamedServer>& Server() {
    static const auto server = std::make_shared<NamedServer>();
    return server;
}

ContractSource MakeMySql() {
    return {Server()->server.ConnectionString("shop"), Server()};
}

ContractSource MakeOdbc() {
    const std::string logIn = std::string("UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword + "}";
    return {"DSN=shop;" + logIn, Server()};
}

INSTANTIATE_TEST_SUITE_P(Servers, DataSourceContract,
                         testing::Values(ContractCase{"MySql", MakeMySql}, ContractCase{"Odbc", MakeOdbc}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
