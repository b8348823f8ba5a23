// Whole sessions through the real program, beside the command-line tools doing the same work in the same run.
// Usage: load_bench [rows] (default 1,000,000). Prints a table; the figures mean something only beside each other.
#include <cstdio>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/SessionsBench.h"

namespace varnel {
namespace {

constexpr int kFewRows = 10'000;

enum SessionNumber { kSqliteToSqlite = 1, kSqliteToMySql, kMySqlToSqlite };
constexpr int kOfFewRows = 10;  ///< added to the numbers of sessions on the table of few rows
constexpr int kEmptyTable = 20;

class LoadBench : public SessionsBench {
public:
    explicit LoadBench(int rows) : SessionsBench(rows) {
        MakeDatabase(server_);
        Prepare("source", Rows(), 0);
        WriteBenchInserts(sqlite_, "source", "loaded", File("load.sql"));
        Prepare("few", kFewRows, kOfFewRows);
        ExecuteOn(sqlite_, BenchTableStatement("empty"));
        Add(SessionFor(kEmptyTable, {"ACCESS", sqlite_, "empty"}, {"ACCESS", target_}));
    }

    bool Run() const {
        ShowHead();
        const bool allRan = RunPairs();
        MeasureMemoryAtFewRows();
        MeasureEmptySession();
        return allRan;
    }

private:
    /// A table in SQLite and the server, and the sessions that load it.
    void Prepare(const std::string& table, int rows, int shift) {
        for (const std::string& connection : {sqlite_, mySql_}) ExecuteOn(connection, BenchTableStatement(table));
        FillBenchTable(sqlite_, table, rows);
        WriteBenchInserts(sqlite_, table, table, File("fill.sql"));
        Shell(MariaDbClient(server_) + " < fill.sql; rm fill.sql");
        const Side sqlite{"ACCESS", sqlite_, table}, mySql{"MySQL", mySql_, table}, into{"ACCESS", target_};
        Add(SessionFor(kSqliteToSqlite + shift, sqlite, into));
        Add(SessionFor(kSqliteToMySql + shift, sqlite, {"MySQL", mySql_}));
        TestSession fromServer = SessionFor(kMySqlToSqlite + shift, mySql, into);
        fromServer.tables[0].sourceOwner = "bench";
        Add(fromServer);
    }

    bool RunPairs() const {
        const std::string list = BenchColumnList();
        const Measurement dump = Tool("SQLite -> SQLite: sqlite3 .dump | sqlite3", "sqlite3", "",
                                      "rm -f target.db; sqlite3 source.db '.dump source' | sqlite3 target.db");
        bool allRan = Ours("SQLite -> SQLite", kSqliteToSqlite, FreshSqlite(), dump.seconds);
        Tool("  (INSERT … SELECT inside one sqlite3)", "sqlite3", FreshSqlite(),
             "sqlite3 target.db \"attach 'source.db' as s; insert into loaded (" + list + ") select " + list +
                 " from s.source order by rowid\"");
        const Measurement client = Tool("SQLite -> MySQL: mariadb < the same 100-row INSERTs", "mariadb",
                                        FreshMariaDb(server_), MariaDbClient(server_) + " < load.sql");
        allRan &= Ours("SQLite -> MySQL", kSqliteToMySql, FreshMariaDb(server_), client.seconds);
        const Measurement piped =
            Tool("MySQL -> SQLite: mariadb --quick | sqlite3 .import", "sqlite3", FreshSqlite(),
                 MariaDbClient(server_) + " --quick --batch --skip-column-names -e 'select " + list +
                     " from source' | sqlite3 target.db -cmd '.mode tabs' '.import /dev/stdin loaded'");
        allRan &= Ours("MySQL -> SQLite", kMySqlToSqlite, FreshSqlite(), piped.seconds);
        return allRan;
    }

    void MeasureMemoryAtFewRows() const {
        for (const int session : {kSqliteToSqlite, kSqliteToMySql, kMySqlToSqlite}) {
            const Measurement m = Best(session == kSqliteToMySql ? FreshMariaDb(server_) : FreshSqlite(),
                                       "exec ./varnel " + std::to_string(session + kOfFewRows), 1);
            std::printf("peak memory of session %d at %d rows: %.1f MiB (status %d)\n", session, kFewRows,
                        m.peakMebibytes, m.status);
        }
    }

    void MeasureEmptySession() const {
        constexpr int kEmptyRuns = 21;
        const Measurement m = Best(FreshSqlite(), "exec ./varnel " + std::to_string(kEmptyTable), kEmptyRuns);
        std::printf("a session with one empty table: %.1f ms (least of %d, status %d)\n", m.seconds * 1000, kEmptyRuns,
                    m.status);
    }

    MariaDbServer server_;
    const std::string sqlite_ = SqliteConnection(File("source.db"));
    const std::string target_ = SqliteConnection(File("target.db"));
    const std::string mySql_ = server_.ConnectionString("bench");
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::LoadBench>(argc, argv);
}
