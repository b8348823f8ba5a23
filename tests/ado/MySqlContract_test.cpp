#include "tests/ado/DataSourceContract.h"
#include "tests/support/MariaDbServer.h"

namespace varnel {
namespace {

/// One server for all cases; each case begins with an empty table of its own making.
ContractSource MakeMySql() {
    static const auto server = [] {
        auto started = std::make_shared<MariaDbServer>();
        started->Run({"create database if not exists shop"});
        return started;
    }();
    return {"MySql", server->ConnectionString("shop"), server};
}

INSTANTIATE_TEST_SUITE_P(MySql, DataSourceContract, testing::Values(ContractCase{"MySql", MakeMySql}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
