// Rows per second of SELECT over a table in memory, by the road that the statement takes.
// Usage: store_bench [rows] (default 1,000,000). The first line is the table's own cursor, without SQL.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "tests/providers_sql/MemoryStore.h"

namespace varnel {
namespace {

constexpr int kColumns = 10;
constexpr int kRuns = 3;

void Fill(MemoryTable& table, int rows) {
    for (int r = 0; r < rows; ++r) {
        std::vector<Value> row;
        for (int c = 0; c < kColumns; ++c)
            row.push_back(c % 2 == 0 ? Value::OfInteger(r % 100 + c) : Value::OfText("value " + std::to_string(r)));
        table.Add(std::move(row));
    }
}

template <class Body>
void Report(const std::string& name, int rows, Body&& body) {
    std::int64_t best = 0, delivered = 0;
    for (int run = 0; run < kRuns; ++run) {
        const std::int64_t start = SteadyMilliseconds();
        delivered = body();
        const std::int64_t took = std::max<std::int64_t>(1, SteadyMilliseconds() - start);
        if (run == 0 || took < best) best = took;
    }
    std::printf("%-60s %9.0f rows/s  (%lld delivered)\n", name.c_str(), 1000.0 * rows / static_cast<double>(best),
                static_cast<long long>(delivered));
}

std::int64_t Drain(RowReader& rows) {
    std::vector<Value> row(rows.Columns().size());
    std::int64_t count = 0;
    while (rows.Next(row)) ++count;
    return count;
}

std::int64_t DrainCursor(MemoryStore& store) {
    const auto table = store.OpenTable("t");
    std::vector<std::size_t> wanted;
    for (std::size_t c = 0; c < kColumns; ++c) wanted.push_back(c);
    const auto rows = table->Rows(wanted);
    std::vector<Value> row(wanted.size());
    std::int64_t count = 0;
    while (rows->Next(row)) ++count;
    return count;
}

void Run(int rows) {
    MemoryTestDatabase database;
    std::vector<ColumnInfo> columns;
    for (int c = 0; c < kColumns; ++c)
        columns.push_back(ColumnOf(std::string(1, static_cast<char>('a' + c)), c % 2 == 0 ? adInteger : adVarWChar));
    Fill(database.Store().Make("t", columns), rows);
    Report("the table's cursor", rows, [&] { return DrainCursor(database.Store()); });
    for (const char* query :
         {"SELECT * FROM t", "SELECT * FROM t WHERE [a] > 5", "SELECT * FROM t WHERE [a] > 95",
          "SELECT count(*) FROM t WHERE [a] > 5", "SELECT * FROM t WHERE [b] Like 'value 1%' And [c] < 50",
          "SELECT [a]+1,[b] FROM t WHERE [a] > 5", "SELECT * FROM t ORDER BY [b]", "SELECT sum([a]) FROM t"})
        Report(query, rows, [&] { return Drain(*database.Session().Query(query)); });
}

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    varnel::Run(argc > 1 ? std::atoi(argv[1]) : 1'000'000);
}
