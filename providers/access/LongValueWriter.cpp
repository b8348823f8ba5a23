#include "providers/access/LongValueWriter.h"

#include <algorithm>

#include "ado/types/ValueConvert.h"
#include "platform/Error.h"
#include "providers/access/RowPage.h"
#include "providers/access/StoreBytes.h"
#include "providers/access/StoredBytes.h"
#include "providers/access/ValueEncoder.h"

namespace varnel::access {
namespace {

constexpr std::size_t kHeaderBytes = 12, kLongestInRow = 64, kLongestOnPage = 3816, kPieceBytes = 4072;
constexpr std::size_t kLongestValue = 0x3FFFFFFF;
constexpr std::uint32_t kInRow = 0x80000000, kOnePage = 0x40000000, kLengthBits = 0x3FFFFFFF;
constexpr std::size_t kKeptBuffer = 1 << 20;  ///< bytes; a larger one is not kept for the next value

std::span<const std::uint8_t> AsSpan(const std::string& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

/// Bytes that a text has as UTF-16.
std::size_t WordBytes(std::string_view utf8) {
    std::size_t units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<std::uint8_t>(c);
        if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
    }
    return 2 * units;
}

[[noreturn]] void ThrowDamaged(const Column& column) {
    throw Error(
        ErrorKind::Corrupt, column.name,
        "The database is damaged: a value of column '" + column.name + "' leads to pages that are not its own.");
}

}  // namespace

void LongValueWriter::Encode(const Column& column, const Value& value) {
    const bool isMemo = column.type == ColumnType::Memo;
    const Value* typed = &value;
    if (value.Kind() != (isMemo ? ValueKind::Text : ValueKind::Bytes)) {
        ConvertValue(value, isMemo ? adLongVarWChar : adLongVarBinary, converted_);
        typed = &converted_;
    }
    bytes_.clear();
    if (bytes_.capacity() > kKeptBuffer) bytes_.shrink_to_fit();
    if (isMemo) {
        wordBytes_ = WordBytes(typed->AsText());
        AppendMemoText(bytes_, typed->AsText(), wordBytes_ > kLongestOnPage);
    } else {
        const std::span<const std::uint8_t> source = typed->AsBytes();
        bytes_.assign(reinterpret_cast<const char*>(source.data()), source.size());
        wordBytes_ = bytes_.size();
    }
    if (bytes_.size() > kLongestValue)
        throw Error(ErrorKind::Conversion, column.name, "A value of column '" + column.name + "' is longer than 1 GB.");
}

std::span<const std::uint8_t> LongValueWriter::Store(const Column& column, const Value& value) {
    Encode(column, value);
    std::uint32_t form = 0;
    RowPointer first;
    if (wordBytes_ <= kLongestInRow) {
        form = kInRow;
    } else if (wordBytes_ <= kLongestOnPage) {
        form = kOnePage;
        first = SharedPages(column).Add(AsSpan(bytes_));
    } else {
        first = StoreChain(column);
    }
    stored_.clear();
    AppendU32(stored_, static_cast<std::uint32_t>(bytes_.size()) | form);
    AppendU32(stored_, PackRowPointer(first));
    AppendU32(stored_, 0);
    if (form == kInRow) stored_ += bytes_;
    return AsSpan(stored_);
}

RowPages& LongValueWriter::SharedPages(const Column& column) {
    return shared_.try_emplace(column.id, file_, pages_, RowPage::kLongValueOwner, column.ownedMap, column.roomMap)
        .first->second;
}

RowPointer LongValueWriter::StoreChain(const Column& column) {
    const PageNumber first = pages_.Take(column.ownedMap);
    const std::span<const std::uint8_t> bytes = AsSpan(bytes_);
    PageNumber page = first;
    for (std::size_t at = 0; at < bytes.size(); at += kPieceBytes) {
        const std::size_t count = std::min(kPieceBytes, bytes.size() - at);
        const PageNumber next = at + count < bytes.size() ? pages_.Take(column.ownedMap) : 0;
        const std::span<std::uint8_t> target = file_.Change(page);
        RowPage::Format(target, RowPage::kLongValueOwner);
        const std::span<std::uint8_t> piece = RowPage(target, page, RowPage::kLongValueOwner).AddSpace(4 + count);
        StoreU32(piece, 0, next == 0 ? 0 : PackRowPointer({next, 0}));
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, piece.begin() + 4);
        page = next;
    }
    return {first, 0};
}

void LongValueWriter::Free(const Column& column, std::span<const std::uint8_t> stored) {
    if (stored.size() < kHeaderBytes) ThrowDamaged(column);
    const std::uint32_t head = LoadU32(stored, 0);
    const RowPointer first = UnpackRowPointer(LoadU32(stored, 4));
    if ((head & kInRow) != 0 || first.IsNone()) return;
    if (!pages_.Maps().Has(column.ownedMap, first.page)) ThrowDamaged(column);
    if ((head & kOnePage) != 0) {
        SharedPages(column).Delete(first);
    } else if ((head & kLengthBits) != 0) {
        FreeChain(column, first);
    }
}

void LongValueWriter::FreeChain(const Column& column, RowPointer first) {
    // A page that was given back has left the map, so a chain that bites its tail ends at the check.
    for (RowPointer at = first; !at.IsNone();) {
        if (!pages_.Maps().Has(column.ownedMap, at.page)) ThrowDamaged(column);
        RowPage rows(file_.Change(at.page), at.page, RowPage::kLongValueOwner);
        const std::span<const std::uint8_t> piece = rows.Row(at.row);
        if (piece.size() < 4) ThrowDamaged(column);
        const RowPointer next = UnpackRowPointer(LoadU32(piece, 0));
        pages_.Give(column.ownedMap, at.page);
        at = next;
    }
}

}  // namespace varnel::access
