// Which connection strings and files are ours, and what is said about the others.
#include <gtest/gtest.h>

#include "platform/StoredPath.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(OpenFile, LeavesTheConnectionStringsOfServersAlone) {
    for (const char* text : {"Provider=SQLOLEDB;Data Source=srv", "DSN=x", "Driver={MySQL ODBC 5.1 Driver};Server=x",
                             "Driver={SQL Server};Server=x", "Provider=MSDAORA;Data Source=x"})
        EXPECT_FALSE(SqlProvider().Accepts(ConnectionString(text))) << text;
    for (const char* text :
         {"Provider=Microsoft.Jet.OLEDB.3.51;Data Source=x", "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=x",
          "Provider=MSDASQL;DSN=Visual FoxPro Database;SourceDB=x.dbc"})
        EXPECT_TRUE(SqlProvider().Accepts(ConnectionString(text))) << text;
}

TEST(OpenFile, LooksAtTheBytesNotAtTheProviderWord) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (ID Long)");
    for (const char* start : {"PROVIDER=Microsoft.Jet.OLEDB.4.0;Jet OLEDB:Database Password=x;DATA SOURCE=",
                              "Provider=VFPOLEDB;Data Source=", "Driver={SQLite3 ODBC Driver};Database=",
                              "Driver={Microsoft Access Driver (*.mdb)};DBQ="}) {
        const auto session = OpenSession(start + database.Path());
        EXPECT_EQ(SqlTestDatabase::AskOn(*session, "SELECT count(*) FROM T"), "0") << start;
    }
}

TEST(OpenFile, SaysWhatIsWrongWithAPath) {
    const TempFolder folder;
    const std::string access =
        folder.Write("a.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, '\0'));
    const std::string empty = folder.Write("empty.mdb"), foreign = folder.Write("foreign.mdb", "hello"),
                      missing = folder.File("none.mdb");
    const std::string jet = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=";
    const struct {
        std::string connection, error;
    } cases[] = {
        {jet + access, "'" + access + "' is an Access file that was cut off"},
        {"Provider=SQLite;Data Source=" + access, "'" + access + "' is an Access file that was cut off"},
        {"Provider=VFPOLEDB;Data Source=" + missing, "Invalid path or file name: '" + missing + "'"},
        {"Provider=VFPOLEDB;Deleted=perhaps;Data Source=" + folder.Path(),
         "The connection string's Deleted is Yes or No, not 'perhaps'."},
        {jet + missing + ";Extended Properties=\"text;HDR=Yes\"", "'" + missing + "' is not a valid path."},
        {jet + folder.Path() + ";Extended Properties=\"Excel 8.0\"", "Could not find installable ISAM."},
        {jet + missing, "Could not find file '" + missing + "'."},
        {"Provider=SQLite;Data Source=" + missing, "Could not find file '" + missing + "'."},
        {jet + empty, "Unrecognized database format '" + empty + "'."},
        {jet + foreign, "Unrecognized database format '" + foreign + "'."},
        {jet + folder.Path(), "'" + folder.Path() + "' is a folder, not a database file."},
    };
    for (const auto& one : cases) EXPECT_EQ(ErrorOf([&] { OpenSession(one.connection); }), one.error) << one.connection;
}

TEST(OpenFile, NamesADamagedFile) {
    const TempFolder folder;
    const std::string path =
        folder.Write("damaged.db", std::string("SQLite format 3\0", 16) + std::string(4096, '\x7F'));
    const std::string error =
        ErrorOf([&] { OpenSession("Provider=SQLite;Data Source=" + path)->Query("SELECT A FROM T"); });
    EXPECT_NE(error.find("'" + path + "' is damaged"), std::string::npos) << error;
}

TEST(OpenFile, CreatesAFileThatIsADatabaseAtOnce) {
    const TempFolder folder;
    const std::string path = folder.File("new.db");
    OpenSession("Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + path);
    EXPECT_TRUE(ReadBytes(path).starts_with("SQLite format 3"));
    EXPECT_NO_THROW(OpenSession("Provider=SQLite;Data Source=" + path));
}

TEST(OpenFile, RefusesChangesWhenOpenedForReading) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (ID Long)");
    const auto session = OpenSession(database.Connection() + ";Mode=Read");
    EXPECT_EQ(SqlTestDatabase::AskOn(*session, "SELECT count(*) FROM T"), "0");
    const std::string refusal = "Cannot update. Database or object is read-only.";
    for (const char* statement :
         {"INSERT INTO T VALUES (1)", "DELETE FROM T", "DROP TABLE T", "CREATE TABLE U (A Long)"})
        EXPECT_EQ(ErrorOf([&] { session->Execute(statement); }), refusal) << statement;
    EXPECT_EQ(ErrorOf([&] { session->OpenAppender("SELECT ID FROM T"); }), refusal);
    EXPECT_NO_THROW(database.Run("INSERT INTO T VALUES (1)"));
}

TEST(OpenFile, NoticesAReplacedFile) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE Old (ID Long)");
    EXPECT_TRUE(database.Session().Alive());
    std::filesystem::rename(database.Path(), database.Path() + ".away");
    EXPECT_FALSE(database.Session().Alive());
    const auto fresh = OpenSession(database.Connection() + ";Mode=ReadWriteCreate");
    EXPECT_THROW(fresh->Query("SELECT ID FROM Old"), Error);
}

}  // namespace
}  // namespace varnel
