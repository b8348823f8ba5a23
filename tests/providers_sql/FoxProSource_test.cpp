// FoxPro and dBASE files under the connection strings that people have.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Error.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

/// A folder with sample files, and a table T of names whose third row is marked as deleted.
class FoxProSource : public testing::Test {
protected:
    FoxProSource() {
        const auto samples = std::filesystem::path(VARNEL_TESTS_FOLDER) / "data/foxpro";
        std::filesystem::copy(samples, folder_.Path(), std::filesystem::copy_options::recursive);
        const auto session = OpenSession("Provider=VFPOLEDB;Data Source=" + folder_.Path());
        session->Execute("CREATE TABLE T (ID I, NAME C(8), SEEN T)");
        for (const char* row : {"(1,'Smith',{^2026-11-18 16:23:05})", "(2,'smithers',{})", "(3,'Brown',{})"})
            session->Execute(std::string("INSERT INTO T VALUES ") + row);
        session->Execute("DELETE FROM T WHERE ID=3");
    }
    std::string Ask(const std::string& connection, const std::string& query) const {
        return SqlTestDatabase::AskOn(*OpenSession(connection), query);
    }

    TempFolder folder_;
};

TEST_F(FoxProSource, OpensUnderEveryStringOfItsDrivers) {
    const std::string path = folder_.Path();
    const std::string jet = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + ";Extended Properties=";
    for (const std::string& connection :
         {"Provider=VFPOLEDB.1;Data Source=" + path + "/;Password=\"\";Collating Sequence=MACHINE",
          "Provider=vfpoledb;Data Source=" + path + "/T.DBF;Mode=Share Deny None",
          "Provider=VFPOLEDB;Data Source=" + path + "/expenses.dbc;Deleted=True;Null=True;ANSI=True",
          "Driver={Microsoft Visual FoxPro Driver};SourceType=DBF;SourceDB=" + path + ";Exclusive=No;DELETED=YES",
          "DSN=Visual FoxPro Tables;UID=;SourceDB=" + path + ";SourceType=DBF;",
          "Provider=MSDASQL.1;Extended Properties=\"Driver={Microsoft Visual FoxPro Driver};SourceDB=" + path + "\"",
          "Driver={Microsoft dBASE Driver (*.dbf)};DriverID=277;Dbq=" + path, jet + "dBASE IV", jet + "\"FoxPro 2.6;\"",
          "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + "/T.dbf"})
        EXPECT_EQ(Ask(connection, "SELECT count(*) FROM T"), "2") << connection;
}

TEST_F(FoxProSource, DoesWhatItsOptionsSay) {
    const std::string vfp = "Provider=VFPOLEDB;Data Source=" + folder_.Path();
    const std::string jet = "Driver={Microsoft dBASE Driver (*.dbf)};Dbq=" + folder_.Path();
    const struct {
        std::string connection;
        const char *query, *rows;
    } cases[] = {
        {vfp, "SELECT ID FROM T", "1;2"},
        {vfp + ";Deleted=No", "SELECT ID FROM T", "1;2;3"},
        {vfp + ";Deleted=No", "SELECT count(*) FROM T", "3"},
        {vfp, "SELECT ID FROM T WHERE NAME='Smi'", ""},
        {vfp + ";ANSI=False", "SELECT ID FROM T WHERE NAME='Smi'", "1"},
        {vfp, "SELECT NAME FROM T WHERE NAME='Smith'", "Smith   "},
        {vfp, "SELECT ID FROM T WHERE NAME='SMITH'", ""},
        {vfp, "SELECT ID FROM T WHERE RECNO()=2", "2"},
        {vfp, "SELECT SEEN+5 FROM T WHERE !EMPTY(SEEN)", "11/18/2026 4:23:10 PM"},
        // the Access family compares without case and trims what fills a field
        {jet, "SELECT [NAME] FROM [T] WHERE [NAME] = 'SMITH'", "Smith"},
        {jet, "SELECT ID FROM T WHERE Name Like 'smith%' And Seen Is Null", "2"},
        {jet, "SELECT max(Name & '!') FROM T", "smithers!"},
        // files of the older dialects, and texts in the code page of the table or of the string
        {vfp, "SELECT TRIM(COMPANYNAM) FROM suppliers WHERE SUPPLIERID=3 AND COUNTRY='USA'",
         "Grandma Kelly's Homestead"},
        {vfp, "SELECT count(*) FROM [expense details] WHERE expenseite > $100", "3"},
        {vfp, "SELECT count(*) FROM expense details", "6"},
        {vfp, "SELECT TRIM(name) FROM cp1251 WHERE rn=2",
         "\xD0\xB1\xD0\xBE\xD0\xBB\xD1\x8C\xD0\xBD\xD0\xB8\xD1\x87"
         "\xD0\xBD\xD0\xBE\xD0\xB5"},
    };
    for (const auto& one : cases) EXPECT_EQ(Ask(one.connection, one.query), one.rows) << one.connection << one.query;
}

TEST_F(FoxProSource, MakesTablesInBothDialects) {
    const std::string vfp = "Provider=VFPOLEDB;Data Source=" + folder_.Path();
    const auto strict = OpenSession(vfp + ";Null=No");
    strict->Execute("CREATE TABLE N (ID I)");
    EXPECT_NE(ErrorOf([&] { strict->Execute("INSERT INTO N VALUES (NULL)"); }), "");
    const auto jet = OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder_.Path() +
                                 ";Extended Properties=dBASE 5.0");
    jet->Execute(
        "CREATE TABLE J ([A] Counter, [B] Text(20), C Memo, D Double, E Currency, F DateTime, G YesNo, H Decimal(8,3), "
        "I OLEObject, J Long)");
    jet->Execute("INSERT INTO J (B,C,D,E,F,G,H,J) VALUES ('b','c',1.5,2.25,#11/18/2026 4:23:05 PM#,Yes,3.125,-4)");
    EXPECT_EQ(SqlTestDatabase::AskOn(*jet, "SELECT * FROM J"),
              "1|b|c|1.5|2.25|11/18/2026 4:23:05 PM|True|3.125|NULL|-4");
    EXPECT_NE(ErrorOf([&] { jet->Execute("CREATE TABLE K (A Frob)"); }).find("FROB"), std::string::npos);
    jet->Execute("DROP TABLE J");
    EXPECT_NE(ErrorOf([&] { SqlTestDatabase::AskOn(*jet, "SELECT * FROM J"); }), "");
    const auto readOnly = OpenSession(vfp + ";Mode=Read");
    EXPECT_NE(ErrorOf([&] { readOnly->Execute("DELETE FROM T"); }).find("read-only"), std::string::npos);
}

}  // namespace
}  // namespace varnel
