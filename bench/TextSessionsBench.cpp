// Sessions from and to text files through the real program, beside ogr2ogr, miller and sqlite3 doing the same work in
// the same run. Usage: text_sessions_bench [rows] (default 1,000,000). A tool that is not installed is left out aloud.
#include <fmt/format.h>

#include <filesystem>

#include "bench/BenchData.h"
#include "bench/SessionsBench.h"
#include "platform/Files.h"

namespace varnel {
namespace {

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

class TextSessionsBench : public SessionsBench {
public:
    explicit TextSessionsBench(int rows) : SessionsBench(rows) {
        std::filesystem::create_directory(File("in"));
        const std::string source = File("in/" + std::string(kSource));
        WriteSource(source, rows);
        CountBytes(static_cast<double>(std::filesystem::file_size(source)));
        AddSessions();
    }

    bool Run() const {
        ShowHead();
        const Measurement ogr =
            Tool("ogr2ogr CSV -> CSV", "ogr2ogr", "rm -f out.csv", "ogr2ogr -f CSV out.csv in/source.csv");
        Tool("miller CSV -> CSV", "mlr", "", "mlr --csv cat in/source.csv > out.csv");
        bool allRan = Ours("TEXT -> delimited TEXT", kTextToDelimited, "", ogr.seconds);
        allRan &= Ours("TEXT -> fixed TEXT", kTextToFixed, "");
        const Measurement import = Tool("sqlite3 .import", "sqlite3", FreshSqlite(),
                                        "sqlite3 target.db -cmd '.mode csv' '.import --skip 1 in/source.csv loaded'");
        allRan &= Ours("TEXT -> SQLite", kTextToSqlite, FreshSqlite(), import.seconds);
        const Measurement csv =
            Tool("sqlite3 -csv", "sqlite3", "",
                 "sqlite3 -csv -header target.db 'select " + BenchColumnList() + " from loaded' > out.csv");
        allRan &= Ours("SQLite -> delimited TEXT", kSqliteToText, "", csv.seconds);
        return allRan;
    }

private:
    void AddSessions() {
        const Side text{"TEXT",
                        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + File("in") +
                            ";Extended Properties=\"text;HDR=Yes;FMT=Delimited\"",
                        kSource};
        const Side sqlite{"ACCESS", SqliteConnection(File("target.db"))};
        const auto output = [this](const char* file) {
            return Side{"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File(file)};
        };
        Add(AsText(SessionFor(kTextToDelimited, text, output("delimited.csv"))));
        TestSession fixed = AsText(SessionFor(kTextToFixed, text, output("fixed.txt")));
        fixed.targetText.format = "FIXED";
        Add(fixed);
        Add(SessionFor(kTextToSqlite, text, sqlite));
        Add(SessionFor(kSqliteToText, sqlite, output("from_sqlite.csv")));
    }

    /// Between texts the columns keep the types that the source has.
    static TestSession AsText(TestSession session) {
        for (TestColumn& column : session.tables[0].columns) column.targetType = column.type;
        return session;
    }
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::TextSessionsBench>(argc, argv);
}
