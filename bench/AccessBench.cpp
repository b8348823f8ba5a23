// A Jet 4 table of ten columns out of the file, beside mdb-export doing the same work.
// Usage: access_bench [rows] (default 1,000,000). Its parts one by one: access_bench make FILE ROWS, access_bench
// export FILE TABLE OUTPUT, access_bench read FILE TABLE.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

#include "ado/types/ValueText.h"
#include "bench/Measure.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "providers/access/AccessDatabase.h"
#include "providers/access/BlankDatabase.h"
#include "tests/support/TempFolder.h"

namespace varnel::access {
namespace {

constexpr int kRuns = 3;
constexpr const char* kTable = "loaded";

std::vector<ColumnDefinition> Columns() {
    return {
        {"id", "LONG", {}},       {"quantity", "LONG", {}},   {"counter", "DOUBLE", {}}, {"price", "DECIMAL", {10, 2}},
        {"rate", "CURRENCY", {}}, {"code", "TEXT", {12}},     {"name", "TEXT", {80}},    {"place", "TEXT", {30}},
        {"made", "DATETIME", {}}, {"changed", "DATETIME", {}}};
}

void SetRow(std::vector<Value>& row, int id) {
    static constexpr const char* kPlaces[] = {"Hamburg", "Lyon", "Gda\xC5\x84sk", "Porto", "Aarhus", "Tarragona"};
    const DateTime made{40'000 + id % 5'000, (id % 86'400) * kMicrosPerSecond};
    row[0].SetInteger(id);
    row[1].SetInteger(id % 997);
    row[2].SetDouble(id * 1'000'003.0);
    row[3].SetDecimal({static_cast<UInt128>(id % 1'000'000), 2, false});
    row[4].SetCurrency(std::int64_t{id} % 99'991 * 100);
    row[5].SetText("A-" + std::to_string(100'000 + id % 900'000));
    row[6].SetText("Customer number " + std::to_string(id) + ", of the northern sales region");
    row[7].SetText(kPlaces[id % 6]);
    row[8].SetDateTime(made);
    row[9].SetDateTime({made.days + id % 30, 0});
}

void Make(const std::string& path, int rows) {
    CreateBlankDatabase(path);
    AccessDatabase database(path, {});
    database.CreateTable(kTable, Columns());
    const auto table = database.OpenTable(kTable);
    std::vector<Value> row(table->Columns().size());
    const std::vector<bool> all(row.size(), true);
    for (int id = 1; id <= rows; ++id) {
        SetRow(row, id);
        table->Append(row, all);
        if (id % 50'000 == 0) table->Commit();
    }
    table->Commit();
}

/// Hands every row to use; returns how many.
template <class Use>
std::int64_t ForEachRow(const std::string& path, const std::string& name, Use&& use) {
    AccessDatabase database(path, {"", true});
    const auto table = database.OpenTable(name);
    std::vector<std::size_t> wanted(table->Columns().size());
    std::iota(wanted.begin(), wanted.end(), std::size_t{0});
    const auto rows = table->Rows(wanted);
    std::vector<Value> row(wanted.size());
    std::int64_t count = 0;
    for (; rows->Next(row); ++count) use(row);
    return count;
}

void Export(const std::string& path, const std::string& table, const std::string& outputPath) {
    OutputFile output(outputPath, OutputFile::Mode::Truncate);
    std::string buffer;
    ForEachRow(path, table, [&](const std::vector<Value>& row) {
        for (std::size_t k = 0; k < row.size(); ++k) {
            if (k > 0) buffer += ',';
            const bool quoted = row[k].Kind() == ValueKind::Text;
            if (quoted) buffer += '"';
            if (!row[k].IsNull()) AppendDefaultText(buffer, row[k]);
            if (quoted) buffer += '"';
        }
        buffer += "\r\n";
        if (buffer.size() > 256 * 1024) output.Drain(buffer);
    });
    output.Drain(buffer);
    output.Close();
}

void Read(const std::string& path, const std::string& table) {
    for (int run = 0; run < kRuns; ++run) {
        const std::int64_t start = SteadyMilliseconds();
        const std::int64_t count = ForEachRow(path, table, [](const std::vector<Value>&) {});
        const auto took = static_cast<double>(std::max<std::int64_t>(1, SteadyMilliseconds() - start));
        std::printf("%9.0f rows/s (%lld rows)\n", 1000.0 * static_cast<double>(count) / took,
                    static_cast<long long>(count));
    }
}

double Show(const char* name, int rows, const Measurement& m) {
    std::printf("%-36s %10.0f rows/s %7.2f s %7.2f s of processor %8.1f MiB%s\n", name, rows / m.seconds, m.seconds,
                m.processorSeconds, m.peakMebibytes, m.status == 0 ? "" : "  FAILED");
    std::fflush(stdout);
    return m.processorSeconds;
}

void Compare(const std::string& program, int rows) {
    const TempFolder folder;
    const std::string file = folder.File("bench.mdb");
    const std::int64_t start = SteadyMilliseconds();
    Make(file, rows);
    std::printf("written in %.1f s\n", static_cast<double>(SteadyMilliseconds() - start) / 1000);
    const std::string ours = program + " export bench.mdb loaded ours.csv";
    const double other =
        Show("mdb-export", rows, LeastOf(kRuns, "", "mdb-export bench.mdb loaded > theirs.csv", folder.Path()));
    const double own = Show("the reader, to delimited text", rows, LeastOf(kRuns, "", ours, folder.Path()));
    std::printf("ratio of processor time %.1f\n", other / own);
    Read(file, kTable);
}

}  // namespace
}  // namespace varnel::access

int main(int argc, char** argv) {
    using namespace varnel::access;
    const std::string form = argc > 1 ? argv[1] : "";
    if (form == "export" && argc > 4) {
        Export(argv[2], argv[3], argv[4]);
    } else if (form == "read" && argc > 3) {
        Read(argv[2], argv[3]);
    } else if (form == "make" && argc > 3) {
        Make(argv[2], std::atoi(argv[3]));
    } else {
        Compare(std::filesystem::absolute(argv[0]).string(), argc > 1 ? std::atoi(argv[1]) : 1'000'000);
    }
}
