#include "providers/access/VerifyPages.h"

#include "providers/access/UsageMapReader.h"

namespace varnel::access {
namespace {

constexpr std::size_t kFreeAt = 2, kMostSlots = 255;
constexpr std::uint8_t kRowPage = 1;

void ClaimPage(VerifyContext& context, PageNumber page, PageLedger::Use use) {
    std::string fault = context.ledger.Claim(page, use, context.file.PageCount());
    if (!fault.empty()) context.Find(std::move(fault));
}

}  // namespace

std::optional<VerifiedPage> VerifyRowPage(VerifyContext& context, PageNumber page, std::uint32_t owner,
                                          const std::string& place) {
    std::optional<VerifiedPage> read(std::in_place);
    const Layout& shape = context.file.Shape();
    if (!context.Try([&] { read->pin = context.file.Read(page); })) return std::nullopt;
    const Bytes bytes(read->pin.get(), shape.pageSize);
    if (bytes[0] != kRowPage || bytes[1] != 1) {
        context.Find(place + ": it is no page of rows.");
        return std::nullopt;
    }
    if (const Fault fault = read->rows.Attach(bytes, shape)) {
        context.Find(place + ": " + fault + ".");
        return std::nullopt;
    }
    if (read->rows.Owner() != owner) context.Find(place + ": it belongs to something else.");
    const std::size_t count = read->rows.SlotCount();
    if (count > kMostSlots) context.Find(place + ": it has too many row slots.");
    const Bytes last = count == 0 ? Bytes() : read->rows.At(count - 1).bytes;
    const std::size_t lowest = count == 0 ? shape.pageSize : static_cast<std::size_t>(last.data() - bytes.data());
    const std::size_t free = LoadU16(bytes, kFreeAt);
    if (free != lowest - shape.slotsAt - 2 * count) context.Find(place + ": its free space is noted wrongly.");
    return read;
}

void ClaimBitmapPages(VerifyContext& context, RowPointer map, PageLedger::Use use) {
    const PagePin pin = context.file.Read(map.page);
    DataPage page;
    if (page.Attach({pin.get(), context.file.Shape().pageSize}, context.file.Shape()) != nullptr) return;
    const Bytes row = page.At(map.row).bytes;
    if (row[0] != 1) return;
    for (std::size_t at = 1; at + 4 <= row.size(); at += 4) {
        const PageNumber bits = LoadU32(row, at);
        if (bits != 0) ClaimPage(context, bits, use);
    }
}

VerifiedPage OpenRowPage(VerifyContext& context, PageNumber page) {
    VerifiedPage read;
    read.pin = context.file.Read(page);
    read.rows.Attach({read.pin.get(), context.file.Shape().pageSize}, context.file.Shape());
    return read;
}

PageSet VerifyMap(VerifyContext& context, RowPointer map, const std::string& what, bool claimPages) {
    PageSet pages;
    if (map.IsNone()) return pages;
    const PageLedger::Use use = context.ledger.NewUse(what);
    std::string fault =
        context.ledger.ClaimMap(map, context.ledger.NewUse("the map of " + what), context.file.PageCount());
    if (!fault.empty()) context.Find(std::move(fault));
    context.Try([&] {
        pages = ReadUsageMap(context.file, map);
        ClaimBitmapPages(context, map, use);
    });
    if (!claimPages) return pages;
    for (auto page = pages.Next(0); page; page = pages.Next(*page + 1)) {
        ClaimPage(context, *page, use);
        if (*page < context.file.PageCount()) continue;
        for (auto beyond = page; beyond; beyond = pages.Next(*beyond + 1)) pages.Remove(*beyond);  // said once
        break;
    }
    return pages;
}

}  // namespace varnel::access
