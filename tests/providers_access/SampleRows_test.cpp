// Every table of every sample file against what mdb-export, an independent reader, says of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "ado/types/ValueText.h"
#include "platform/DateTime.h"
#include "tests/providers_access/SampleFiles.h"

namespace varnel::access {
namespace {

// The samples hold texts of every single character.
constexpr std::string_view kCellEnd = "<|cell|>", kRowEnd = "<|row|>", kNull = "<|null|>";

bool HasOtherReader() {
    static const bool has = std::system("mdb-export --version >/dev/null 2>&1") == 0;
    return has;
}

using Texts = std::vector<std::vector<std::string>>;

/// The parts of a text that separator stands between; the last one ends with end.
std::vector<std::string> Split(std::string_view text, std::string_view separator, std::string_view end) {
    std::vector<std::string> parts;
    if (text.ends_with(end)) text.remove_suffix(end.size());
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t next = std::min(text.find(separator, at), text.size());
        parts.emplace_back(text.substr(at, next - at));
        at = next + separator.size();
    }
    return parts;
}

/// The first row has the names of the columns, which that reader orders by number.
Texts OtherReadersRows(const std::string& path, const std::string& table) {
    const std::string output = OutputOf("mdb-export -Q -b hex -D '%Y-%m-%d %H:%M:%S' -T '%Y-%m-%d %H:%M:%S' -0 '" +
                                        std::string(kNull) + "' -d '" + std::string(kCellEnd) + "' -R '" +
                                        std::string(kRowEnd) + "' '" + path + "' '" + table + "' 2>/dev/null");
    Texts rows;
    for (const std::string& row : Split(output, kRowEnd, kRowEnd)) rows.push_back(Split(row, kCellEnd, ""));
    return rows;
}

std::string DigitsOf(const std::string& guid) {
    std::string digits;
    std::copy_if(guid.begin(), guid.end(), std::back_inserter(digits), [](char c) { return std::isxdigit(c) != 0; });
    return digits;
}

/// Asked for bytes as digits, that reader writes the text of a GUID so as well.
std::string TextOfHex(const std::string& hex) {
    std::string text;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2)
        text += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return text;
}

/// U+0080 to U+009F as "?": bytes that are no characters of the code page, of which that reader makes question marks.
std::string WithoutControls(std::string text) {
    for (std::size_t at = 0; (at = text.find('\xC2', at)) != std::string::npos; ++at) {
        if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0) text.replace(at, 2, "?");
    }
    return text;
}

/// The value as mdb-export would write it; numbers in a form in which both are alike.
std::string Comparable(const Value& value, DataTypeEnum type) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return std::string(kNull);
        case ValueKind::Boolean:
            return value.AsBoolean() ? "1" : "0";
        case ValueKind::DateTime: {
            DateTime moment = value.AsDateTime();
            if (moment.days < 0) return "1900-01-00 00:00:00";  // that reader has no such days
            // Half a second is a little less than half in the stored number, from which that reader rounds.
            moment.micros = (moment.micros + kMicrosPerSecond / 2 - 1) / kMicrosPerSecond * kMicrosPerSecond;
            std::string text;
            AppendIsoDateTime(text, moment);
            return text;
        }
        case ValueKind::Guid:
            return DigitsOf(DefaultText(value));
        case ValueKind::Failure:
            return "!" + std::string(value.FailureText());
        case ValueKind::Text:  // that reader ends texts at a zero
            return std::string(value.AsText().substr(0, value.AsText().find('\0')));
        case ValueKind::Bytes:  // and takes short bytes that begin with a zero for none
            return type == adVarBinary && value.AsBytes()[0] == 0 ? std::string(kNull) : DefaultText(value);
        default:
            return DefaultText(value);
    }
}

/// mdb-export writes floating-point numbers with more digits than they have, and money with four places.
std::string SameForm(const std::string& text, DataTypeEnum type) {
    if (text == kNull) return text;
    char buffer[64];
    switch (type) {
        case adSingle:
            std::snprintf(buffer, sizeof buffer, "%.6g", std::strtod(text.c_str(), nullptr));
            return buffer;
        case adDouble:
            std::snprintf(buffer, sizeof buffer, "%.13g", std::strtod(text.c_str(), nullptr));
            return buffer;
        case adCurrency:
        case adNumeric: {
            Decimal number;
            std::string out;
            if (ParseDecimal(text, number)) AppendDecimalText(out, number);
            return out;
        }
        case adGUID:
            return DigitsOf(text.size() > 2 * 32 ? TextOfHex(text) : text);
        default:
            return WithoutControls(text);
    }
}

/// One line per row, sorted: the other reader delivers moved rows elsewhere.
std::vector<std::string> Lines(const Texts& texts, const std::vector<DataTypeEnum>& types) {
    std::vector<std::string> lines;
    for (const auto& row : texts) {
        std::string line;
        for (std::size_t k = 0; k < row.size(); ++k) line += (k > 0 ? "|" : "") + SameForm(row[k], types.at(k));
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::vector<DataTypeEnum> TypesOf(const TableFile& table, const std::vector<std::string>& names) {
    std::vector<DataTypeEnum> types;
    for (const std::string& name : names) types.push_back(table.Columns()[table.FindColumn(name).value()].type);
    return types;
}

/// Shows the first line that differs only: a table may have thousands.
void ExpectSameLines(const std::vector<std::string>& ours, const std::vector<std::string>& theirs) {
    ASSERT_EQ(ours.size(), theirs.size());
    const auto [our, their] = std::mismatch(ours.begin(), ours.end(), theirs.begin());
    ASSERT_TRUE(our == ours.end()) << *our << "\nis there\n" << *their;
}

struct Sample {
    const char* file;
    std::vector<std::string> systemTables;
};

class SampleRows : public testing::TestWithParam<Sample> {};

TEST_P(SampleRows, AreThoseOfAnotherReader) {
    const auto path = SamplePath(GetParam().file);
    if (!path) GTEST_SKIP() << "no sample file " << GetParam().file;
    if (!HasOtherReader()) GTEST_SKIP() << "mdb-export (package mdbtools) is missing";
    const auto database = DatabaseOf(BytesOfFile(*path), GetParam().file);
    std::vector<std::string> tables = database->TableNames();
    EXPECT_THAT(tables, testing::UnorderedElementsAreArray(LinesOf("mdb-tables -1 " + *path)));
    tables.insert(tables.end(), GetParam().systemTables.begin(), GetParam().systemTables.end());
    for (const std::string& table : tables) {
        SCOPED_TRACE(table);
        Texts theirs = OtherReadersRows(*path, table);
        ASSERT_FALSE(theirs.empty());
        const auto file = database->OpenTable(table);
        const Rows rows = ReadColumns(*file, theirs[0]);
        const std::vector<DataTypeEnum> types = TypesOf(*file, theirs[0]);
        theirs.erase(theirs.begin());
        Texts ours;
        for (const auto& row : rows) {
            ours.emplace_back();
            for (std::size_t k = 0; k < row.size(); ++k) ours.back().push_back(Comparable(row[k], types[k]));
        }
        ExpectSameLines(Lines(ours, types), Lines(theirs, types));
        EXPECT_EQ(file->CountRows(), static_cast<std::int64_t>(rows.size()));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Access, SampleRows,
    testing::Values(Sample{"adox_jet4.mdb", {"MSysObjects", "MSysACEs"}},
                    Sample{"compIndexTestV2000.mdb", {"MSysObjects"}}, Sample{"fixedNumericTestV2000.mdb", {}},
                    Sample{"indexTestV2000.mdb", {"MSysObjects", "MSysNavPaneGroupCategories"}},
                    Sample{"linkerTestV2007.accdb", {"MSysObjects", "MSysAccessStorage", "MSysNameMap"}},
                    Sample{"nwind97.mdb", {"MSysObjects", "MSysQueries"}},
                    Sample{"overflowTestV2000.mdb", {"MSysObjects"}},
                    Sample{"queryTestV2000.mdb", {"MSysQueries", "MSysObjects"}},
                    Sample{"test2V2003.mdb", {"MSysObjects", "MSysAccessStorage"}},
                    Sample{"testIndexCodesV1997.mdb", {"MSysObjects"}},
                    Sample{"testIndexPropertiesV2000.mdb", {"MSysObjects"}},
                    Sample{"testUnicodeCompV2003.mdb", {"MSysObjects"}}),
    [](const auto& sample) {
        const std::string name = sample.param.file;
        return name.substr(0, name.find('.'));
    });

}  // namespace
}  // namespace varnel::access
