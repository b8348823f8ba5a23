#include "providers/access/RowPage.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/Error.h"
#include "providers/access/StoreBytes.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {
namespace {

constexpr std::size_t kFreeAt = 2, kOwnerAt = 4;
constexpr std::uint16_t kOffsetBits = 0x1FFF;

}  // namespace

void RowPage::Format(std::span<std::uint8_t> page, std::uint32_t owner) {
    page[0] = 1;
    page[1] = 1;
    StoreU16(page, kFreeAt, page.size() - kJet4Layout.slotsAt);
    StoreU32(page, kOwnerAt, owner);
}

RowPage::RowPage(std::span<std::uint8_t> page, PageNumber number, std::uint32_t owner) : page_(page), number_(number) {
    if (page[0] != 1 || LoadU32(page, kOwnerAt) != owner) ThrowDamaged("is not a page of rows of its table");
    slots_ = LoadU16(page, kJet4Layout.slotCountAt);
    if (slots_ > kMostRowsOnPage + 1) ThrowDamaged("has too many rows");
    lowest_ = slots_ == 0 ? page.size() : Start(slots_ - 1);
    if (lowest_ < SlotAt(slots_) || lowest_ > page.size()) ThrowDamaged("has rows outside their place");
}

void RowPage::ThrowDamaged(std::string_view what) const {
    const std::string place = "page " + std::to_string(number_);
    throw Error(ErrorKind::Corrupt, place, "The database is damaged: " + place + " " + std::string(what) + ".");
}

std::size_t RowPage::Start(std::size_t slot) const {
    return LoadU16(page_, SlotAt(slot)) & kOffsetBits;
}

void RowPage::CheckSlots() const {
    std::size_t end = page_.size();
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        const std::size_t start = Start(slot);
        if (start > end) ThrowDamaged("has rows that overlap");
        end = start;
    }
}

void RowPage::StoreFree() {
    StoreU16(page_, kFreeAt, Free());
}

bool RowPage::IsEmpty() const {
    for (std::size_t slot = 0; slot < slots_; ++slot)
        if (Flags(slot) != kDeletedRow) return false;
    return true;
}

std::uint16_t RowPage::Flags(std::size_t slot) const {
    if (slot >= slots_) ThrowDamaged("lacks a row");
    return LoadU16(page_, SlotAt(slot)) & kDeletedRow;
}

std::span<std::uint8_t> RowPage::Row(std::size_t slot) {
    Flags(slot);
    CheckSlots();
    return page_.subspan(Start(slot), Length(slot));
}

std::uint8_t RowPage::Add(std::span<const std::uint8_t> row, std::uint16_t flags) {
    const auto slot = static_cast<std::uint8_t>(slots_);
    const std::span<std::uint8_t> place = AddSpace(row.size(), flags);
    std::copy(row.begin(), row.end(), place.begin());
    return slot;
}

std::span<std::uint8_t> RowPage::AddSpace(std::size_t bytes, std::uint16_t flags) {
    lowest_ -= bytes;
    StoreU16(page_, SlotAt(slots_), lowest_ | flags);
    StoreU16(page_, kJet4Layout.slotCountAt, ++slots_);
    StoreFree();
    return page_.subspan(lowest_, bytes);
}

void RowPage::Replace(std::size_t slot, std::span<const std::uint8_t> row, std::uint16_t flags) {
    const std::span<std::uint8_t> place = Resize(slot, row.size());
    std::copy(row.begin(), row.end(), place.begin());
    StoreU16(page_, SlotAt(slot), Start(slot) | flags);
}

std::span<std::uint8_t> RowPage::Resize(std::size_t slot, std::size_t bytes) {
    Flags(slot);
    CheckSlots();
    const std::size_t start = Start(slot), end = End(slot), length = end - start, newStart = end - bytes;
    const std::size_t kept = std::min(length, bytes);
    std::uint8_t saved[4096];
    std::memcpy(saved, &page_[start], kept);
    const auto shift = static_cast<std::ptrdiff_t>(newStart) - static_cast<std::ptrdiff_t>(start);
    if (shift != 0) {
        std::memmove(page_.data() + static_cast<std::ptrdiff_t>(lowest_) + shift, page_.data() + lowest_,
                     start - lowest_);
        for (std::size_t k = slot; k < slots_; ++k) {
            const std::uint16_t old = LoadU16(page_, SlotAt(k));
            const auto moved = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(old & kOffsetBits) + shift);
            StoreU16(page_, SlotAt(k), moved | (old & kDeletedRow));
        }
        lowest_ = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(lowest_) + shift);
        StoreFree();
    }
    const std::span<std::uint8_t> place = page_.subspan(newStart, bytes);
    std::memcpy(place.data(), saved, kept);
    std::fill(place.begin() + static_cast<std::ptrdiff_t>(kept), place.end(), std::uint8_t{0});
    return place;
}

}  // namespace varnel::access
