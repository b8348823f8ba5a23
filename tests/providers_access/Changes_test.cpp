// Rows that are added, changed and deleted.
#include <filesystem>

#include "tests/providers_access/RandomChanges.h"
#include "tests/providers_access/WriteTest.h"

namespace varnel::access {
namespace {

TEST_F(WriteTest, RandomChangesStayEqualToTheModel) {
    Make("t",
         "A LONG PRIMARY KEY, B TEXT(60) PRIMARY KEY, C DATETIME UNIQUE, D MEMO, E OLEOBJECT, F DECIMAL(18,4), G "
         "VARBINARY(300), H YESNO, I TEXT(255), J TEXT(30) UNIQUE, K DOUBLE");
    Make("other", "A LONG, B MEMO");
    for (const unsigned seed : {1U, 2U}) {
        RandomChanges changes(file_, *database_, "t", seed), others(file_, *database_, "other", seed);
        for (int round = 0; round < 5 && !HasFailure(); ++round) {
            changes.Change(300, round == 3 ? 20 : 150);
            others.Change(60, 50);
            changes.Check();
            others.Check();
        }
        EXPECT_GT(changes.Refused(), 10);
        changes.DeleteAll();
        changes.Check();
        changes.Change(50, 50);
        changes.Check();
    }
}

struct SampleTable {
    const char *file, *table;
};
class SampleTables : public WriteTest, public testing::WithParamInterface<SampleTable> {};

TEST_P(SampleTables, TakeRandomChanges) {
    const auto sample = SamplePath(GetParam().file);
    if (!sample) GTEST_SKIP() << GetParam().file << " is not on this machine";
    const std::string path = folder_.File("copy.mdb");
    std::filesystem::copy_file(*sample, path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    for (const unsigned seed : {7U, 8U}) {
        Open(path);
        RandomChanges changes(file_, *database_, GetParam().table, seed);
        changes.Change(300, 120);
        changes.Check();
        changes.Change(100, 20);
        changes.Check();
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleTables,
                         testing::Values(SampleTable{"compIndexTestV2000.mdb", "Table1"},
                                         SampleTable{"overflowTestV2000.mdb", "Table1"},
                                         SampleTable{"testIndexPropertiesV2000.mdb", "TableIgnoreNulls1"},
                                         SampleTable{"testIndexPropertiesV2000.mdb", "TableUnique2_temp"}),
                         [](const auto& row) {
                             std::string name = std::string(row.param.file) + row.param.table;
                             std::erase_if(name,
                                           [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
                             return name;
                         });

}  // namespace
}  // namespace varnel::access
