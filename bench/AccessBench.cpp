// Rows per second and peak memory of the Access engine, without SQL and without the program around it; and beside it
// mdb-export on the same file.
// Usage: access_bench [rows] (default 1,000,000)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "ado/types/ValueText.h"
#include "bench/Measure.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "providers/access/AccessDatabase.h"
#include "providers/access/BlankDatabase.h"

namespace varnel {
namespace {

constexpr std::int64_t kCommitInterval = 1000;  // ms, as the program does

/// Runs body in a process of its own, so that its peak memory is its own.
void Report(const std::string& name, int rows, const std::function<void()>& body) {
    const std::int64_t start = SteadyMilliseconds();
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const auto took = static_cast<double>(SteadyMilliseconds() - start) / 1000;
    std::printf("%-44s %8.2f s %9.0f rows/s %6.1f MiB%s\n", name.c_str(), took, rows / took,
                static_cast<double>(usage.ru_maxrss) / 1024, status == 0 ? "" : "  FAILED");
    std::fflush(stdout);
}

std::vector<ColumnDefinition> BenchTable(bool primaryKey) {
    std::vector<ColumnDefinition> columns = {
        {"id", "LONG", {}, false, primaryKey, false},   {"quantity", "LONG", {}, false, false, false},
        {"counter", "DOUBLE", {}, false, false, false}, {"price", "DECIMAL", {10, 2}, false, false, false},
        {"rate", "CURRENCY", {}, false, false, false},  {"code", "TEXT", {12}, false, false, false},
        {"name", "TEXT", {40}, false, false, false},    {"place", "TEXT", {30}, false, false, false},
        {"made", "DATETIME", {}, false, false, false},  {"changed", "DATETIME", {}, false, false, false}};
    return columns;
}

void SetRow(std::vector<Value>& row, int id) {
    static constexpr const char* kPlaces[] = {"Hamburg", "Lyon", "Gda\xC5\x84sk", "Porto", "Aarhus", "Tarragona"};
    const DateTime made{40'000 + id % 5'000, (id % 86'400) * kMicrosPerSecond};
    row[0].SetInteger(id);
    row[1].SetInteger(id % 997);
    row[2].SetDouble(id * 1'000'003.0);
    row[3].SetDecimal({static_cast<UInt128>(id % 1'000'000), 2, false});
    row[4].SetCurrency(id % 99'991 + 1);
    row[5].StartText().append("A-").append(std::to_string(100'000 + id % 900'000));
    row[6].StartText().append("Customer number ").append(std::to_string(id));
    row[7].SetText(kPlaces[id % 6]);
    row[8].SetDateTime(made);
    row[9].SetDateTime({made.days + id % 30, 0});
}

/// Appends what next makes until it returns false, with a commit point every second.
void Load(const std::string& path, bool primaryKey, const std::function<bool(std::vector<Value>&)>& next) {
    access::CreateBlankDatabase(path);
    access::AccessDatabase database(path, {});
    database.CreateTable("t", BenchTable(primaryKey));
    const auto table = database.OpenTable("t");
    std::vector<Value> row(table->Columns().size());
    const std::vector<bool> assigned(row.size(), true);
    std::int64_t committed = SteadyMilliseconds();
    while (next(row)) {
        table->Append(row, assigned);
        if (SteadyMilliseconds() - committed < kCommitInterval) continue;
        table->Commit();
        committed = SteadyMilliseconds();
    }
    table->Commit();
}

std::function<bool(std::vector<Value>&)> Counting(int rows, int factor) {
    return [=, id = 0](std::vector<Value>& row) mutable {
        if (id == rows) return false;
        SetRow(row, static_cast<int>(std::int64_t{id++} * factor % rows) + 1);
        return true;
    };
}

struct Source {
    explicit Source(const std::string& path) : database(path, {"", true}), table(database.OpenTable("t")) {
        std::vector<std::size_t> wanted(table->Columns().size());
        for (std::size_t k = 0; k < wanted.size(); ++k) wanted[k] = k;
        rows = table->Rows(wanted);
    }
    access::AccessDatabase database;
    std::unique_ptr<TableFile> table;
    std::unique_ptr<TableRows> rows;
};

void Export(const std::string& from, const std::string& to) {
    Source source(from);
    OutputFile file(to, OutputFile::Mode::Truncate);
    std::string lines;
    std::vector<Value> row(source.table->Columns().size());
    while (source.rows->Next(row)) {
        for (const Value& value : row) {
            if (!value.IsNull()) AppendDefaultText(lines, value);
            lines.push_back(',');
        }
        lines.back() = '\n';
        if (lines.size() > 60'000) file.Drain(lines);
    }
    file.Drain(lines);
    file.Close();
}

void Run(int rows) {
    std::string folder = (std::filesystem::temp_directory_path() / "access-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    const auto path = [&](const char* name) { return folder + "/" + name; };
    Report("append, no index", rows, [&] { Load(path("plain.mdb"), false, Counting(rows, 1)); });
    Report("append, primary key, ascending", rows, [&] { Load(path("keyed.mdb"), true, Counting(rows, 1)); });
    Report("append, primary key, any order", rows, [&] { Load(path("mixed.mdb"), true, Counting(rows, 700'001)); });
    Report("Access to Access, primary key", rows, [&] {
        Source source(path("plain.mdb"));
        Load(path("copy.mdb"), true, [&](std::vector<Value>& row) { return source.rows->Next(row); });
    });
    Report("Access to delimited text", rows, [&] { Export(path("plain.mdb"), path("plain.csv")); });
    const Measurement theirs = Measure("mdb-export plain.mdb t > theirs.csv", folder);
    std::printf("%-44s %8.2f s %9.0f rows/s %6.1f MiB\n", "mdb-export", theirs.seconds, rows / theirs.seconds,
                theirs.peakMebibytes);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    varnel::Run(argc > 1 ? std::atoi(argv[1]) : 1'000'000);
}
