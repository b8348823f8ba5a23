// No password leaves the repository. Every test of this folder looks for them when it ends; here are the spellings and
// the moments that the others do not have.
#include <algorithm>

#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

class SecretsTest : public SessionTest {
protected:
    SecretsTest() {
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "t", 3);
        session_.tables = {{"t", "t_copy", {{"ID", "Integer", 11}}, true, "append"}};
    }
};

TEST_F(SecretsTest, ARunThatSucceedsKeepsThem) {
    session_.targetKind = "MySQL";
    session_.targetConnection = Server().ConnectionString();
    Server().Run({"create table shop." + ServerTable("t_copy") + " (ID int)"});
    repository_.Add(session_);
    RunningProgram shown(Path("varnel"), {"1", "showoutput"}, folder_.Path(), Path("output.txt"));
    EXPECT_EQ(End(shown), 0) << log_ << output_;
    EXPECT_TRUE(LogIsClosed());
}

TEST_F(SecretsTest, EverySpellingOfAFaultyStringKeepsThem) {
    const std::string secret = "k33p-me;out";
    secrets_ = {secret, "k33p-me", "me;out"};
    const char* const strings[] = {
        "Provider=Nobody;Password=\"k33p-me;out\"",
        "Provider=Nobody;Password='k33p-me;out",
        "Provider=Nobody;Jet OLEDB:Database Password='k33p-me;out'",
        "Provider=MSDASQL;Extended Properties=\"Driver={Nobody};PWD={k33p-me;out}\"",
        "Driver={Nobody};UID=sa;PWD={k33p-me;out}",
        "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=1;UID=sa;PWD={k33p-me;out}",
        "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=none;PWD={k33p-me;out}",
        "Provider=SQLOLEDB;Data Source=127.0.0.1,1;User ID=sa;Password=\"k33p-me;out\"",
        "Provider=MSDASQL;Extended Properties=\"DSN=nowhere;UID=sa\";Password='k33p-me;out'",
        "Provider=MSDAORA;Data Source=orcl;User ID=sa;Password='k33p-me;out'",
        "DSN=nowhere;UID=sa;PWD={k33p-me;out}",
        "Provider=SQLite;Data Source=/nowhere/x.db;  passWORD  =  {k33p-me;out}",
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/nowhere/x.db;Jet OLEDB:Database Password=\"k33p-me;out\"",
    };
    for (const char* text : strings) {
        SCOPED_TRACE(text);
        session_.sourceConnection = text;
        const std::string before = session_.targetConnection = SqliteConnection(Path("target.db"));
        EXPECT_EQ(Run(), 1);
        ++session_.id;
        session_.sourceConnection = SqliteConnection(Path("source.db"));
        session_.targetConnection = text;
        session_.tables[0].option = "DROP";
        EXPECT_EQ(Run(), 1);
        ++session_.id;
    }
    EXPECT_EQ(errorLog_, "");
}

}  // namespace
}  // namespace varnel
