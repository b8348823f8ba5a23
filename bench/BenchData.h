// The benchmark's table: ten columns of integers, decimals, texts and dates.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/DateTime.h"
#include "tests/support/TestRepository.h"

namespace varnel {

/// A row of it; price and rate in hundredths.
struct BenchRow {
    std::int64_t id, quantity, counter, price, rate;
    std::string code, name, place;
    DateTime made, changed;
};
/// The row with this number; numbers begin at 1.
BenchRow MakeBenchRow(int id);

/// "create table NAME (…)": a statement that SQLite and MySQL both take.
std::string BenchTableStatement(const std::string& name);
/// The column mappings of a session on it.
std::vector<TestColumn> BenchColumns();
/// The columns' names with commas between.
std::string BenchColumnList();
/// Appends rows 1 to count to a table through the data layer, on a log-in that stays inside this call.
void FillBenchTable(const std::string& connection, const std::string& name, int count);
/// Writes to path the INSERT statements of rows 1 to count, 100 rows each, exactly as the load writes them.
void WriteBenchInserts(const std::string& sourceConnection, const std::string& source, const std::string& target,
                       const std::string& path);

}  // namespace varnel
