#include "providers/access/LongValueReader.h"

namespace varnel::access {
namespace {

constexpr std::size_t kHeaderSize = 12, kChainPointerSize = 4, kStampAt = 8;
constexpr std::uint32_t kInlineBit = 0x80000000, kOnePageBit = 0x40000000, kLengthBits = 0x3FFFFFFF;
constexpr Fault kShort = "its long value is shorter than announced";
constexpr Fault kNoEnd = "the pages of its long value lead back to one of them";

}  // namespace

Fault LongValueReader::Begin(Bytes cell, Pieces& pieces) {
    if (cell.empty()) return nullptr;
    if (cell.size() < kHeaderSize) return "the place of its long value is cut short";
    const std::uint32_t stored = LoadU32(cell, 0);
    pieces.left = stored & kLengthBits;
    pieces.next = UnpackRowPointer(LoadU32(cell, 4));
    pieces.stamp = LoadU32(cell, 8);
    if ((stored & kInlineBit) != 0) {
        pieces.inlineBytes = cell.subspan(kHeaderSize);
    } else {
        pieces.storage = (stored & kOnePageBit) != 0 ? Pieces::Storage::OnePage : Pieces::Storage::Chain;
    }
    return nullptr;
}

Fault LongValueReader::Next(Pieces& pieces, Bytes& piece) {
    if (pieces.storage == Pieces::Storage::Chain) return NextOfChain(pieces, piece);
    if (pieces.storage == Pieces::Storage::Inline) {
        piece = pieces.inlineBytes;
    } else if (const Fault fault = Fetch(pieces.next, piece)) {
        return fault;
    }
    if (piece.size() < pieces.left) return kShort;
    piece = piece.first(pieces.left);
    pieces.left = 0;
    return nullptr;
}

Fault LongValueReader::NextOfChain(Pieces& pieces, Bytes& piece) {
    if (pieces.next.IsNone()) return kShort;
    if (pieces.next.page == pieces.noted) return kNoEnd;
    if (--pieces.piecesUntilNote == 0) {
        pieces.noted = pieces.next.page;
        pieces.piecesUntilNote = pieces.noteDistance *= 2;
    }
    Bytes row;
    if (const Fault fault = Fetch(pieces.next, row)) return fault;
    const bool hasStamp = file_.Shape().version != Version::Jet3;
    if (pieces.first && hasStamp && LoadU32(Bytes(pin_.get(), file_.Shape().pageSize), kStampAt) != pieces.stamp)
        return "its long value was given to another row (the stamps differ)";
    pieces.first = false;
    if (row.size() < kChainPointerSize) return "a piece of its long value is cut short";
    piece = row.subspan(kChainPointerSize);
    if (piece.size() > pieces.left) return "its long value is longer than announced";
    pieces.next = UnpackRowPointer(LoadU32(row, 0));
    pieces.left -= piece.size();
    return nullptr;
}

Fault LongValueReader::Fetch(RowPointer at, Bytes& row) {
    if (at.IsNone() || at.page >= file_.PageCount()) return "its long value lies beyond the end of the file";
    if (at.page != pinned_) {
        pinned_ = 0;
        pin_ = pages_.Read(at.page);
        if (const Fault fault = page_.Attach({pin_.get(), file_.Shape().pageSize}, file_.Shape())) return fault;
        if (page_.Owner() != kLongValueOwner) return "the page of its long value holds something else";
        pinned_ = at.page;
    }
    if (at.row >= page_.SlotCount() || page_.At(at.row).kind != SlotKind::Row) return "its long value is not there";
    row = page_.At(at.row).bytes;
    return nullptr;
}

}  // namespace varnel::access
