// Whole sessions through the real program, beside the command-line tools doing the same work in the same run.
// Usage: load_bench [rows] (default 1,000,000). Prints a table; the figures mean something only beside each other.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/Measure.h"
#include "providers/ProviderList.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

constexpr int kRuns = 3;
constexpr int kSmallRows = 10'000;

enum SessionNumber { kSqliteToSqlite = 1, kSqliteToMySql, kMySqlToSqlite, kEmptyTable };

class LoadBench {
public:
    explicit LoadBench(int rows) : rows_(rows) {
        SetProviders(AllProviders());
        InstallVarnel(folder_.Path());
        server_.Run({"create database if not exists bench", "grant all on bench.* to 'loader'@'localhost'",
                     "grant all on bench.* to 'loader'@'127.0.0.1'"});
    }

    bool Run() {
        std::printf("%-42s %12s %10s %10s %8s\n", "", "rows/s", "seconds", "peak MiB", "ratio");
        Prepare("source", rows_);
        const bool allRan = RunPairs();
        MeasureMemoryAtFewRows();
        MeasureEmptySession();
        return allRan;
    }

private:
    void Prepare(const std::string& table, int rows) {
        for (const std::string& connection : {sqlite_, mySql_}) {
            ExecuteOn(connection, BenchTableStatement(table));
        }
        FillBenchTable(sqlite_, table, rows);
        WriteBenchInserts(sqlite_, table, table, folder_.File(table + ".sql"));
        Measure(MariaDb() + " bench < " + table + ".sql", folder_.Path());
        if (table == "source") {
            WriteBenchInserts(sqlite_, table, "loaded", folder_.File("load.sql"));
            std::filesystem::remove(folder_.File(table + ".sql"));
        }
        TestRepositoryOnce().Add(Session(kSqliteToSqlite + shift_, table, "ACCESS", sqlite_, "ACCESS", target_));
        TestRepositoryOnce().Add(Session(kSqliteToMySql + shift_, table, "ACCESS", sqlite_, "MySQL", mySql_));
        TestRepositoryOnce().Add(Session(kMySqlToSqlite + shift_, table, "MySQL", mySql_, "ACCESS", target_));
        CloseIdleSessions();
    }

    TestRepository& TestRepositoryOnce() {
        if (!repository_) repository_ = std::make_unique<TestRepository>(folder_.Path());
        return *repository_;
    }

    TestSession Session(int id, const std::string& table, const char* sourceKind, const std::string& source,
                        const char* targetKind, const std::string& target) const {
        TestSession session;
        session.id = id;
        session.sourceKind = sourceKind;
        session.sourceConnection = source;
        session.targetKind = targetKind;
        session.targetConnection = target;
        session.log = folder_.File("load.log");
        session.tables = {{table, "loaded", BenchColumns(), true, "append", "", "", "bench", ""}};
        return session;
    }

    std::string MariaDb() const {
        return "MYSQL_PWD=\"" + std::string(MariaDbServer::kPassword) +
               "\" mariadb --no-defaults --user=" + MariaDbServer::kUser + " --socket=" + server_.Socket();
    }

    /// Shell commands that leave an empty table "loaded" in either target.
    std::string FreshSqlite() const {
        return "rm -f target.db; sqlite3 target.db '" + BenchTableStatement("loaded") + "'";
    }
    std::string FreshMySql() const {
        return MariaDb() + " bench -e 'drop table if exists loaded; " + BenchTableStatement("loaded") + "'";
    }

    bool RunPairs() {
        const std::string list = BenchColumnList();
        bool allRan = Compare("SQLite -> SQLite", kSqliteToSqlite, FreshSqlite(), "sqlite3 .dump | sqlite3",
                              "rm -f target.db; sqlite3 source.db '.dump source' | sqlite3 target.db");
        const Measurement inside = MedianOf(kRuns, FreshSqlite(),
                                            "sqlite3 target.db \"attach 'source.db' as s; insert into loaded (" + list +
                                                ") select " + list + " from s.source order by rowid\"",
                                            folder_.Path());
        Show("  (INSERT … SELECT inside one sqlite3)", inside, 0);
        allRan &= Compare("SQLite -> MySQL", kSqliteToMySql, FreshMySql(), "mariadb < the same 100-row INSERTs",
                          MariaDb() + " bench < load.sql");
        allRan &= Compare("MySQL -> SQLite", kMySqlToSqlite, FreshSqlite(), "mariadb --quick | sqlite3 .import",
                          MariaDb() + " --quick --batch --skip-column-names bench -e 'select " + list +
                              " from source' | sqlite3 target.db -cmd '.mode tabs' '.import /dev/stdin loaded'");
        return allRan;
    }

    bool Compare(const char* name, int session, const std::string& prepare, const char* yardstickName,
                 const std::string& yardstick) {
        const Measurement tool = MedianOf(kRuns, prepare, yardstick, folder_.Path());
        const Measurement ours = MedianOf(kRuns, prepare, "exec ./varnel " + std::to_string(session), folder_.Path());
        Show((std::string(name) + ": " + yardstickName).c_str(), tool, 0);
        Show((std::string(name) + ": varnel").c_str(), ours, tool.seconds);
        const bool loaded = LoadedRows(session) == std::to_string(rows_) && ours.status == 0;
        if (!loaded) std::printf("FAILED: session %d, status %d\n", session, ours.status);
        return loaded;
    }

    std::string LoadedRows(int session) const {
        const std::string rows = AskRows(session == kSqliteToMySql ? mySql_ : target_, "select count(*) from loaded");
        CloseIdleSessions();
        return rows;
    }

    void Show(const char* name, const Measurement& m, double yardstickSeconds) const {
        std::printf("%-42s %12.0f %10.2f %10.1f", name, rows_ / m.seconds, m.seconds, m.peakMebibytes);
        if (yardstickSeconds > 0) std::printf(" %7.2fx", yardstickSeconds / m.seconds);
        std::printf("\n");
        std::fflush(stdout);
    }

    void MeasureMemoryAtFewRows() {
        shift_ = 10;
        Prepare("few", kSmallRows);
        for (const int session : {kSqliteToSqlite, kSqliteToMySql, kMySqlToSqlite}) {
            const std::string prepare = session == kSqliteToMySql ? FreshMySql() : FreshSqlite();
            const Measurement m =
                MedianOf(1, prepare, "exec ./varnel " + std::to_string(session + shift_), folder_.Path());
            std::printf("peak memory of session %d at %d rows: %.1f MiB (status %d)\n", session, kSmallRows,
                        m.peakMebibytes, m.status);
        }
    }

    void MeasureEmptySession() {
        ExecuteOn(sqlite_, BenchTableStatement("empty"));
        TestRepositoryOnce().Add(Session(kEmptyTable, "empty", "ACCESS", sqlite_, "ACCESS", target_));
        CloseIdleSessions();
        constexpr int kEmptyRuns = 21;
        const Measurement m = MedianOf(kEmptyRuns, FreshSqlite(), "exec ./varnel 4", folder_.Path());
        std::printf("a session with one empty table: %.1f ms (median of %d, status %d)\n", m.seconds * 1000, kEmptyRuns,
                    m.status);
    }

    int rows_;
    int shift_ = 0;
    TempFolder folder_;
    MariaDbServer server_;
    std::unique_ptr<TestRepository> repository_;
    const std::string sqlite_ = SqliteConnection(folder_.File("source.db"));
    const std::string target_ = SqliteConnection(folder_.File("target.db"));
    const std::string mySql_ = server_.ConnectionString("bench");
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    return varnel::LoadBench(rows).Run() ? 0 : 1;
}
