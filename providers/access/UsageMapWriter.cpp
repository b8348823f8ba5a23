#include "providers/access/UsageMapWriter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "platform/Error.h"
#include "providers/access/DataPage.h"
#include "providers/access/RowPage.h"
#include "providers/access/StoreBytes.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {
namespace {

constexpr std::size_t kInlineHead = 5, kReferenceHead = 1, kBitPageHead = 4;
constexpr std::uint8_t kInline = 0, kReference = 1, kBitPageType = 5;
constexpr PageNumber kWindow = 512;  ///< pages of a new map, and the step in which an empty one moves

[[noreturn]] void ThrowDamaged(RowPointer map) {
    const std::string place = "row " + std::to_string(map.row) + " of page " + std::to_string(map.page);
    throw Error(ErrorKind::Corrupt, place, "The database is damaged: the usage map at " + place + " is none.");
}

bool IsReference(std::span<const std::uint8_t> row, RowPointer map) {
    const bool inlineMap = row.size() >= kInlineHead && row[0] == kInline;
    const bool reference = row.size() >= kReferenceHead + 4 * kReferences && row[0] == kReference;
    if (!inlineMap && !reference) ThrowDamaged(map);
    return reference;
}

void SetBit(std::span<std::uint8_t> bytes, std::size_t bit, bool value) {
    const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
    bytes[bit / 8] = static_cast<std::uint8_t>(value ? bytes[bit / 8] | mask : bytes[bit / 8] & ~mask);
}

bool HasBit(std::span<const std::uint8_t> bytes, std::size_t bit) {
    return bit / 8 < bytes.size() && ((bytes[bit / 8] >> (bit % 8)) & 1) != 0;
}

/// The position of the first byte that is not 0; the size when there is none.
std::size_t FirstUsedByte(std::span<const std::uint8_t> bytes) {
    static constexpr std::uint8_t kZeros[64] = {};
    std::size_t at = 0;
    while (bytes.size() - at >= sizeof kZeros && std::memcmp(&bytes[at], kZeros, sizeof kZeros) == 0)
        at += sizeof kZeros;
    while (at < bytes.size() && bytes[at] == 0) ++at;
    return at;
}

}  // namespace

void UsageMapWriter::ForEachPiece(RowPointer map, bool backwards, const std::function<bool(const Bits&)>& look) {
    const PagePin pin = file_.Read(map.page);
    DataPage rows;
    if (rows.Attach({pin.get(), file_.Shape().pageSize}, file_.Shape()) != nullptr || map.row >= rows.SlotCount())
        ThrowDamaged(map);
    const std::span<const std::uint8_t> row = rows.At(map.row).bytes;
    if (!IsReference(row, map)) {
        look({LoadU32(row, 1), row.subspan(kInlineHead)});
        return;
    }
    for (std::size_t i = 0; i < kReferences; ++i) {
        const std::size_t k = backwards ? kReferences - 1 - i : i;
        const PageNumber at = LoadU32(row, kReferenceHead + 4 * k);
        if (at == 0) continue;
        const PagePin bits = file_.Read(at);
        if (bits[0] != kBitPageType) ThrowDamaged(map);
        const Bits piece{static_cast<PageNumber>(k) * kPagesPerReference,
                         std::span(bits.get(), file_.Shape().pageSize).subspan(kBitPageHead)};
        if (look(piece)) return;
    }
}

bool UsageMapWriter::Has(RowPointer map, PageNumber page) {
    bool has = false;
    ForEachPiece(map, false, [&](const Bits& bits) {
        if (page >= bits.first) has = has || HasBit(bits.bytes, page - bits.first);
        return has;
    });
    return has;
}

std::optional<PageNumber> UsageMapWriter::First(RowPointer map) {
    std::optional<PageNumber> found;
    ForEachPiece(map, false, [&](const Bits& bits) {
        const std::size_t byte = FirstUsedByte(bits.bytes);
        if (byte == bits.bytes.size()) return false;
        found = bits.first + static_cast<PageNumber>(8 * byte) +
                static_cast<PageNumber>(std::countr_zero(bits.bytes[byte]));
        return true;
    });
    return found;
}

std::optional<PageNumber> UsageMapWriter::Last(RowPointer map) {
    std::optional<PageNumber> found;
    ForEachPiece(map, true, [&](const Bits& bits) {
        const auto byte = std::find_if(bits.bytes.rbegin(), bits.bytes.rend(), [](std::uint8_t b) { return b != 0; });
        if (byte == bits.bytes.rend()) return false;
        const auto bit = static_cast<PageNumber>(8 * (bits.bytes.rend() - byte) - 1 - std::countl_zero(*byte));
        found = bits.first + bit;
        return true;
    });
    return found;
}

std::vector<PageNumber> UsageMapWriter::Reset(RowPointer map) {
    std::vector<PageNumber> bitPages;
    RowPage rows(file_.Change(map.page), map.page, OwnerOf(map));
    const std::span<const std::uint8_t> row = rows.Row(map.row);
    for (std::size_t k = 0; IsReference(row, map) && k < kReferences; ++k)
        if (const PageNumber at = LoadU32(row, kReferenceHead + 4 * k); at != 0) bitPages.push_back(at);
    if (!rows.CanHold(map.row, kNewMapBytes)) ThrowDamaged(map);
    rows.Replace(map.row, std::vector<std::uint8_t>(kNewMapBytes), rows.Flags(map.row));
    return bitPages;
}

void UsageMapWriter::Set(RowPointer map, PageNumber page, bool value, bool mayMove) {
    const std::span<std::uint8_t> row = RowPage(file_.Change(map.page), map.page, OwnerOf(map)).Row(map.row);
    if (IsReference(row, map)) return SetReferenced(map, page, value);
    const PageNumber first = LoadU32(row, 1);
    if (page >= first && (page - first) / 8 < row.size() - kInlineHead)
        return SetBit(row.subspan(kInlineHead), page - first, value);
    if (!value) return;
    if (!GrowInline(map, page, mayMove)) BecomeReference(map);
    Set(map, page, value, mayMove);
}

void UsageMapWriter::SetReferenced(RowPointer map, PageNumber page, bool value) {
    const auto reference = [&] {
        return RowPage(file_.Change(map.page), map.page, OwnerOf(map))
            .Row(map.row)
            .subspan(kReferenceHead + 4 * (page / kPagesPerReference), 4);
    };
    if (page / kPagesPerReference >= kReferences) ThrowDamaged(map);
    PageNumber at = LoadU32(reference(), 0);
    if (at == 0) {
        if (!value) return;
        at = takePage_();
        const std::span<std::uint8_t> bits = file_.Change(at);
        bits[0] = kBitPageType;
        bits[1] = 1;
        StoreU32(reference(), 0, at);
    }
    const std::span<std::uint8_t> bits = file_.Change(at);
    if (bits[0] != kBitPageType) ThrowDamaged(map);
    SetBit(bits.subspan(kBitPageHead), page % kPagesPerReference, value);
}

/// Makes an inline map cover page; false when there is no room for that.
bool UsageMapWriter::GrowInline(RowPointer map, PageNumber page, bool mayMove) {
    RowPage rows(file_.Change(map.page), map.page, OwnerOf(map));
    const std::span<std::uint8_t> row = rows.Row(map.row);
    if (mayMove && row.size() >= kNewMapBytes && FirstUsedByte(row.subspan(kInlineHead)) == row.size() - kInlineHead) {
        StoreU32(row, 1, page / kWindow * kWindow);
        return true;
    }
    const PageNumber first = LoadU32(row, 1);
    if (page < first) return false;
    const std::size_t bytes = kInlineHead + 4 * ((page - first) / 32 + 1);
    if (bytes > file_.Shape().pageSize || !rows.CanHold(map.row, bytes)) return false;
    rows.Resize(map.row, bytes);
    return true;
}

void UsageMapWriter::BecomeReference(RowPointer map) {
    RowPage rows(file_.Change(map.page), map.page, OwnerOf(map));
    const std::span<std::uint8_t> row = rows.Row(map.row);
    const PageNumber first = LoadU32(row, 1);
    const std::vector<std::uint8_t> bits(row.begin() + kInlineHead, row.end());
    if (!rows.CanHold(map.row, kNewMapBytes)) ThrowDamaged(map);
    rows.Replace(map.row, std::vector<std::uint8_t>(kNewMapBytes), rows.Flags(map.row));
    rows.Row(map.row)[0] = kReference;
    for (std::size_t bit = 0; bit < 8 * bits.size(); ++bit)
        if (HasBit(bits, bit)) SetReferenced(map, first + static_cast<PageNumber>(bit), true);
}

void UsageMapWriter::AddRange(RowPointer map, PageNumber from, PageNumber to) {
    for (PageNumber page = from; page < to; ++page) Set(map, page, true, false);
}

}  // namespace varnel::access
