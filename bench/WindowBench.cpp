// What the progress window costs: the same sessions with and without it, side by side on a display that nobody sees.
// Usage: window_bench [rows] (default 1,000,000). Fails when a window makes a session take more than 1.3 times as long.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/Measure.h"
#include "providers/ProviderList.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XServer.h"

namespace varnel {
namespace {

constexpr int kRuns = 5;
constexpr double kMost = 1.3;

enum SessionNumber { kToSqlite = 1, kToMySql, kToText };

class WindowBench {
public:
    explicit WindowBench(int rows) : rows_(rows) {
        SetProviders(AllProviders());
        InstallVarnel(folder_.Path());
        setenv("DISPLAY", display_.Display().c_str(), 1);
        server_.Run({"create database if not exists bench", "grant all on bench.* to 'loader'@'localhost'",
                     "grant all on bench.* to 'loader'@'127.0.0.1'"});
        ExecuteOn(sqlite_, BenchTableStatement("source"));
        FillBenchTable(sqlite_, "source", rows_);
        TestRepository repository(folder_.Path());
        AddSession(repository, kToSqlite, "ACCESS", SqliteConnection(folder_.File("target.db")), "loaded");
        AddSession(repository, kToMySql, "MySQL", server_.ConnectionString("bench"), "loaded");
        AddSession(repository, kToText, "TEXT",
                   "Data Source=" + folder_.Path() + ";Extended Properties=\"text;CharacterSet=65001\"",
                   folder_.File("loaded.txt"));
        CloseIdleSessions();
    }

    bool Run() const {
        std::printf("%-16s %10s %10s %7s   (%d rows, least of %d runs)\n", "", "without", "with", "ratio", rows_,
                    kRuns);
        bool quick = Compare("to SQLite", kToSqlite, FreshSqlite());
        quick &= Compare("to text", kToText, "rm -f loaded.txt");
        quick &= Compare("to MySQL", kToMySql, FreshMySql());
        return quick;
    }

private:
    void AddSession(TestRepository& repository, int id, const char* kind, const std::string& connection,
                    const std::string& table) const {
        TestSession session;
        session.id = id;
        session.sourceConnection = sqlite_;
        session.targetKind = kind;
        session.targetConnection = connection;
        session.log = folder_.File("run.log");
        session.tables = {{"source", table, BenchColumns(), true, "append"}};
        repository.Add(session);
    }

    std::string FreshSqlite() const {
        return "rm -f target.db; sqlite3 target.db '" + BenchTableStatement("loaded") + "'";
    }
    std::string FreshMySql() const {
        return "MYSQL_PWD=\"" + std::string(MariaDbServer::kPassword) +
               "\" mariadb --no-defaults --user=" + MariaDbServer::kUser + " --socket=" + server_.Socket() +
               " bench -e 'drop table if exists loaded; " + BenchTableStatement("loaded") + "'";
    }

    /// Seconds until the log is closed; a window that stays is then ended by a signal.
    double Seconds(int session, const std::string& prepare, const char* shown) const {
        Measure("rm -f run.log; " + prepare, folder_.Path());
        const std::string run = "./varnel " + std::to_string(session) + shown +
                                " & until grep -qs 'I.N.I.S.H\\|( FINISH' run.log; do sleep 0.02; done; "
                                "kill $! 2>/dev/null; wait $!";
        return Measure(run, folder_.Path()).seconds;
    }

    /// Runs with and without take turns, so that a machine that gets busy slows both.
    bool Compare(const char* name, int session, const std::string& prepare) const {
        double without = 1e9, with = 1e9;
        for (int run = 0; run < kRuns; ++run) {
            without = std::min(without, Seconds(session, prepare, ""));
            with = std::min(with, Seconds(session, prepare, " showoutput"));
        }
        std::printf("%-16s %8.2f s %8.2f s %7.2f\n", name, without, with, with / without);
        std::fflush(stdout);
        return with <= kMost * without;
    }

    int rows_;
    TempFolder folder_;
    XServer display_;
    MariaDbServer server_;
    const std::string sqlite_ = SqliteConnection(folder_.File("source.db"));
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    return varnel::WindowBench(rows).Run() ? 0 : 1;
}
