// What the benchmarks of whole sessions share: an installation in a private folder, sessions on the benchmark's table,
// their runs by the real program, and the table of figures.
#pragma once

#include <string>

#include "bench/Measure.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"

namespace varnel {

class SessionsBench {
public:
    static constexpr int kRuns = 3;
    static constexpr int kUsualRows = 1'000'000;

    /// rows: how many the sessions load. Installs the program, with an empty repository beside it.
    explicit SessionsBench(int rows);

protected:
    /// One end of a session: kind, connection string and table, or file, of the benchmark's columns.
    struct Side {
        const char* kind;
        std::string connection;
        std::string table = "loaded";
    };

    int Rows() const { return rows_; }
    std::string File(const std::string& name) const { return folder_.File(name); }
    /// Figures get a column of megabytes a second; bytes: the size of what each run reads.
    void CountBytes(double bytes) { bytes_ = bytes; }

    /// A session that appends source's rows to target; it runs once Add has stored it.
    TestSession SessionFor(int id, const Side& source, const Side& target) const;
    /// Stores a session and leaves no log-in open.
    void Add(const TestSession& session);
    /// Makes the benchmark's table "loaded" with all rows in a new SQLite file; returns its connection string.
    std::string FillSqlite(const std::string& file) const;

    /// The shell command that leaves an empty table "loaded" in the SQLite file target.db.
    static std::string FreshSqlite();
    /// The command-line client on database bench as the test's user. Its password is in the environment.
    static std::string MariaDbClient(const MariaDbServer& server);
    /// The shell command that leaves an empty table "loaded" in database bench.
    static std::string FreshMariaDb(const MariaDbServer& server);
    /// Makes database bench.
    static void MakeDatabase(const MariaDbServer& server);

    /// A shell command in the private folder.
    Measurement Shell(const std::string& command) const { return Measure(command, folder_.Path()); }
    /// The quickest of several runs; before each of them the shell command prepare runs unmeasured.
    Measurement Best(const std::string& prepare, const std::string& command, int runs = kRuns) const {
        return LeastOf(runs, prepare, command, folder_.Path());
    }

    void ShowHead() const;
    /// A line of the table; yardstickSeconds above 0: with the ratio to it.
    void Show(const std::string& name, const Measurement& measured, double yardstickSeconds = 0) const;
    /// Runs a session and shows its line. False, with the end of the log, when it did not load all rows.
    bool Ours(const std::string& name, int session, const std::string& prepare, double yardstickSeconds = 0) const;
    /// Runs another tool's command and shows its line; says so when the program is not installed.
    Measurement Tool(const std::string& name, const std::string& program, const std::string& prepare,
                     const std::string& command, int runs = kRuns) const;

private:
    int rows_;
    double bytes_ = 0;
    TempFolder folder_;
    TestRepository repository_;
};

/// The main function of a benchmark: its rows are the first argument.
template <typename Bench>
int RunBench(int argc, char** argv, int usualRows = SessionsBench::kUsualRows) {
    return Bench(argc > 1 ? std::stoi(argv[1]) : usualRows).Run() ? 0 : 1;
}

}  // namespace varnel
