// What stored connection strings become for the driver manager, row by row.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Error.h"
#include "providers/odbc/ConnectionText.h"
#include "providers/odbc/OdbcProvider.h"
#include "providers/odbc/SelectText.h"
#include "tests/support/ErrorOf.h"

namespace varnel::odbc {
namespace {

const std::vector<std::string> kFreeTds{"FreeTDS", "MariaDB Unicode"};
const std::vector<std::string> kMicrosoft{"FreeTDS", "ODBC Driver 17 for SQL Server", "ODBC Driver 18 for SQL Server"};
const std::vector<std::string> kOracle{"Oracle 21 ODBC driver"};
const std::vector<std::string> kNone{};

struct Translation {
    const char* stored;
    const std::vector<std::string>& drivers;
    const char* becomes;
};

const Translation kTranslations[] = {
    {"Provider=SQLOLEDB.1;Data Source=srv;Initial Catalog=shop;User ID=sa;Password=p", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1433;UID=sa;PWD=p;Database=shop;ClientCharset=UTF-8"},
    {"Provider=SQLOLEDB;Data Source=srv\\INST;Initial Catalog=shop;User ID=sa;Password=a;b=", kFreeTds,
     "Driver=FreeTDS;Server=srv\\INST;UID=sa;PWD=a;Database=shop;ClientCharset=UTF-8"},
    {"Provider=SQLNCLI11;Server=tcp:srv,1450;Database=shop;Uid=sa;Pwd={p;w}", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1450;UID=sa;PWD={p;w};Database=shop;ClientCharset=UTF-8"},
    {"Provider=MSOLEDBSQL;Data Source=(local)\\MSSQLSERVER;Database=shop;UID=u;PWD=", kFreeTds,
     "Driver=FreeTDS;Server=localhost;Port=1433;UID=u;PWD=;Database=shop;ClientCharset=UTF-8"},
    {"Driver={SQL Server};Server=.;Database=shop;Uid=sa;Pwd=p;APP=x;WSID=w", kFreeTds,
     "Driver=FreeTDS;Server=localhost;Port=1433;UID=sa;PWD=p;Database=shop;APP=x;WSID=w;ClientCharset=UTF-8"},
    {"Driver={ODBC Driver 17 for SQL Server};Server=np:\\\\srv\\pipe\\sql\\query;UID=u;PWD=p;Encrypt=yes", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1433;UID=u;PWD=p;Encryption=require;ClientCharset=UTF-8"},
    {"Driver={SQL Server};Server=srv\\INST,1444;Database=shop;UID=u;PWD=p", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1444;UID=u;PWD=p;Database=shop;ClientCharset=UTF-8"},
    {"Driver={SQL Server};Server=srv;Port=1500;UID=u;PWD=p", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1500;UID=u;PWD=p;ClientCharset=UTF-8"},
    {"Provider=SQLOLEDB;Data Source=srv,1450;Initial Catalog=shop;User ID=sa;Password=p;Encrypt=no", kMicrosoft,
     "Driver=ODBC Driver 18 for SQL Server;Server=srv,1450;UID=sa;PWD=p;Database=shop;Encrypt=no"},
    {"Driver={ODBC Driver 17 for SQL Server};Server=srv\\I;Database=shop;UID=sa;PWD=p", kMicrosoft,
     "Driver=ODBC Driver 17 for SQL Server;Server=srv\\I;UID=sa;PWD=p;Database=shop"},
    {"Driver=libtdsodbc.so;SERVER=127.0.0.1;PORT=14330;UID=sa;PWD=p;DATABASE=d;TDS_Version=7.4", kNone,
     "Driver=libtdsodbc.so;Server=127.0.0.1;Port=14330;UID=sa;PWD=p;Database=d;TDS_Version=7.4;ClientCharset=UTF-8"},
    {"Provider=MSDASQL.1;Extended Properties=\"Driver={SQL Server};SERVER=srv;UID=u;PWD=p;DATABASE=d\"", kFreeTds,
     "Driver=FreeTDS;Server=srv;Port=1433;UID=u;PWD=p;Database=d;ClientCharset=UTF-8"},
    {"Provider=MSDAORA.1;Data Source=ORCL;User ID=scott;Password=tiger", kOracle,
     "Driver=Oracle 21 ODBC driver;DBQ=ORCL;UID=scott;PWD=tiger"},
    {"Provider=OraOLEDB.Oracle;Data Source=//h:1521/x;User ID=s;Password=p;PLSQLRSet=1", kOracle,
     "Driver=Oracle 21 ODBC driver;DBQ=//h:1521/x;UID=s;PWD=p"},
    {"Driver={Microsoft ODBC for Oracle};Server=ORCL;Uid=scott;Pwd=tiger", kOracle,
     "Driver=Oracle 21 ODBC driver;DBQ=ORCL;UID=scott;PWD=tiger"},
    {"Provider=OraOLEDB.Oracle;Data Source=ORCL;OSAuthent=1", kOracle, "Driver=Oracle 21 ODBC driver;DBQ=ORCL;UID=/"},
    {"DSN=warehouse;UID=u;PWD=p@ss", kNone, "DSN=warehouse;UID=u;PWD={p@ss}"},
    {"Provider=MSDASQL;Data Source=warehouse;User ID=u;Password=p;Persist Security Info=True", kNone,
     "DSN=warehouse;UID=u;PWD=p"},
    {"Provider=MSDASQL.1;Password=p;Extended Properties=\"DSN=w;UID=u\"", kNone, "DSN=w;UID=u;PWD=p"},
    {"FILEDSN=/etc/x.dsn;UID=u", kNone, "FILEDSN=/etc/x.dsn;UID=u"},
    {"Driver={PostgreSQL Unicode};Servername=h;Port=5432;Database=d;UID=u;PWD=p", kNone,
     "Driver=PostgreSQL Unicode;Servername=h;Port=5432;Database=d;UID=u;PWD=p"},
};

TEST(ConnectionText, BecomesWhatTheDriverUnderstands) {
    for (const Translation& row : kTranslations) {
        const ConnectionString stored(row.stored);
        EXPECT_TRUE(NamesOdbc(stored)) << row.stored;
        EXPECT_EQ(TranslateConnection(stored, row.drivers).text, row.becomes) << row.stored;
    }
}

TEST(ConnectionText, SaysWhatIsMissingAndHowToGetIt) {
    unsetenv("KRB5CCNAME");
    const struct {
        const char* stored;
        const std::vector<std::string>& drivers;
        const char* words;
    } kCases[] = {
        {"Provider=SQLOLEDB;Data Source=srv;UID=u;PWD=geheim", kNone, "tdsodbc"},
        {"Provider=MSDAORA;Data Source=ORCL;User ID=scott;Password=geheim", kFreeTds, "Instant Client"},
        {"Driver={SQL Server};Server=(localdb)\\v11.0;UID=u;PWD=geheim", kFreeTds, "LocalDB"},
        {"Driver={SQL Server};Server=srv,port;UID=u;PWD=geheim", kFreeTds, "port"},
        {"Provider=SQLOLEDB;Data Source=srv;Integrated Security=SSPI", kFreeTds, "kinit"},
        {"Driver={SQL Server};Server=srv;Trusted_Connection=Yes", kFreeTds, "User ID and Password"},
    };
    for (const auto& row : kCases) {
        const std::string text = ErrorOf([&] { TranslateConnection(ConnectionString(row.stored), row.drivers); });
        EXPECT_NE(text.find(row.words), std::string::npos) << row.stored << " -> " << text;
        EXPECT_EQ(text.find("geheim"), std::string::npos) << text;
    }
}

TEST(ConnectionText, LeavesOtherProvidersAlone) {
    for (const char* stored :
         {"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=x.mdb", "Provider=VFPOLEDB;Data Source=c:\\",
          "Provider=SQLite;Data Source=x", "Server=a;Database=b"}) {
        EXPECT_FALSE(OdbcProvider().Accepts(ConnectionString(stored))) << stored;
    }
}

TEST(SelectText, KeepsNamesAsTheyAreWritten) {
    const auto select = ReadSelect("Select  [ID], [a b]],c], \"X\" FROM [dbo].[T 2] ");
    ASSERT_TRUE(select);
    EXPECT_EQ(select->table, "[dbo].[T 2]");
    EXPECT_EQ(select->columns, (std::vector<std::string>{"[ID]", "[a b]],c]", "\"X\""}));
    EXPECT_TRUE(ReadSelect("select ID,NAME from OWNER.T;"));
    for (const char* text : {"select * from t", "select count(*) from t", "select a from t where b=1",
                             "select a b from t", "select [a from t", "delete from t"}) {
        EXPECT_FALSE(ReadSelect(text)) << text;
    }
}

TEST(SelectText, ReadsAnInsertOfMarkers) {
    const auto insert = ReadInsert("INSERT INTO o.T (ID, \"a b\") VALUES (?,?)");
    ASSERT_TRUE(insert);
    EXPECT_EQ(WriteSelect(*insert), "SELECT ID,\"a b\" FROM o.T");
    for (const char* text :
         {"insert into t values (?)", "insert into t (a) values (1)", "insert into t (a) values (?,?)",
          "insert into t (a,b) values (?)", "insert into t (a) values (?) on duplicate key update"}) {
        EXPECT_FALSE(ReadInsert(text)) << text;
    }
}

}  // namespace
}  // namespace varnel::odbc
