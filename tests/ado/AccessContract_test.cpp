#include "tests/ado/DataSourceContract.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"

namespace varnel {
namespace {

ContractSource MakeAccess() {
    const auto folder = std::make_shared<TempFolder>();
    return {"Access", AccessConnection(folder->File("contract.mdb")), folder};
}

INSTANTIATE_TEST_SUITE_P(Access, DataSourceContract, testing::Values(ContractCase{"Access", MakeAccess}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
