#include <gmock/gmock.h>

#include <filesystem>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::HasSubstr;

class CopyRepositoryTest : public AdminTest {
protected:
    /// Two sessions, one of them run, and a table of the user's own.
    void MakeRepository() const {
        for (const char* id : {"7", "12"}) {
            const std::string number = id;
            const ProgramResult imported =
                Import("[[session]]\nid = " + number + "\nname = \"Żółte " + number +
                       "\"\nsource = {kind = \"ACCESS\", connection = 'DSN=a'}\n"
                       "target = {kind = \"MySQL\", connection = 'DSN=b'}\n"
                       "[[session.table]]\nsource = \"t\"\ntarget = \"t" +
                       number + "\"\nexists = true\ncolumns = [\"z Boolean\", \"a VarWchar(60) -> b varchar(80)\"]\n");
            ASSERT_EQ(imported.status, 0) << imported.err;
        }
        Sql("vrrepo.mdb", "UPDATE sessions SET LastRunDate='11/18/2026' WHERE sessionid=7");
        Sql("vrrepo.mdb", "CREATE TABLE notes (at DATETIME, text MEMO, done YESNO, price CURRENCY, pic OLEOBJECT)");
        Sql("vrrepo.mdb", "INSERT INTO notes VALUES (#2003-07-15 13:05:09#, '', True, 0.0001, Null)");
    }
    std::string Everything(const std::string& file) const {
        std::string text;
        for (const char* table : {"sessions", "vrtabs", "SrcDCols", "notes"})
            text += Sql(file, std::string("SELECT * FROM ") + table);
        for (const char* id : {"7", "12"}) text += Output({"show", id, "--repository", file});
        return text;
    }
    std::string Start(const std::string& file) const { return Bytes(file).substr(0, 19); }
    bool Exists(const std::string& file) const { return std::filesystem::exists(Folder() + "/" + file); }
};

TEST_F(CopyRepositoryTest, CarriesEveryTableAndRowBothWays) {
    MakeRepository();
    EXPECT_EQ(Start("vrrepo.mdb"), std::string("\0\1\0\0Standard Jet DB", 19));
    const std::string before = Everything("vrrepo.mdb");
    ASSERT_THAT(before, HasSubstr("0.0001"));
    EXPECT_THAT(Output({"copy", "vrrepo.mdb", "s.db", "--sqlite"}), HasSubstr("sessions: 2 rows\n"));
    EXPECT_EQ(Start("s.db").substr(0, 13), "SQLite format");
    EXPECT_EQ(Everything("s.db"), before);
    Output({"copy", "s.db", "again.mdb"});
    EXPECT_EQ(Everything("again.mdb"), before);
    EXPECT_THAT(Admin({"sql", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=again.mdb",
                       "INSERT INTO vrtabs (SessionId, TabID) VALUES (7, 1)"})
                    .err,
                HasSubstr("duplicate"));
}

TEST_F(CopyRepositoryTest, KeepsRowsThatNoKeyCouldHold) {
    Sql("old.db", "CREATE TABLE sessions (sessionid LONG, SessionName TEXT(50))");
    for (const char* id : {"2", "1", "2", "Null"})
        Sql("old.db", std::string("INSERT INTO sessions VALUES (") + id + ", 'x')");
    Output({"copy", "old.db", "new.mdb"});
    EXPECT_EQ(Sql("new.mdb", "SELECT sessionid FROM sessions"), Sql("old.db", "SELECT sessionid FROM sessions"));
}

TEST_F(CopyRepositoryTest, LeavesNothingHalfMade) {
    MakeRepository();
    const ProgramResult exists = Admin({"copy", "vrrepo.mdb", "vrrepo.mdb"});
    EXPECT_EQ(exists.status, 1);
    EXPECT_THAT(exists.err, HasSubstr("exists already"));
    Sql("odd.db", "CREATE TABLE odd (big BIGINT)");
    const ProgramResult odd = Admin({"copy", "odd.db", "odd.mdb"});
    EXPECT_EQ(odd.status, 1);
    EXPECT_THAT(odd.err, HasSubstr("the column big of the table odd"));
    EXPECT_FALSE(Exists("odd.mdb"));
    EXPECT_EQ(Admin({"copy", "none.mdb", "x.mdb"}).status, 1);
    EXPECT_FALSE(Exists("x.mdb"));
}

}  // namespace
}  // namespace varnel
