// The contract over every file engine. dBASE: through the Access providers, Jet's statements over FoxPro files.
#include "tests/ado/DataSourceContract.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"

namespace varnel {
namespace {

ContractSource MakeAccess() {
    const auto folder = std::make_shared<TempFolder>();
    return {AccessConnection(folder->File("contract.mdb")), folder};
}

ContractSource MakeSqlite() {
    const auto folder = std::make_shared<TempFolder>();
    return {SqliteConnection(folder->File("contract.db")), folder};
}

ContractSource MakeFoxPro() {
    const auto folder = std::make_shared<TempFolder>();
    return {"Provider=VFPOLEDB.1;Data Source=" + folder->Path(), folder};
}

ContractSource MakeDbase() {
    const auto folder = std::make_shared<TempFolder>();
    return {"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder->Path() + ";Extended Properties=dBASE 5.0",
            folder};
}

constexpr ContractTable kFoxPro = {
    "create table t (id integer not null, name varchar(20), made datetime, price n(10,2))", false, false};
constexpr ContractTable kDbase = {
    "create table t (id integer not null, name varchar(20), made datetime, price decimal(8,2))", false, false};

INSTANTIATE_TEST_SUITE_P(Files, DataSourceContract,
                         testing::Values(ContractCase{"Access", MakeAccess}, ContractCase{"Sqlite", MakeSqlite},
                                         ContractCase{"FoxPro", MakeFoxPro, kFoxPro},
                                         ContractCase{"Dbase", MakeDbase, kDbase}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
