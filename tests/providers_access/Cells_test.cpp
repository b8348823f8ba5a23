// Stored rows and texts, byte by byte.
#include <gtest/gtest.h>

#include <optional>

#include "ado/types/ValueText.h"
#include "providers/access/CellDecoder.h"
#include "providers/access/UnicodeText.h"
#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"

namespace varnel::access {
namespace {

std::vector<std::uint8_t> Hex(std::string_view digits) {
    std::vector<std::uint8_t> bytes;
    std::string pair;
    for (const char c : digits) {
        if (c != ' ') pair += c;
        if (pair.size() == 2) bytes.push_back(static_cast<std::uint8_t>(std::stoi(pair, nullptr, 16))), pair.clear();
    }
    return bytes;
}

/// A column: place is the offset of a fixed cell, the number of a variable one.
Column Fixed(std::uint16_t id, ColumnType type, std::uint16_t place, std::uint16_t length = 0) {
    Column column;
    column.type = type, column.id = id, column.fixedOffset = place, column.length = length;
    column.flags = kFixedColumn;
    column.scale = 4;
    return column;
}
Column Variable(std::uint16_t id, ColumnType type, std::uint16_t place) {
    Column column;
    column.type = type, column.id = id, column.variableNumber = place;
    return column;
}
Column Calculated(Column column) {
    column.moreFlags = 0xC0;
    return column;
}

/// The cells as Shown writes them.
std::string Decoded(const std::vector<std::uint8_t>& row, const std::vector<Column>& columns, const Layout& shape) {
    static const CodePage western(1252);
    MemoryPageFile file({}, shape, "test");
    const auto pages = file.Freeze({});
    CellDecoder decoder(file, *pages, shape.version == Version::Jet3 ? &western : nullptr);
    RowView view(shape.version);
    const Fault rowFault = view.Attach(row);
    Rows rows(1);
    for (const Column& column : columns) {
        Value& value = rows[0].emplace_back();
        const Fault fault = rowFault != nullptr ? rowFault : decoder.Decode(PlanCell(column), view, value);
        if (fault != nullptr) value.SetFailure(fault);
    }
    return Shown(rows);
}

/// A Jet 4 row of variable cells only, all of them there.
std::vector<std::uint8_t> RowOf(const std::vector<std::string>& cells) {
    const auto put16 = [](std::string& out, std::size_t number) {
        out += static_cast<char>(number & 0xFF);
        out += static_cast<char>(number >> 8);
    };
    std::string row;
    put16(row, cells.size());
    std::vector<std::size_t> starts;
    for (const std::string& cell : cells) starts.push_back(row.size()), row += cell;
    put16(row, row.size());
    for (auto start = starts.rbegin(); start != starts.rend(); ++start) put16(row, *start);
    put16(row, cells.size());
    row += static_cast<char>((1 << cells.size()) - 1);
    return {row.begin(), row.end()};
}

const std::vector<Column> kMostTypes = {Fixed(0, ColumnType::Long, 0),    Variable(1, ColumnType::Text, 0),
                                        Variable(2, ColumnType::Memo, 1), Fixed(3, ColumnType::Numeric, 4),
                                        Fixed(4, ColumnType::Date, 21),   Fixed(5, ColumnType::Boolean, 0),
                                        Fixed(6, ColumnType::Guid, 29),   Variable(7, ColumnType::Text, 2)};
const char* const kMostTypesRow =
    "07 00 07 00 00 00 80 00 00 00 00 00 00 00 00 00 00 00 00 39 30 00 00 00 00 00 00 30 AB E4 40 "
    "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F FF FE 41 6E 6E 61 "
    "05 00 00 80 00 00 00 00 00 00 00 00 FF FE 61 62 63 46 00 35 00 2F 00 02 00 7F";

TEST(AccessCells, AreReadByTypeAndAYoungerColumnIsNull) {
    EXPECT_EQ(Decoded(Hex(kMostTypesRow), kMostTypes, kJet4Layout),
              "7|Anna|abc|-1.2345|11/21/2015 12:00:00 PM|True|{03020100-0504-0706-0809-0A0B0C0D0E0F}|~\n");
    // The same with every bit of the mask cleared.
    std::vector<std::uint8_t> nulls = Hex(kMostTypesRow);
    nulls.back() = 0;
    EXPECT_EQ(Decoded(nulls, kMostTypes, kJet4Layout), "~|~|~|~|~|False|~|~\n");
}

TEST(AccessCells, OfTheNewerTypesAreRead) {
    using namespace std::string_literals;
    const std::string extended = "0000000000000737791:0000432000000001:7"s;
    const std::string digits19 = "0000000000000737790:0000000432000000010:7"s;
    const std::string frame = std::string(16, '\0') + "\x04\0\0\0"s;
    const auto row = RowOf({"\xFB\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, digits19 + '\0', extended, "\x01\xAB"s,
                            frame + "\x4D\0\0\0\0\0\0"s, frame + "\x01\0\0"s});
    EXPECT_EQ(Decoded(row,
                      {Variable(0, ColumnType::BigInt, 0), Variable(1, ColumnType::ExtendedDate, 1),
                       Variable(2, ColumnType::ExtendedDate, 2), Variable(3, ColumnType::Binary, 3),
                       Calculated(Variable(4, ColumnType::Long, 4)), Calculated(Variable(5, ColumnType::Long, 5))},
                      kAceLayout),
              "-5|1/1/2021 12:00:00 PM|!its stored value has the wrong size|01AB|77|"
              "!its calculated value is cut short\n");
}

/// Days as stored, and the moment they mean.
TEST(AccessCells, DatesBeforeDayZeroCountTheTimeForward) {
    const std::pair<double, const char*> cases[] = {{-1.25, "12/29/1899 6:00:00 AM"},
                                                    {36622.742760416666, "4/6/2000 5:49:35 PM"},
                                                    {-657434.5, "1/1/100 12:00:00 PM"},
                                                    {2958466, "!"},
                                                    {-657435, "!"},
                                                    {std::numeric_limits<double>::quiet_NaN(), "!"},
                                                    {1e300, "!"}};
    for (const auto& [days, expected] : cases) {
        std::vector<std::uint8_t> row = Hex("01 00");
        const auto bits = std::bit_cast<std::uint64_t>(days);
        for (int k = 0; k < 8; ++k) row.push_back(static_cast<std::uint8_t>(bits >> (8 * k)));
        row.push_back(1);
        const std::string shown = Decoded(row, {Fixed(0, ColumnType::Date, 0)}, kJet4Layout);
        EXPECT_EQ(shown.substr(0, shown[0] == '!' ? 1 : shown.size() - 1), expected) << days;
    }
}

/// Offsets of one byte, with two jump bytes: the list of a row of 520 bytes.
TEST(AccessCells, OfALongAccess97RowAreFoundByTheJumps) {
    std::vector<std::uint8_t> row = {4, 9, 0, 0, 0};
    const auto fill = [&](char letter, std::size_t count) {
        row.insert(row.end(), count, static_cast<std::uint8_t>(letter));
    };
    fill('a', 200), fill('b', 120), fill('c', 190);
    // eod 515, starts 325, 205, 5; the first jump is at list entry 2 (325), the second at the end (515).
    for (const int byte : {515 & 0xFF, 325 & 0xFF, 205, 5, 3, 2, 3, 0x0F})
        row.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(Decoded(row,
                      {Fixed(0, ColumnType::Long, 0), Variable(1, ColumnType::Text, 0),
                       Variable(2, ColumnType::Text, 1), Variable(3, ColumnType::Text, 2)},
                      kJet3Layout),
              "9|" + std::string(200, 'a') + "|" + std::string(120, 'b') + "|" + std::string(190, 'c') + "\n");
}

TEST(AccessCells, ADamagedRowIsAFaultOfItsCells) {
    const std::vector<std::uint8_t> sound = Hex(kMostTypesRow);
    // No prefix, and no row with one byte changed, may read beyond the row; the sanitizers watch.
    for (std::size_t size = 0; size < sound.size(); ++size)
        Decoded({sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size)}, kMostTypes, kJet4Layout);
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const int changed : {0x00, 0x7F, 0xFF}) {
            std::vector<std::uint8_t> row = sound;
            row[at] = static_cast<std::uint8_t>(changed);
            Decoded(row, kMostTypes, kJet4Layout);
            Decoded(row, kMostTypes, kJet3Layout);
        }
    }
    std::vector<std::uint8_t> crossed = sound;
    crossed[crossed.size() - 7] = 0x20;  // the memo begins before the text
    EXPECT_EQ(Decoded(crossed, {kMostTypes[0], kMostTypes[1]}, kJet4Layout), "7|!the row is damaged\n");
}

struct TextCase {
    const char* stored;
    std::optional<std::string> text;  ///< none: it has a fault
};

/// Whole, and cut into two pieces anywhere.
TEST(AccessTexts, AreTheSameInPieces) {
    const TextCase cases[] = {
        {"", ""},
        {"FF FE", ""},
        {"41 00 42 00 43 00 44 00 BB 03 AC 20 45 00", "ABCD\u03BB\u20ACE"},
        {"3D D8 00 DE 41 00", "\U0001F600A"},
        {"FF FE 41 E4 80 42",
         "A\u00E4\u0080"
         "B"},
        {"FF FE 61 00 BB 03 BC 03 00 62",
         "a\u03BB\u03BC"
         "b"},  // switches there and back
        {"FF FE 61 00 BB 03", "a\u03BB"},
        {"41 00 42", {}},
        {"3D D8 41 00", {}},  // half of a pair: before a letter, alone, at the end, before the switch back
        {"00 DE", {}},
        {"41 00 3D D8", {}},
        {"FF FE 61 00 3D D8 00 62", {}},
    };
    for (const TextCase& row : cases) {
        const std::vector<std::uint8_t> stored = Hex(row.stored);
        for (std::size_t cut = 0; cut <= stored.size(); ++cut) {
            std::string out;
            UnicodeText text(out);
            Fault fault = text.Feed(Bytes(stored).first(cut));
            if (fault == nullptr) fault = text.Feed(Bytes(stored).subspan(cut));
            if (fault == nullptr) fault = text.Finish();
            EXPECT_EQ(fault == nullptr ? std::optional(out) : std::nullopt, row.text)
                << row.stored << ", cut at " << cut;
        }
    }
}

}  // namespace
}  // namespace varnel::access
