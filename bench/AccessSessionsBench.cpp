// Sessions from and to Access files through the real program, beside mdb-export on the same file in the same run.
// Usage: access_sessions_bench [rows] (default 1,000,000).
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/Measure.h"
#include "providers/ProviderList.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

constexpr int kRuns = 3;

enum SessionNumber { kSqliteToAccess = 1, kAccessToAccess, kAccessToText };

class AccessSessionsBench {
public:
    explicit AccessSessionsBench(int rows) : rows_(rows) {
        SetProviders(AllProviders());
        InstallVarnel(folder_.Path());
        MakeTable("plain.mdb", "");
        MakeTable("keyed.mdb", " primary key");
        ExecuteOn(SqliteConnection(folder_.File("source.db")), BenchTableStatement("loaded"));
        FillBenchTable(SqliteConnection(folder_.File("source.db")), "loaded", rows);
        AddSessions();
    }

    bool Run() {
        std::printf("%-44s %12s %9s %10s\n", "", "rows/s", "seconds", "peak MiB");
        bool allRan = Ours("SQLite -> Access", kSqliteToAccess, "cp plain.mdb target.mdb");
        allRan &= Ours("SQLite -> Access, primary key", kSqliteToAccess, "cp keyed.mdb target.mdb");
        Measure("cp target.mdb source.mdb", folder_.Path());
        allRan &= Ours("Access -> Access", kAccessToAccess, "cp plain.mdb target.mdb");
        allRan &= Ours("Access -> Access, primary key", kAccessToAccess, "cp keyed.mdb target.mdb");
        allRan &= Ours("Access -> delimited TEXT", kAccessToText, "");
        if (Measure("command -v mdb-export > /dev/null", folder_.Path()).status == 0)
            Show("mdb-export", Measure("mdb-export source.mdb loaded > out.csv", folder_.Path()));
        return allRan;
    }

private:
    void MakeTable(const char* file, const std::string& key) {
        ExecuteOn(AccessConnection(folder_.File(file)),
                  "create table loaded (id long" + key +
                      ", quantity long, counter double, price decimal(10,2), rate currency, code text(12), name "
                      "text(40), place text(30), made datetime, changed datetime)");
    }

    void AddSessions() {
        TestRepository repository(folder_.Path());
        const std::string target = AccessConnection(folder_.File("target.mdb"));
        const auto add = [&](int id, const std::string& source, const char* targetKind, const std::string& to,
                             const std::string& table) {
            TestSession session;
            session.id = id;
            session.sourceConnection = source;
            session.targetKind = targetKind;
            session.targetConnection = to;
            session.log = folder_.File("run.log");
            session.tables = {{"loaded", table, BenchColumns(), true, "append", "", "", "", ""}};
            repository.Add(session);
        };
        const std::string access = AccessConnection(folder_.File("source.mdb"));
        add(kSqliteToAccess, SqliteConnection(folder_.File("source.db")), "ACCESS", target, "loaded");
        add(kAccessToAccess, access, "ACCESS", target, "loaded");
        add(kAccessToText, access, "TEXT", "Extended Properties=\"text;CharacterSet=65001\"", folder_.File("out.csv"));
        repository.Execute(
            "update vrtabs set SFormat=\",\", SFirstColLine=1, TextQ=\"DQ\", DFormat=\",\", DTextQ=\"DQ\", "
            "FileFormat=\"DELIMITED\", DFirstColLine=1, TextDirDest=\"out\", FileExt=\".csv\"");
        CloseIdleSessions();
    }

    bool Ours(const char* name, int session, const std::string& prepare) {
        const Measurement m = MedianOf(kRuns, prepare, "exec ./varnel " + std::to_string(session), folder_.Path());
        Show(name, m);
        const std::string log = ReadBytes(folder_.File("run.log"));
        const bool loaded = m.status == 0 && log.find(std::to_string(rows_) + " Rows Loaded",
                                                      log.rfind("Starting Session")) != std::string::npos;
        if (!loaded)
            std::printf("FAILED: session %d, status %d\n%s\n", session, m.status,
                        log.substr(log.size() > 1500 ? log.size() - 1500 : 0).c_str());
        return loaded;
    }

    void Show(const char* name, const Measurement& m) const {
        std::printf("%-44s %12.0f %9.2f %10.1f\n", name, rows_ / m.seconds, m.seconds, m.peakMebibytes);
        std::fflush(stdout);
    }

    int rows_;
    TempFolder folder_;
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    return varnel::AccessSessionsBench(rows).Run() ? 0 : 1;
}
