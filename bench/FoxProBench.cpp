// Reading and writing a FoxPro table of a million rows and ten columns beside the command-line tools for such files.
// Usage: foxpro_bench [rows] (default 1,000,000). Prints a table; the figures mean something only beside each other.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "providers/foxpro/FoxProDatabase.h"

namespace varnel {
namespace {

constexpr int kRuns = 3;

using foxpro::FoxProDatabase;

ColumnDefinition Column(std::string name, std::string typeWord, std::vector<int> arguments = {}) {
    ColumnDefinition column;
    column.name = std::move(name);
    column.typeWord = std::move(typeWord);
    column.typeArguments = std::move(arguments);
    column.notNull = true;
    return column;
}

/// Sets the values of row k; the same that WriteCsv writes.
void SetRow(std::vector<Value>& row, int k) {
    char text[64];
    const auto set = [&](std::size_t column, const char* form, int number) {
        row[column].SetText({text, static_cast<std::size_t>(std::snprintf(text, sizeof text, form, number))});
    };
    row[0].SetInteger(k);
    set(1, "Customer no. %d", k % 977);
    set(2, "San Francisco %d", k % 100);
    row[3].SetDecimal({static_cast<UInt128>(k % 500'000), 2, false});
    row[4].SetDateTime({45'000 + k % 700, 0});
    row[5].SetDecimal({static_cast<UInt128>(k % 1'000'000), 0, false});
    set(6, "%07d", k % 10'000'000);
    set(7, "the quick brown fox jumps over the dog %d", k % 1000);
    row[8].SetDecimal({static_cast<UInt128>(k % 100'000), 4, false});
    row[9].SetBoolean(k % 2 == 0);
}

void WriteTable(const std::string& folder, int rows) {
    FoxProDatabase database(folder);
    database.CreateTable("ours", {{Column("id", "N", {10}), Column("name", "C", {30}), Column("city", "C", {20}),
                                   Column("price", "N", {12, 2}), Column("ordered", "D"), Column("amount", "N", {10}),
                                   Column("code", "C", {10}), Column("comment", "C", {50}),
                                   Column("rate", "N", {10, 4}), Column("flag", "L")}});
    const auto table = database.OpenTable("ours");
    std::vector<Value> row(10);
    const std::vector<bool> assigned(10, true);
    for (int k = 1; k <= rows; ++k) {
        SetRow(row, k);
        table->Append(row, assigned);
    }
    table->Commit();
}

int ReadTable(const std::string& folder) {
    FoxProDatabase database(folder);
    const auto table = database.OpenTable("ours");
    const std::size_t wanted[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    std::vector<Value> row(10);
    std::int64_t count = 0, failures = 0;
    for (const auto rows = table->Rows(wanted); rows->Next(row); ++count) {
        for (const Value& value : row) failures += value.Kind() == ValueKind::Failure ? 1 : 0;
    }
    return failures == 0 && count == table->CountRows() ? 0 : 1;
}

void WriteCsv(const std::string& path, int rows) {
    std::ofstream file(path);
    file << "id,name,city,price,ordered,amount,code,comment,rate,flag\n";
    std::vector<Value> row(10);
    char line[300];
    for (int k = 1; k <= rows; ++k) {
        SetRow(row, k);
        const CivilTime day = ToCivil(row[4].AsDateTime());
        std::snprintf(line, sizeof line,
                      "%d,Customer no. %d,San Francisco %d,%d.%02d,%04d/%02d/%02d,%d,%07d,%s %d,%d.%04d,%s\n", k,
                      k % 977, k % 100, k % 500'000 / 100, k % 100, day.year, day.month, day.day, k % 1'000'000,
                      k % 10'000'000, "the quick brown fox jumps over the dog", k % 1000, k % 100'000 / 10'000,
                      k % 10'000, k % 2 == 0 ? "T" : "F");
        file << line;
    }
    std::ofstream types(path + "t");
    types << "Integer(10),String(30),String(20),Real(12.2),Date(10),Integer(10),String(10),String(50),Real(10.4),"
             "String(1)\n";
}

Measurement Report(const char* what, const std::string& prepare, const std::string& command, const std::string& folder,
                   int rows) {
    const Measurement best = LeastOf(kRuns, prepare, command, folder);
    std::printf("%-34s %12.0f %10.2f %10.2f %10.1f%s\n", what, rows / best.seconds, best.seconds, best.processorSeconds,
                best.peakMebibytes, best.status == 0 ? "" : "   FAILED");
    std::fflush(stdout);
    return best;
}

int Run(const std::string& self, int rows) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "varnel_foxpro_bench";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    WriteCsv((folder / "rows.csv").string(), rows);
    const std::string here = folder.string(), count = std::to_string(rows);
    std::printf("%-34s %12s %10s %10s %10s\n", "", "rows/s", "seconds", "CPU s", "peak MiB");
    const auto theirs = Report("write: ogr2ogr from CSV", "rm -f theirs.*",
                               "ogr2ogr -f 'ESRI Shapefile' theirs.dbf rows.csv >/dev/null 2>&1", here, rows);
    const auto ours = Report("write: varnel", "rm -f ours.*", self + " write . " + count, here, rows);
    const auto pgdbf = Report("read: pgdbf", "true", "pgdbf ours.dbf > /dev/null", here, rows);
    const auto read = Report("read: varnel", "true", self + " read .", here, rows);
    std::printf("write %.1fx ogr2ogr, read %.2fx pgdbf\n", theirs.seconds / ours.seconds, pgdbf.seconds / read.seconds);
    std::filesystem::remove_all(folder);
    return theirs.status + ours.status + pgdbf.status + read.status;
}

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const std::string word = argc > 1 ? argv[1] : "";
    if (word == "read" && argc > 2) return varnel::ReadTable(argv[2]);
    if (word == "write" && argc > 3) return varnel::WriteTable(argv[2], std::atoi(argv[3])), 0;
    const std::string self = std::filesystem::absolute(argv[0]).string();
    return varnel::Run(self, argc > 1 ? std::atoi(argv[1]) : 1'000'000);
}
