// Long values and usage maps out of pages made by hand.
#include <gtest/gtest.h>

#include <map>

#include "providers/access/LongValueReader.h"
#include "providers/access/UsageMapReader.h"
#include "tests/providers_access/MemoryPageFile.h"
#include "tests/support/ErrorOf.h"

namespace varnel::access {
namespace {

std::string LittleEndian(std::uint32_t number) {
    std::string bytes;
    for (int k = 0; k < 4; ++k) bytes += static_cast<char>(number >> (8 * k));
    return bytes;
}

/// A Jet 4 page with these rows.
std::string PageOf(const std::vector<std::string>& rows, std::uint32_t owner, std::uint32_t stamp = 0) {
    std::string page(4096, '\0');
    const auto put16 = [&](std::size_t at, std::size_t number) {
        page[at] = static_cast<char>(number & 0xFF), page[at + 1] = static_cast<char>(number >> 8);
    };
    page[0] = page[1] = 1;
    page.replace(4, 4, LittleEndian(owner));
    page.replace(8, 4, LittleEndian(stamp));
    put16(12, rows.size());
    std::size_t end = page.size();
    for (std::size_t k = 0; k < rows.size(); ++k) {
        end -= rows[k].size();
        page.replace(end, rows[k].size(), rows[k]);
        put16(14 + 2 * k, end);
    }
    return page;
}

MemoryPageFile FileOf(const std::map<PageNumber, std::string>& pages) {
    std::vector<std::uint8_t> bytes((pages.rbegin()->first + 1) * std::size_t{4096});
    for (const auto& [number, page] : pages)
        std::copy(page.begin(), page.end(), bytes.begin() + static_cast<std::ptrdiff_t>(number * std::size_t{4096}));
    return {std::move(bytes), kJet4Layout, "test"};
}

std::string Pointer(std::uint32_t page, std::uint8_t row) {
    return LittleEndian(PackRowPointer({page, row}));
}

constexpr std::uint32_t kInline = 0x80000000, kOnePage = 0x40000000, kStamp = 77;

struct LongCase {
    const char* name;
    std::string cell;
    std::string value;  ///< or "!" and the words of the fault
};
void PrintTo(const LongCase& value, std::ostream* out) {
    *out << value.name;
}
class AccessLongValues : public testing::TestWithParam<LongCase> {};

/// Page 1: two short values, the second one deleted. Pages 2, 3 and 4: a chain "ccc", "ddd", "ee". Page 5: a piece that
/// leads back to itself. Page 6: a table's rows. Page 7: a piece that leads beyond the file.
MemoryPageFile Pages() {
    std::string shared = PageOf({"short value", "gone"}, kLongValueOwner);
    shared[17] = static_cast<char>(shared[17] | 0xC0);
    return FileOf({{1, shared},
                   {2, PageOf({Pointer(3, 0) + "ccc"}, kLongValueOwner, kStamp)},
                   {3, PageOf({Pointer(4, 0) + "ddd"}, kLongValueOwner)},
                   {4, PageOf({Pointer(0, 0) + "ee"}, kLongValueOwner)},
                   {5, PageOf({Pointer(5, 0) + "ccc"}, kLongValueOwner)},
                   {6, PageOf({"row"}, 2)},
                   {7, PageOf({Pointer(90, 0) + "ccc"}, kLongValueOwner)}});
}

TEST_P(AccessLongValues, AreReadWholeOrHaveAFault) {
    MemoryPageFile file = Pages();
    const auto snapshot = file.Freeze({});
    LongValueReader reader(file, *snapshot);
    std::string value;
    const std::vector<std::uint8_t> cell(GetParam().cell.begin(), GetParam().cell.end());
    const Fault fault = reader.Read(cell, [&](Bytes piece) -> Fault {
        value.append(piece.begin(), piece.end());
        return nullptr;
    });
    EXPECT_EQ(fault != nullptr ? "!" + std::string(fault) : value, GetParam().value);
}

std::string Cell(std::uint32_t length, const std::string& pointer, std::uint32_t stamp = 0,
                 const std::string& data = "") {
    return LittleEndian(length) + pointer + LittleEndian(stamp) + data;
}

INSTANTIATE_TEST_SUITE_P(
    Jet4, AccessLongValues,
    testing::Values(
        LongCase{"Inline", Cell(5 | kInline, Pointer(0, 0), 0, "hello"), "hello"},
        LongCase{"InlineEmpty", Cell(kInline, Pointer(0, 0)), ""},
        LongCase{"InlineCut", Cell(6 | kInline, Pointer(0, 0), 0, "hello"),
                 "!its long value is shorter than announced"},
        LongCase{"CellCut", "\5", "!the place of its long value is cut short"},
        LongCase{"OnePage", Cell(11 | kOnePage, Pointer(1, 0)), "short value"},
        LongCase{"OnePageShort", Cell(12 | kOnePage, Pointer(1, 0)), "!its long value is shorter than announced"},
        LongCase{"Deleted", Cell(4 | kOnePage, Pointer(1, 1)), "!its long value is not there"},
        LongCase{"NoSuchRow", Cell(4 | kOnePage, Pointer(1, 9)), "!its long value is not there"},
        LongCase{"OfATable", Cell(3 | kOnePage, Pointer(6, 0)), "!the page of its long value holds something else"},
        LongCase{"NoPage", Cell(3 | kOnePage, Pointer(0, 0)), "!its long value lies beyond the end of the file"},
        LongCase{"Chain", Cell(8, Pointer(2, 0), kStamp), "cccdddee"},
        LongCase{"ChainShort", Cell(9, Pointer(2, 0), kStamp), "!its long value is shorter than announced"},
        LongCase{"ChainLong", Cell(7, Pointer(2, 0), kStamp), "!its long value is longer than announced"},
        LongCase{"ChainOfAnotherRow", Cell(8, Pointer(2, 0), kStamp + 1),
                 "!its long value was given to another row (the stamps differ)"},
        LongCase{"ChainWithoutEnd", Cell(0x3FFFFFFF, Pointer(5, 0)),
                 "!the pages of its long value lead back to one of them"},
        LongCase{"ChainBeyondTheFile", Cell(8, Pointer(7, 0)), "!its long value lies beyond the end of the file"}),
    [](const auto& value) { return std::string(value.param.name); });

std::string Members(const PageSet& pages) {
    std::string text;
    for (auto page = pages.Next(0); page; page = pages.Next(*page + 1)) text += std::to_string(*page) + " ";
    return text;
}

/// The bits 0, 9 and 16 of a bitmap.
const std::string kBits = std::string("\x01\x02\x01", 3) + std::string(61, '\0');

TEST(AccessUsageMaps, AreReadInlineAndByReference) {
    const std::string reference = std::string(1, '\1') + LittleEndian(2) + LittleEndian(0) + LittleEndian(3);
    MemoryPageFile file =
        FileOf({{1, PageOf({std::string(1, '\0') + LittleEndian(0) + kBits,
                            std::string(1, '\0') + LittleEndian(512) + kBits, reference,
                            std::string(1, '\0') + LittleEndian(0xFFFFFF) + kBits, std::string(1, '\2') + kBits, "\1"},
                           kUsageMapOwner)},
                {2, std::string("\5\1\0\0", 4) + kBits + std::string(4028, '\0')},
                {3, std::string("\5\1\0\0", 4) + kBits + std::string(4028, '\0')}});
    EXPECT_EQ(Members(ReadUsageMap(file, {1, 0})), "0 9 16 ");
    EXPECT_EQ(Members(ReadUsageMap(file, {1, 1})), "512 521 528 ");
    EXPECT_EQ(Members(ReadUsageMap(file, {1, 2})), "0 9 16 65472 65481 65488 ");
    EXPECT_EQ(Members(ReadUsageMap(file, {0, 0})), "");
    for (const RowPointer damaged :
         {RowPointer{1, 3}, RowPointer{1, 4}, RowPointer{1, 5}, RowPointer{1, 6}, RowPointer{2, 0}, RowPointer{90, 0}})
        EXPECT_NE(ErrorOf([&] { ReadUsageMap(file, damaged); }), "") << damaged.page << "/" << int{damaged.row};
}

}  // namespace
}  // namespace varnel::access
