// Any bytes as a text file. The first bytes choose the format, the rest is the file. Two windows of different sizes
// must give the same rows, and the look must count them.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Error.h"
#include "providers/text/FileLook.h"
#include "providers/text/FormatWords.h"
#include "providers/text/TextRows.h"

using namespace varnel;
using namespace varnel::text;

namespace {

constexpr std::array<const char*, 5> kDelimiters = {",", "\t", "||", "\xC2\xA6", " "};
constexpr std::array<const char*, 4> kQualifiers = {"\"", "'", "", "\xC2\xB4"};
constexpr std::array<int, 8> kPages = {kUnknownPage, kUtf8Page, kUtf16Page, kAnsiPage, 932, 936, 1255, 850};
constexpr std::array<DataTypeEnum, 11> kTypes = {adEmpty,   adBoolean,  adUnsignedTinyInt, adSmallInt,
                                                 adInteger, adSingle,   adDouble,          adCurrency,
                                                 adDate,    adVarWChar, adNumeric};

constexpr std::size_t kWide = 9 * 1024, kNarrow = 16;  // bytes of the windows: all of the file, and next to nothing

/// The format that the first four bytes choose.
TextFormat ChosenFormat(const std::uint8_t* choice) {
    TextFormat format;
    format.delimiter = kDelimiters[choice[0] % kDelimiters.size()];
    format.qualifier = kQualifiers[choice[0] / 8 % kQualifiers.size()];
    format.hasHeader = choice[0] < 128;
    format.codePage = kPages[choice[1] % kPages.size()];
    format.maxScanRows = choice[1] / 8 % 4;
    if (choice[1] >= 128) format.decimalSymbol = ',';
    if (choice[2] % 4 == 1) format.datePicture = "dd.mm.yyyy hh:nn";
    if (choice[2] % 4 == 2) format.layout = FileLayout::FixedWidth;
    const std::size_t columns = choice[3] % 4 + (format.layout == FileLayout::FixedWidth ? 1 : 0);
    for (std::size_t k = 0; k < columns; ++k) {
        const DataTypeEnum type = kTypes[(choice[3] / 4 + k) % kTypes.size()];
        format.columns.push_back({"C" + std::to_string(k), type, k + 2, ""});
    }
    return format;
}

/// Reads every row into rows; returns how many.
std::int64_t ReadRows(const std::shared_ptr<const ByteSource>& source, const TextFormat& format,
                      const std::shared_ptr<const FileLook>& look, std::size_t bufferBytes,
                      std::vector<std::vector<Value>>& rows) {
    std::vector<std::size_t> wanted(look->columns.size());
    std::iota(wanted.begin(), wanted.end(), std::size_t{0});
    TextRows reader(source, "f", format, look, wanted, bufferBytes);
    std::vector<Value> row(wanted.size());
    while (reader.Next(row)) rows.push_back(row);
    return static_cast<std::int64_t>(rows.size());
}

/// A broken promise is a crash, which the fuzzer reports.
void Require(bool isKept) {
    if (!isKept) std::abort();
}

void CheckFile(const TextFormat& format, std::string_view bytes) {
    const auto source = std::make_shared<MemorySource>(std::string(bytes));
    const auto look = std::make_shared<const FileLook>(LookAtFile(source, format, "f", kWide));
    const FileLook lookAgain = LookAtFile(source, format, "f", kNarrow);
    Require(lookAgain.records == look->records && lookAgain.codePage == look->codePage);
    Require(lookAgain.columns.size() == look->columns.size());
    std::vector<std::vector<Value>> rows, rowsAgain;
    Require(ReadRows(source, format, look, kWide, rows) == look->records);
    Require(ReadRows(source, format, look, kNarrow, rowsAgain) == look->records);
    Require(rows == rowsAgain);
    if (!format.columns.empty()) return;
    // A type found from all values has no value that does not fit; bytes that are no text, and records that are too
    // long, are the only faults.
    for (const std::vector<Value>& row : rows) {
        for (const Value& value : row) {
            const bool isFailure = value.Kind() == ValueKind::Failure;
            Require(!isFailure || value.FailureText().starts_with("Bytes") || value.FailureText().starts_with("More"));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kChoice = 4;
    if (size < kChoice || size > 8 * 1024) return 0;  // keep one run short
    const TextFormat format = ChosenFormat(data);
    try {
        CheckFormat(format, "f");
        CheckFile(format, {reinterpret_cast<const char*>(data) + kChoice, size - kChoice});
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
