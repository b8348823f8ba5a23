#include "tests/ado/DataSourceContract.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"

namespace varnel {
namespace {

ContractSource MakeSqlite() {
    const auto folder = std::make_shared<TempFolder>();
    return {"Sqlite", SqliteConnection(folder->File("contract.db")), folder};
}

INSTANTIATE_TEST_SUITE_P(Sqlite, DataSourceContract, testing::Values(ContractCase{"Sqlite", MakeSqlite}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
