#include "providers/foxpro/Verify.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/providers_foxpro/DbfBuilder.h"
#include "tests/providers_foxpro/FoxProTest.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> FindingsOf(const DbfBuilder& dbf, const std::string& memos = "") {
    const TempFolder folder;
    if (!memos.empty()) folder.Write("t.fpt", memos);
    return VerifyTable(folder.Write("t.dbf", dbf.Build()));
}

TEST(FoxProVerify, WholeTablesHaveNoFindings) {
    for (const char* name : {"expense details.dbf", "TEST.DBF", "dbase_83.dbf", "dbase_8b.dbf", "dbase_f5.dbf"})
        EXPECT_THAT(VerifyTable(SamplePath(name)), ElementsAre()) << name;
}

TEST(FoxProVerify, EveryFaultIsSaidOnce) {
    DbfBuilder cells = DbfBuilder().Field("N", 'N', 3).Field("D", 'D', 8).Row("  120000101").Row("***20000101");
    cells.Row("***20009999").Row("***", '*').Row("  1", 'x');
    EXPECT_THAT(FindingsOf(cells),
                ElementsAre("'t.dbf' has neither the mark of a live nor of a deleted record in record 5",
                            "'t.dbf' column 'N': Numeric overflow in 2 records, the first of them record 2",
                            "'t.dbf' column 'D': Not a date in record 3"));
    EXPECT_THAT(FindingsOf(DbfBuilder().Field("N", 'N', 3).Row("1").Claims(9)), ElementsAre(HasSubstr("damaged")));
    EXPECT_THAT(FindingsOf(DbfBuilder().Field("N", 'N', 3).RecordBytes(7).Row("1")),
                ElementsAre("'t.dbf' has records of 7 bytes, its fields make 4"));
    EXPECT_THAT(
        FindingsOf(
            DbfBuilder().Field("N", 'N', 3, 0, 2).Field("_NullFlags", '0', 2, 0, 5).Row(std::string("  1\0\0", 5))),
        ElementsAre("'t.dbf' has 2 bytes of null flags, its fields need 1"));
    EXPECT_THAT(
        FindingsOf(DbfBuilder().Field("I", 'I', 4, 0, 0x0C).Row(LittleBytes(1, 4))),
        ElementsAre(HasSubstr("column 'I': the next value to be given, 0, is not above the value in record 1")));
}

TEST(FoxProVerify, MemosLieInTheFileAndBesideOneAnother) {
    const DbfBuilder table =
        DbfBuilder().Field("M", 'M', 4).Row(LittleBytes(8, 4)).Row(LittleBytes(9, 4)).Row(LittleBytes(99, 4));
    std::string memos(768, 'x');
    memos.replace(0, 8, BigBytes(9, 4) + BigBytes(64, 4));
    memos.replace(512, 8, BigBytes(1, 4) + BigBytes(60, 4));
    memos.replace(576, 8, BigBytes(1, 4) + BigBytes(56, 4));
    EXPECT_THAT(FindingsOf(table, memos),
                ElementsAre("'t.dbf' column 'M': Memo file is invalid in record 3", "'t.dbf': 1 memos lie upon others",
                            "'t.dbf': the memo file's next free block, 9, is one in use"));
    EXPECT_THAT(FindingsOf(table),
                ElementsAre("'t.dbf' column 'M': Memo file is missing in 3 records, the first of them "
                            "record 1"));
}

}  // namespace
}  // namespace varnel::foxpro
