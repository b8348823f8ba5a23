// Sessions into and out of servers through ODBC by the real program, beside a program without arrays on the same
// driver in the same run (OdbcYardstick.cpp): MariaDB in its Oracle mode as an Oracle server, and the stand-in for SQL
// Server through FreeTDS with a fifth of the rows. Usage: odbc_sessions_bench [rows] (default 1,000,000).
#include <cstdlib>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/SessionsBench.h"
#include "tests/support/OdbcNames.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

constexpr int kSqlServerShare = 5;

/// The yardstick's command. connection: as the driver manager takes it.
std::string Yardstick(const char* direction, const std::string& connection, int rows) {
    setenv("YARDSTICK", connection.c_str(), 1);
    return std::string(VARNEL_YARDSTICK) + " " + direction + " loaded " + std::to_string(rows);
}

class OracleBench : public SessionsBench {
public:
    explicit OracleBench(int rows) : SessionsBench(rows) {
        MakeDatabase(server_);
        names_.AddMariaDb("oracle", server_, "bench", "ORACLE");
        const Side sqlite{"ACCESS", FillSqlite("source.db")};
        AddLongTable(sqlite.connection);
        const Side server{"ORACLE", connection_};
        Add(SessionFor(kByParameters, sqlite, server));
        Add(SessionFor(kByRecords, {"ACCESS", sqlite.connection, "long"}, server));
        Add(FromServer(kToText, {"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File("out.csv")}));
        Add(FromServer(kToSqlite, {"ACCESS", SqliteConnection(File("target.db"))}));
    }

    bool Run() const {
        ShowHead();
        const std::string writing = Yardstick("write", connection_, Rows());
        const Measurement single = Tool("one INSERT a row, Oracle mode", VARNEL_YARDSTICK, Fresh(), writing);
        bool allRan = Ours("SQLite -> ORACLE, parameters", kByParameters, Fresh(), single.seconds);
        allRan &= Ours("SQLite -> ORACLE, records", kByRecords, Fresh(), single.seconds);
        const Measurement read =
            Tool("SQLFetch and SQLGetData", VARNEL_YARDSTICK, "", Yardstick("read", connection_, Rows()));
        allRan &= Ours("ORACLE -> delimited TEXT", kToText, "", read.seconds);
        allRan &= Ours("ORACLE -> SQLite", kToSqlite, FreshSqlite(), read.seconds);
        return allRan;
    }

private:
    enum SessionNumber { kByParameters = 1, kByRecords, kToText, kToSqlite };

    /// The same rows with a long column among them: such a table goes into an Oracle server record by record.
    void AddLongTable(const std::string& connection) const {
        std::string statement = BenchTableStatement("long");
        const std::string_view declared = "varchar(40)";
        ExecuteOn(connection, statement.replace(statement.find(declared), declared.size(), "text"));
        FillBenchTable(connection, "long", Rows());
        CloseIdleSessions();
    }

    TestSession FromServer(int id, const Side& target) const {
        TestSession session = SessionFor(id, {"ORACLE", connection_}, target);
        session.tables[0].sourceOwner = "bench";
        return session;
    }

    std::string Fresh() const {
        return MariaDbClient(server_) +
               " -e \"set sql_mode='ORACLE'; drop table if exists loaded; create table loaded (id Number(10,0), "
               "quantity Number(10,0), counter Number(20,0), price Number(10,2), rate Number(12,4), code Varchar2(12), "
               "name Varchar2(40), place Varchar2(30), made Date, changed Date)\"";
    }

    MariaDbServer server_;
    OdbcNames names_;
    const std::string connection_ =
        std::string("DSN=oracle;UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword + "}";
};

class SqlServerBench : public SessionsBench {
public:
    explicit SqlServerBench(int rows) : SessionsBench(rows) {
        const Side sqlite{"ACCESS", FillSqlite("source.db")};
        ExecuteOn(connection_,
                  "create table [dbo].[loaded] (id int, quantity int, counter bigint, price decimal(10,2), rate "
                  "decimal(12,4), code nvarchar(12), name nvarchar(40), place nvarchar(30), made datetime, changed "
                  "datetime)");
        TestSession into = SessionFor(kToServer, sqlite, {"MSSQL", connection_});
        into.tables[0].targetOwner = "dbo";
        Add(into);
        TestSession from = SessionFor(kToText, {"MSSQL", connection_},
                                      {"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File("out.csv")});
        from.tables[0].sourceOwner = "dbo";
        Add(from);
    }

    bool Run() const {
        ShowHead();
        const std::string plain = "Driver=FreeTDS;SERVER=127.0.0.1;PORT=" + std::to_string(server_.Port()) +
                                  ";UID=" + TdsServer::kUser + ";PWD={" + TdsServer::kPassword +
                                  "};DATABASE=shop;TDS_Version=7.4;ClientCharset=UTF-8";
        const Measurement single =
            Tool("one INSERT a row, FreeTDS", VARNEL_YARDSTICK, Fresh(), Yardstick("write", plain, Rows()));
        bool allRan = Ours("SQLite -> MSSQL", kToServer, Fresh(), single.seconds);
        const Measurement read =
            Tool("SQLFetch and SQLGetData, FreeTDS", VARNEL_YARDSTICK, "", Yardstick("read", plain, Rows()));
        allRan &= Ours("MSSQL -> delimited TEXT", kToText, "", read.seconds);
        return allRan;
    }

private:
    enum SessionNumber { kToServer = 1, kToText };

    std::string Fresh() const { return "sqlite3 " + server_.File() + " 'delete from loaded'"; }

    TdsServer server_;
    const std::string connection_ = server_.ConnectionString();
};

struct OdbcSessionsBench {
    explicit OdbcSessionsBench(int count) : rows(count) {}
    bool Run() const {
        const bool allRan = OracleBench(rows).Run();
        return SqlServerBench(rows / kSqlServerShare).Run() && allRan;
    }
    int rows;
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::OdbcSessionsBench>(argc, argv);
}
