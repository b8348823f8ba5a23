#include "providers/access/UsageMapReader.h"

#include <string>

#include "platform/Error.h"
#include "providers/access/DataPage.h"

namespace varnel::access {
namespace {

constexpr std::size_t kBitsAt = 4;  // of a bitmap page
constexpr std::uint8_t kBitmapPage = 5;

[[noreturn]] void ThrowDamaged(const PageFile& file, RowPointer at, const std::string& what) {
    const std::string place = file.StoredPath() + ", page " + std::to_string(at.page);
    throw Error(ErrorKind::Corrupt, place,
                place + ": the map of pages in row " + std::to_string(at.row) + " cannot be read: " + what);
}

void AddBits(PageSet& pages, Bytes bits, std::uint64_t first, const PageFile& file, RowPointer at) {
    for (std::size_t k = 0; k < bits.size(); ++k) {
        for (unsigned bit = 0; bits[k] >> bit != 0; ++bit) {
            if (((bits[k] >> bit) & 1) == 0) continue;
            const std::uint64_t page = first + k * 8 + bit;
            if (page > kHighestPage) ThrowDamaged(file, at, "it names a page that no file has");
            pages.Add(static_cast<PageNumber>(page));
        }
    }
}

}  // namespace

PageSet ReadUsageMapRow(PageFile& file, Bytes row, RowPointer at) {
    PageSet pages;
    if (row.size() < 5) ThrowDamaged(file, at, "it is cut short");
    if (row[0] == 0) {
        AddBits(pages, row.subspan(5), LoadU32(row, 1), file, at);
        return pages;
    }
    if (row[0] != 1) ThrowDamaged(file, at, "it is of no known kind");
    const std::size_t pageSize = file.Shape().pageSize;
    for (std::size_t k = 0; 1 + 4 * (k + 1) <= row.size(); ++k) {
        const PageNumber bitmap = LoadU32(row, 1 + 4 * k);
        if (bitmap == 0) continue;
        const PagePin pin = file.Read(bitmap);
        const Bytes page(pin.get(), pageSize);
        if (page[0] != kBitmapPage) ThrowDamaged(file, at, "page " + std::to_string(bitmap) + " is no bitmap page");
        AddBits(pages, page.subspan(kBitsAt), std::uint64_t{k} * (pageSize - kBitsAt) * 8, file, at);
    }
    return pages;
}

PageSet ReadUsageMap(PageFile& file, RowPointer at) {
    if (at.IsNone()) return {};
    const PagePin pin = file.Read(at.page);
    DataPage page;
    if (const Fault fault = page.Attach({pin.get(), file.Shape().pageSize}, file.Shape()))
        ThrowDamaged(file, at, fault);
    if (at.row >= page.SlotCount() || page.At(at.row).kind != SlotKind::Row) ThrowDamaged(file, at, "there is none");
    return ReadUsageMapRow(file, page.At(at.row).bytes, at);
}

}  // namespace varnel::access
