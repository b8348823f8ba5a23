// Reads a delimited file of a million rows and ten columns: the look that finds its types, and its rows as values.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "providers/text/TextDatabase.h"

namespace {

using varnel::Value;

/// Runs step five times; prints the best processor time and its rate.
template <class Step>
void Measure(const char* what, std::int64_t rows, double megabytes, Step&& step) {
    double best = 1e9;
    for (int run = 0; run < 5; ++run) {
        const std::clock_t start = std::clock();
        step(run);
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::printf("%-32s %8.3f s %12.0f rows/s %8.0f MB/s\n", what, best, static_cast<double>(rows) / best,
                megabytes / best);
}

void WriteFile(const std::string& path, int rows) {
    varnel::OutputFile file(path, varnel::OutputFile::Mode::Truncate);
    std::string block = "Id,Name,City,Price,Ordered,Amount,Code,Comment,Rate,Flag\r\n";
    char line[400];
    for (int k = 0; k < rows; ++k) {
        block.append(line,
                     static_cast<std::size_t>(std::snprintf(
                         line, sizeof line,
                         "%d,\"Customer, no. %d\",San Francisco %d,%d.%02d,2026-%02d-%02d %02d:%02d:%02d,%d,%07d,"
                         "the quick brown fox jumps over the dog %d,%d.%04d,%s\r\n",
                         k + 1, k % 977, k % 100, k % 5000, k % 100, k % 12 + 1, k % 28 + 1, k % 24, k % 60, k % 60,
                         k % 1'000'000, k % 10'000'000, k % 1000, k % 10, k % 10'000, k % 2 == 0 ? "True" : "False")));
        if (block.size() > 1'000'000) file.Write(block), block.clear();
    }
    file.Write(block);
}

void Run(const std::string& folder, int rows) {
    const std::string path = folder + "/big.csv";
    WriteFile(path, rows);
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    std::printf("%d rows, %.0f MB\n", rows, megabytes);
    varnel::text::TextDatabase database(folder);
    // A new time stamp each run: what is measured is the look, not its memory.
    Measure("look (types, count)", rows, megabytes, [&](int) {
        std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now());
        database.OpenTable("big.csv");
    });
    const auto table = database.OpenTable("big.csv");
    const auto deliver = [&](std::vector<std::size_t> wanted) {
        std::vector<Value> row(wanted.size());
        const auto reader = table->Rows(wanted);
        std::int64_t count = 0, failures = 0;
        while (reader->Next(row)) {
            ++count;
            for (const Value& value : row) failures += value.Kind() == varnel::ValueKind::Failure ? 1 : 0;
        }
        if (count != rows || failures > 0)
            std::printf("WRONG: %lld rows\n", static_cast<long long>(count)), std::exit(1);
    };
    Measure("rows, all ten columns", rows, megabytes, [&](int) { deliver({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}); });
    Measure("rows, two columns", rows, megabytes, [&](int) { deliver({0, 9}); });
}

}  // namespace

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "varnel_text_bench";
    std::filesystem::create_directories(folder);
    Run(folder.string(), rows);
    std::filesystem::remove_all(folder);
}
