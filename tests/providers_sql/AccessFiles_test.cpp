// Access databases as a data source: which strings open them, their types, and statements that are refused midway.
#include <gtest/gtest.h>

#include "tests/providers_access/JetFileBuilder.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

class AccessFilesTest : public testing::Test {
protected:
    std::string Jet(const std::string& options = "") const {
        return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path_ + options;
    }
    void SetUp() override { session_ = OpenSession(Jet(";Mode=ReadWriteCreate")); }
    std::string Ask(const std::string& query) { return SqlTestDatabase::AskOn(*session_, query); }
    void MakeNumbers() {
        session_->Execute("CREATE TABLE t (id LONG CONSTRAINT k PRIMARY KEY, name TEXT(10))");
        for (const char* id : {"1", "2", "3", "4"})
            session_->Execute(std::string("INSERT INTO t VALUES (") + id + ", 'Row " + id + "')");
    }

    TempFolder folder_;
    std::string path_ = folder_.File("x.mdb");
    std::unique_ptr<ProviderSession> session_;
};

TEST_F(AccessFilesTest, OpenByEveryStringThatUsersHave) {
    MakeNumbers();
    for (const std::string& connection :
         {Jet(), Jet(";User ID=Admin;Password="), "Provider=Microsoft.ACE.OLEDB.12.0;Data Source=" + path_,
          "Driver={Microsoft Access Driver (*.mdb)};DBQ=" + path_,
          "Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=" + path_ + ";PWD=",
          "Provider=SQLite;Data Source=" + path_,
          "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder_.Path() + "\\X.MDB"}) {
        const auto other = OpenSession(connection);
        EXPECT_EQ(SqlTestDatabase::AskOn(*other, "SELECT COUNT(*) FROM T"), "4") << connection;
        other->Execute("UPDATE t SET name='both' WHERE id=1");
        EXPECT_EQ(Ask("SELECT id FROM t WHERE name = 'BOTH'"), "1") << "one store, whatever the string";
    }
    const auto reading = OpenSession(Jet(";Mode=Read"));
    EXPECT_EQ(ErrorOf([&] { reading->Execute("DELETE FROM t"); }), "Cannot update. Database or object is read-only.");
}

TEST_F(AccessFilesTest, AskForTheDatabasesPassword) {
    using access::JetFileBuilder;
    const std::string file = folder_.Write("p.mdb", JetFileBuilder().Password("Secret7").Build(20));
    const std::string start = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + file;
    for (const char* given : {"", ";Jet OLEDB:Database Password=secret7", ";PWD=x"})
        EXPECT_EQ(ErrorOf([&] { OpenSession(start + given); }), "Not a valid password.") << given;
    for (const char* given : {";Jet OLEDB:Database Password=Secret7", ";PWD=Secret7"})
        EXPECT_EQ(ErrorOf([&] { OpenSession(start + given); }), "") << given;
    EXPECT_EQ(ErrorOf([&] { OpenSession(Jet(";PWD=needless")); }), "Not a valid password.");
    const std::string encrypted = folder_.Write("e.mdb", JetFileBuilder().Put(0x3E, 7, 4).Build(20));
    EXPECT_EQ(ErrorOf([&] { OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + encrypted); }),
              "'" + encrypted + "' is an encrypted Access file, which cannot be read");
}

/// A refused row takes the whole statement back, but not what was written before it.
TEST_F(AccessFilesTest, KeepAStatementWholeOrNotAtAll) {
    MakeNumbers();
    const std::string before = Ask("SELECT id, name FROM t ORDER BY id");
    const auto appender = session_->OpenAppender("SELECT id, name FROM t");
    const std::vector<Value> pending{Value::OfInteger(9), Value::OfText("pending")};
    appender->Append(pending, {true, true});
    for (const char* refused : {"UPDATE t SET id = 5 - id + IIf(id = 3, 7, 0) WHERE id < 9",
                                "UPDATE t SET name = 'a text of ' & id & ' lengths'",
                                "INSERT INTO t VALUES (20, 'a'), (21, 'b'), (2, 'c')"}) {
        const std::string error = ErrorOf([&] { session_->Execute(refused); });
        EXPECT_NE(error, "") << refused;
        EXPECT_EQ(error.find("changed before"), std::string::npos) << error;
        EXPECT_EQ(Ask("SELECT id, name FROM t WHERE id < 9 ORDER BY id"), before) << refused;
    }
    EXPECT_EQ(Ask("SELECT name FROM t WHERE id = 9"), "pending");
    session_->Execute("UPDATE t SET id = id + 100, name = 'x'");
    session_->Execute("DELETE FROM t WHERE id > 102");
    EXPECT_EQ(Ask("SELECT id, name FROM t ORDER BY id"), "101|x;102|x");
}

TEST_F(AccessFilesTest, AreReadAsTheyWereWhileTheyChange) {
    MakeNumbers();
    const auto rows = session_->Query("SELECT id, name FROM t");
    session_->Execute("UPDATE t SET name = 'changed'");
    session_->Execute("DELETE FROM t WHERE id > 2");
    std::vector<Value> row(2);
    std::string seen;
    while (rows->Next(row)) seen += std::string(row[1].AsText()) + ";";
    EXPECT_EQ(seen, "Row 1;Row 2;Row 3;Row 4;");
    EXPECT_EQ(Ask("SELECT COUNT(*) FROM t WHERE name = 'changed'"), "2");
}

}  // namespace
}  // namespace varnel
