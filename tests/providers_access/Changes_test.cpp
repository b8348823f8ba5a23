// Rows that are added, changed and deleted.
#include <gmock/gmock.h>

#include "tests/providers_access/RandomChanges.h"
#include "tests/providers_access/WriteTest.h"

namespace varnel::access {
namespace {

TEST_F(WriteTest, RandomChangesStayEqualToTheModel) {
    Make("t",
         "A LONG PRIMARY KEY, B TEXT(60) PRIMARY KEY, C DATETIME UNIQUE, D MEMO, E OLEOBJECT, F DECIMAL(18,4) PRIMARY "
         "KEY, G VARBINARY(300) PRIMARY KEY, H YESNO PRIMARY KEY, I TEXT(255), J TEXT(30) UNIQUE, K DOUBLE PRIMARY "
         "KEY, L CURRENCY PRIMARY KEY, M SINGLE PRIMARY KEY, N BYTE PRIMARY KEY, O SHORT PRIMARY KEY");
    Make("other", "A LONG, B MEMO, C TEXT(40)");
    for (const unsigned seed : {1U, 2U}) {
        RandomChanges changes(file_, *database_, "t", seed), others(file_, *database_, "other", seed);
        for (int round = 0; round < 5 && !HasFailure(); ++round) {
            changes.Change(300, round == 3 ? 20 : 150);
            others.Change(60, 50);
            changes.Check();
            others.Check();
        }
        EXPECT_GT(changes.Refused(), 10);
        EXPECT_THAT(LinesOf("mdb-export -H " + path_ + " other"), testing::UnorderedElementsAreArray(others.AsCsv()));
        changes.DeleteAll();
        changes.Check();
        changes.Change(50, 50);
        changes.Check();
    }
}

TEST_F(WriteTest, TablesOfSamplesTakeRandomChanges) {
    const std::pair<const char*, const char*> tables[] = {{"compIndexTestV2000.mdb", "Table1"},
                                                          {"overflowTestV2000.mdb", "Table1"},
                                                          {"testIndexPropertiesV2000.mdb", "TableIgnoreNulls1"},
                                                          {"testIndexPropertiesV2000.mdb", "TableUnique2_temp"}};
    for (const auto& [file, table] : tables) {
        SCOPED_TRACE(file);
        OpenSample(file);
        for (const unsigned seed : {7U, 8U}) {
            Reopen();
            RandomChanges changes(file_, *database_, table, seed);
            changes.Change(300, 120);
            changes.Check();
            changes.Change(100, 20);
            changes.Check();
        }
    }
}

}  // namespace
}  // namespace varnel::access
