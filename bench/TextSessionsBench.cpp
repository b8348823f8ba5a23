// Sessions from and to text files through the real program, beside ogr2ogr, miller and sqlite3 doing the same work in
// the same run. Usage: text_sessions_bench [rows] (default 1,000,000). A tool that is not installed is left out aloud.
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/Measure.h"
#include "platform/Files.h"
#include "providers/ProviderList.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

constexpr int kRuns = 3;
constexpr const char* kSource = "source.csv";

enum SessionNumber { kTextToDelimited = 1, kTextToFixed, kTextToSqlite, kSqliteToText };

/// About 150 bytes a row: ten columns of integers, decimals, texts and dates.
void WriteSource(const std::string& path, int rows) {
    static constexpr const char* kPlaces[] = {"Hamburg", "Lyon", "Gda\xC5\x84sk", "Porto", "Aarhus", "Tarragona"};
    OutputFile file(path, OutputFile::Mode::Truncate);
    std::string buffer = BenchColumnList() + "\r\n";
    for (int id = 1; id <= rows; ++id) {
        fmt::format_to(
            std::back_inserter(buffer),
            "{},{},{},{}.{:02},{}.{:04},A-{},\"Customer number {}, of the northern sales region since {}\",{},"
            "{}-{:02}-{:02} {:02}:{:02}:{:02},{}-{:02}-{:02}\r\n",
            id, id % 997, id % 1'000'003, id % 1'000'000, id % 100, id % 9'991, id % 10'000, 100'000 + id % 900'000, id,
            1990 + id % 30, kPlaces[id % 6], 2000 + id % 25, 1 + id % 12, 1 + id % 28, id % 24, id % 60, id % 59,
            2001 + id % 25, 1 + id % 11, 1 + id % 27);
        if (buffer.size() > 1'000'000) file.Drain(buffer);
    }
    file.Drain(buffer);
    file.Close();
}

class TextSessionsBench {
public:
    explicit TextSessionsBench(int rows) : rows_(rows) {
        SetProviders(AllProviders());
        InstallVarnel(folder_.Path());
        std::filesystem::create_directory(folder_.File("in"));
        WriteSource(folder_.File("in/" + std::string(kSource)), rows);
        bytes_ = static_cast<double>(std::filesystem::file_size(folder_.File("in/" + std::string(kSource))));
        AddSessions();
    }

    bool Run() {
        std::printf("%-44s %12s %8s %9s %10s\n", "", "rows/s", "MB/s", "seconds", "peak MiB");
        Tool("ogr2ogr CSV -> CSV", "ogr2ogr", "rm -f out.csv", "ogr2ogr -f CSV out.csv in/source.csv");
        Tool("miller CSV -> CSV", "mlr", "", "mlr --csv cat in/source.csv > out.csv");
        bool allRan = Ours("varnel TEXT -> delimited TEXT", kTextToDelimited, "");
        allRan &= Ours("varnel TEXT -> fixed TEXT", kTextToFixed, "");
        Tool("sqlite3 .import", "sqlite3", FreshTarget(),
             "sqlite3 target.db -cmd '.mode csv' '.import --skip 1 in/source.csv loaded'");
        allRan &= Ours("varnel TEXT -> SQLite", kTextToSqlite, FreshTarget());
        Tool("sqlite3 -csv", "sqlite3", "",
             "sqlite3 -csv -header target.db 'select " + BenchColumnList() + " from loaded' > out.csv");
        allRan &= Ours("varnel SQLite -> delimited TEXT", kSqliteToText, "");
        return allRan;
    }

private:
    void AddSessions() {
        TestRepository repository(folder_.Path());
        const std::string text = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder_.File("in") +
                                 ";Extended Properties=\"text;HDR=Yes;FMT=Delimited\"";
        const std::string sqlite = SqliteConnection(folder_.File("target.db"));
        const std::string output = "Extended Properties=\"text;CharacterSet=65001\"";
        const auto add = [&](int id, const char* sourceKind, const std::string& source, const char* targetKind,
                             const std::string& target, const std::string& table, const std::string& to) {
            TestSession session;
            session.id = id;
            session.sourceKind = sourceKind;
            session.sourceConnection = source;
            session.targetKind = targetKind;
            session.targetConnection = target;
            session.log = folder_.File("run.log");
            session.tables = {{table, to, BenchColumns(), true, "append", "", "", "", ""}};
            repository.Add(session);
        };
        add(kTextToDelimited, "TEXT", text, "TEXT", output, kSource, folder_.File("delimited.csv"));
        add(kTextToFixed, "TEXT", text, "TEXT", output, kSource, folder_.File("fixed.txt"));
        add(kTextToSqlite, "TEXT", text, "ACCESS", sqlite, kSource, "loaded");
        add(kSqliteToText, "ACCESS", sqlite, "TEXT", output, "loaded", folder_.File("from_sqlite.csv"));
        repository.Execute(
            "update vrtabs set SFormat=\",\", SFirstColLine=1, TextQ=\"DQ\", DFormat=\",\", DTextQ=\"DQ\", "
            "FileFormat=\"DELIMITED\", DFirstColLine=1, TextDirDest=\"out\", FileExt=\".csv\"");
        repository.Execute("update vrtabs set FileFormat=\"FIXED\" where SessionId=2");
        repository.Execute("update SrcDCols set DDType=SOrgDtype where sessionid<3");
        CloseIdleSessions();
    }

    std::string FreshTarget() const {
        return "rm -f target.db; sqlite3 target.db '" + BenchTableStatement("loaded") + "'";
    }

    void Tool(const char* name, const std::string& program, const std::string& prepare, const std::string& command) {
        if (Measure("command -v " + program + " > /dev/null", folder_.Path()).status != 0) {
            std::printf("%-44s not installed\n", name);
            return;
        }
        Show(name, MedianOf(kRuns, prepare, command, folder_.Path()));
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
        std::printf("%-44s %12.0f %8.0f %9.2f %10.1f\n", name, rows_ / m.seconds, bytes_ / 1e6 / m.seconds, m.seconds,
                    m.peakMebibytes);
        std::fflush(stdout);
    }

    int rows_;
    double bytes_ = 0;
    TempFolder folder_;
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    return varnel::TextSessionsBench(rows).Run() ? 0 : 1;
}
