// The queries of a real database, run through the data layer.
#include <gtest/gtest.h>

#include "tests/providers_access/SampleFiles.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel::access {
namespace {

TEST(AccessQueries, OverOneTableAreReadLikeTables) {
    const auto path = SamplePath("nwind97.mdb");
    if (!path) GTEST_SKIP() << "no sample file nwind97.mdb";
    const auto session = OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Mode=Read;Data Source=" + *path);
    const auto ask = [&](const std::string& query) { return SqlTestDatabase::AskOn(*session, query); };
    EXPECT_EQ(ask("SELECT count(*) FROM [Ten Most Expensive Products]"), "10");
    EXPECT_EQ(ask("SELECT TOP 1 * FROM [Ten Most Expensive Products]"), "C\u00F4te de Blaye|263.5");
    EXPECT_EQ(ask("SELECT count(*) FROM [Order Details] WHERE Quantity > 100"), "13");
    EXPECT_EQ(ask("SELECT count(*) FROM [Current Product List]"),
              ask("SELECT count(*) FROM Products WHERE Not Discontinued"));
    EXPECT_EQ(ErrorOf([&] { ask("SELECT * FROM Invoices"); }),
              "The query 'Invoices' is of kind select over several tables and cannot be read.");
}

}  // namespace
}  // namespace varnel::access
