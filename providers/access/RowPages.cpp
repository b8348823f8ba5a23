#include "providers/access/RowPages.h"

#include <optional>

#include "providers/access/RowPage.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kEmptiedPage = 9;

}  // namespace

RowPointer RowPages::Add(std::span<const std::uint8_t> row, std::uint16_t flags) {
    if (current_ != 0) {
        RowPage rows(file_.Change(current_), current_, owner_);
        if (rows.Takes(row.size())) return {current_, rows.Add(row, flags)};
    }
    return AddElsewhere(row, flags);
}

RowPointer RowPages::AddElsewhere(std::span<const std::uint8_t> row, std::uint16_t flags) {
    while (!room_.IsNone()) {
        const std::optional<PageNumber> page = pages_.Maps().Last(room_);
        if (!page) break;
        RowPage rows(file_.Change(*page), *page, owner_);
        if (rows.Takes(row.size())) return {current_ = *page, rows.Add(row, flags)};
        pages_.Maps().Remove(room_, *page);
    }
    const PageNumber made = pages_.Take(owned_);
    RowPage::Format(file_.Change(made), owner_);
    if (!room_.IsNone()) pages_.Maps().AddHint(room_, current_ = made);
    return {made, RowPage(file_.Change(made), made, owner_).Add(row, flags)};
}

void RowPages::Delete(RowPointer row) {
    RowPage rows(file_.Change(row.page), row.page, owner_);
    rows.Delete(row.row);
    const bool isTable = owner_ != RowPage::kLongValueOwner;
    if (rows.IsEmpty() && !(isTable && pages_.Maps().First(owned_) == row.page)) return GiveBack(row.page);
    if (!room_.IsNone() && row.page != current_ && !pages_.Maps().Has(room_, row.page))
        pages_.Maps().AddHint(room_, row.page);
}

void RowPages::GiveBack(PageNumber page) {
    file_.Change(page)[0] = kEmptiedPage;
    if (!room_.IsNone()) pages_.Maps().Remove(room_, page);
    pages_.Give(owned_, page);
    if (current_ == page) current_ = 0;
}

}  // namespace varnel::access
