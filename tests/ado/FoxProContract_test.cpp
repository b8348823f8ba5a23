#include "tests/ado/DataSourceContract.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

ContractSource MakeFolder() {
    const auto folder = std::make_shared<TempFolder>();
    return {"FoxPro", "Provider=VFPOLEDB.1;Data Source=" + folder->Path(), folder};
}

/// Through the Access providers: Jet's statements over the same files.
ContractSource MakeDbase() {
    const auto folder = std::make_shared<TempFolder>();
    return {"Dbase",
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder->Path() + ";Extended Properties=dBASE 5.0",
            folder};
}

constexpr ContractTable kFoxPro = {
    "create table t (id integer not null, name varchar(20), made datetime, price n(10,2))", false, false};
constexpr ContractTable kDbase = {
    "create table t (id integer not null, name varchar(20), made datetime, price decimal(8,2))", false, false};

INSTANTIATE_TEST_SUITE_P(FoxPro, DataSourceContract,
                         testing::Values(ContractCase{"FoxPro", MakeFolder, kFoxPro},
                                         ContractCase{"Dbase", MakeDbase, kDbase}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
