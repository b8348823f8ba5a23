// Long values out of pages made by hand.
#include <gtest/gtest.h>

#include "providers/access/LongValueReader.h"
#include "tests/providers_access/MemoryPageFile.h"

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

std::string Pointer(std::uint32_t page, std::uint8_t row) {
    return LittleEndian(PackRowPointer({page, row}));
}

constexpr std::uint32_t kInline = 0x80000000, kOnePage = 0x40000000, kStamp = 77;

/// Page 1: two short values, the second one deleted. Pages 2, 3 and 4: a chain "ccc", "ddd", "ee". Page 5: a piece that
/// leads back to itself. Page 6: a table's rows. Page 7: a piece that leads beyond the file.
MemoryPageFile Pages() {
    std::string shared = PageOf({"short value", "gone"}, kLongValueOwner);
    shared[17] = static_cast<char>(shared[17] | 0xC0);
    const std::string all =
        std::string(4096, '\0') + shared + PageOf({Pointer(3, 0) + "ccc"}, kLongValueOwner, kStamp) +
        PageOf({Pointer(4, 0) + "ddd"}, kLongValueOwner) + PageOf({Pointer(0, 0) + "ee"}, kLongValueOwner) +
        PageOf({Pointer(5, 0) + "ccc"}, kLongValueOwner) + PageOf({"row"}, 2) +
        PageOf({Pointer(90, 0) + "ccc"}, kLongValueOwner);
    return {{all.begin(), all.end()}, kJet4Layout, "test"};
}

std::string Cell(std::uint32_t length, const std::string& pointer, std::uint32_t stamp = 0,
                 const std::string& data = "") {
    return LittleEndian(length) + pointer + LittleEndian(stamp) + data;
}

TEST(AccessLongValues, AreReadWholeOrHaveAFault) {
    const std::pair<std::string, std::string> cases[] = {
        {Cell(5 | kInline, Pointer(0, 0), 0, "hello"), "hello"},
        {Cell(kInline, Pointer(0, 0)), ""},
        {Cell(6 | kInline, Pointer(0, 0), 0, "hello"), "!its long value is shorter than announced"},
        {"\5", "!the place of its long value is cut short"},
        {Cell(11 | kOnePage, Pointer(1, 0)), "short value"},
        {Cell(12 | kOnePage, Pointer(1, 0)), "!its long value is shorter than announced"},
        {Cell(4 | kOnePage, Pointer(1, 1)), "!its long value is not there"},
        {Cell(4 | kOnePage, Pointer(1, 9)), "!its long value is not there"},
        {Cell(3 | kOnePage, Pointer(6, 0)), "!the page of its long value holds something else"},
        {Cell(3 | kOnePage, Pointer(0, 0)), "!its long value lies beyond the end of the file"},
        {Cell(8, Pointer(2, 0), kStamp), "cccdddee"},
        {Cell(9, Pointer(2, 0), kStamp), "!its long value is shorter than announced"},
        {Cell(7, Pointer(2, 0), kStamp), "!its long value is longer than announced"},
        {Cell(8, Pointer(2, 0), kStamp + 1), "!its long value was given to another row (the stamps differ)"},
        {Cell(0x3FFFFFFF, Pointer(5, 0)), "!the pages of its long value lead back to one of them"},
        {Cell(8, Pointer(7, 0)), "!its long value lies beyond the end of the file"}};
    MemoryPageFile file = Pages();
    const auto snapshot = file.Freeze({});
    LongValueReader reader(file, *snapshot);
    for (const auto& [stored, expected] : cases) {
        const std::vector<std::uint8_t> cell(stored.begin(), stored.end());
        std::string value;
        const Fault fault = reader.Read(cell, [&](Bytes piece) -> Fault {
            value.append(piece.begin(), piece.end());
            return nullptr;
        });
        EXPECT_EQ(fault != nullptr ? "!" + std::string(fault) : value, expected);
    }
}

}  // namespace
}  // namespace varnel::access
