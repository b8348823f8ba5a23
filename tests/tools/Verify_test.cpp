#include <gmock/gmock.h>

#include <fstream>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class VerifyCommandTest : public AdminTest {};

TEST_F(VerifyCommandTest, TellsSoundFilesFromDamagedOnes) {
    Sql("a.db", "CREATE TABLE T (N LONG PRIMARY KEY, S TEXT(50))");
    Sql("a.db", "INSERT INTO T (N, S) VALUES (1, 'one')");
    EXPECT_THAT(Output({"verify", "a.db"}), testing::MatchesRegex("a\\.db: sound \\([0-9]+ pages\\)\n"));

    EXPECT_THAT(Output({"verify", "a.db", "--json"}),
                testing::AllOf(HasSubstr("\"file\": \"a.db\",\n  \"sound\": true,"), HasSubstr("\"findings\": []")));

    std::fstream file(Folder() + "/a.db", std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(28);  // the number of pages, high byte first
    file.write("\0\0\1\0", 4);
    file.close();
    const ProgramResult damaged = Admin({"verify", "a.db"});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_THAT(damaged.out + damaged.err, testing::Not(HasSubstr("sound")));
}

TEST_F(VerifyCommandTest, RefusesWhatItDoesNotKnow) {
    WriteFile("note.txt", "some text");
    const ProgramResult text = Admin({"verify", "note.txt"}), missing = Admin({"verify", "none.mdb"});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.err, HasSubstr("'note.txt' is no Access or SQLite database and no FoxPro table"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, EndsWith("The file 'none.mdb' does not exist.\n"));
}

}  // namespace
}  // namespace varnel
