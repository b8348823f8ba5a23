// What the progress window costs: the same sessions with and without it, side by side on a display that nobody sees.
// Usage: window_bench [rows] (default 1,000,000). Fails when a window makes a session take more than 1.3 times as long.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "bench/SessionsBench.h"
#include "tests/support/XServer.h"

namespace varnel {
namespace {

constexpr int kTurns = 5;
constexpr double kMost = 1.3;

enum SessionNumber { kToSqlite = 1, kToMySql, kToText };

class WindowBench : public SessionsBench {
public:
    explicit WindowBench(int rows) : SessionsBench(rows) {
        setenv("DISPLAY", display_.Display().c_str(), 1);
        MakeDatabase(server_);
        const Side sqlite{"ACCESS", FillSqlite("source.db")};
        Add(SessionFor(kToSqlite, sqlite, {"ACCESS", SqliteConnection(File("target.db"))}));
        Add(SessionFor(kToMySql, sqlite, {"MySQL", server_.ConnectionString("bench")}));
        Add(SessionFor(kToText, sqlite,
                       {"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File("loaded.txt")}));
    }

    bool Run() const {
        std::printf("%-16s %10s %10s %7s   (%d rows, least of %d runs)\n", "", "without", "with", "ratio", Rows(),
                    kTurns);
        bool quick = Compare("to SQLite", kToSqlite, FreshSqlite());
        quick &= Compare("to text", kToText, "rm -f loaded.txt");
        quick &= Compare("to MySQL", kToMySql, FreshMariaDb(server_));
        return quick;
    }

private:
    /// Seconds until the log is closed; a window that stays is then ended by a signal.
    double Seconds(int session, const std::string& prepare, const char* shown) const {
        Shell("rm -f run.log; " + prepare);
        const std::string run = "./varnel " + std::to_string(session) + shown +
                                " & until grep -qs 'I.N.I.S.H\\|( FINISH' run.log; do sleep 0.02; done; "
                                "kill $! 2>/dev/null; wait $!";
        return Shell(run).seconds;
    }

    /// Runs with and without take turns, so that a machine that gets busy slows both.
    bool Compare(const char* name, int session, const std::string& prepare) const {
        double without = 1e9, with = 1e9;
        for (int run = 0; run < kTurns; ++run) {
            without = std::min(without, Seconds(session, prepare, ""));
            with = std::min(with, Seconds(session, prepare, " showoutput"));
        }
        std::printf("%-16s %8.2f s %8.2f s %7.2f\n", name, without, with, with / without);
        std::fflush(stdout);
        return with <= kMost * without;
    }

    XServer display_;
    MariaDbServer server_;
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::WindowBench>(argc, argv);
}
