#include "providers/access/VerifyLongValues.h"

namespace varnel::access {
namespace {

constexpr std::uint32_t kLengthBits = 0x3FFFFFFF, kInline = 0x80000000, kOnePage = 0x40000000;
constexpr std::size_t kHeader = 12, kPointer = 4, kStampAt = 8;

}  // namespace

VerifyLongValues::VerifyLongValues(VerifyContext& context, const TableDefinition& table, const Column& column)
    : context_(context), name_("column '" + column.name + "' of table '" + table.name + "'") {
    const PageSet owned = VerifyMap(context, column.ownedMap, "long values of " + name_, true);
    roomPages_ = VerifyMap(context, column.roomMap, "room for long values of " + name_, false);
    for (auto page = owned.Next(0); page; page = owned.Next(*page + 1)) {
        const std::string place = PlaceOf(table, *page) + ", long values of column '" + column.name + "'";
        auto read = VerifyRowPage(context, *page, kLongValueOwner, place);
        if (!read) continue;
        if (read->rows.SlotCount() > 1) sharedPages_.Add(*page);
        for (std::size_t k = 0; k < read->rows.SlotCount() && k < 256; ++k) {
            if (read->rows.At(k).kind == SlotKind::Deleted) continue;
            pieces_[PackRowPointer({*page, static_cast<std::uint8_t>(k)})] = false;
        }
    }
    for (auto page = roomPages_.Next(0); page; page = roomPages_.Next(*page + 1)) {
        if (owned.Has(*page)) continue;
        context.Find(PlaceOf(table) + ": the map of room for " + name_ + " names page " + std::to_string(*page) +
                     ", which is not the column's.");
        break;
    }
}

void VerifyLongValues::Cell(Bytes cell, const std::string& place) {
    if (cell.size() < kHeader) return context_.Find(place + ": a long value is cut short.");
    const std::uint32_t stored = LoadU32(cell, 0);
    const std::size_t length = stored & kLengthBits;
    const RowPointer first = UnpackRowPointer(LoadU32(cell, 4));
    if ((stored & kInline) != 0) {
        if (length > cell.size() - kHeader) context_.Find(place + ": a long value is cut short.");
    } else if ((stored & kOnePage) != 0) {
        const Bytes piece = TakePiece(first, place);
        if (!piece.empty() && piece.size() < length) context_.Find(place + ": a long value is cut short.");
    } else if (length > 0) {
        CheckChain(first, length, LoadU32(cell, kStampAt), place);
    }
}

void VerifyLongValues::CheckChain(RowPointer first, std::size_t length, std::uint32_t stamp, const std::string& place) {
    std::size_t found = 0;
    for (RowPointer at = first; !at.IsNone();) {
        const Bytes piece = TakePiece(at, place);  // a ring meets a piece that is taken
        if (piece.size() < kPointer) return;
        const Bytes page(open_.pin.get(), context_.file.Shape().pageSize);
        const bool hasStamp = context_.file.Shape().version != Version::Jet3;
        if (at == first && hasStamp && LoadU32(page, kStampAt) != stamp) {
            context_.Find(place + ": the stamp of a long value is not that of its pages.");
        }
        chainPages_.Add(at.page);
        found += piece.size() - kPointer;
        at = UnpackRowPointer(LoadU32(piece, 0));
    }
    if (found != length) context_.Find(place + ": a long value has not the length that its row says.");
}

Bytes VerifyLongValues::TakePiece(RowPointer at, const std::string& place) {
    const auto piece = pieces_.find(PackRowPointer(at));
    const std::string where = "page " + std::to_string(at.page) + ", row " + std::to_string(at.row);
    if (piece == pieces_.end()) {
        context_.Find(place + ": a long value leads to " + where + ", where " + name_ + " has none.");
        return {};
    }
    if (piece->second) {
        context_.Find(place + ": the long value on " + where + " belongs to another value as well.");
        return {};
    }
    piece->second = true;
    open_ = OpenRowPage(context_, at.page);
    return open_.rows.At(at.row).bytes;
}

void VerifyLongValues::Finish() {
    for (const auto& [at, taken] : pieces_) {
        if (taken) continue;
        const RowPointer row = UnpackRowPointer(at);
        context_.Note("Page " + std::to_string(row.page) + ", row " + std::to_string(row.row) + ": a long value of " +
                      name_ + " belongs to no row.");
    }
    for (auto page = chainPages_.Next(0); page; page = chainPages_.Next(*page + 1)) {
        const std::string place = "Page " + std::to_string(*page) + ": a chained long value of " + name_;
        if (sharedPages_.Has(*page)) context_.Find(place + " shares its page.");
        if (roomPages_.Has(*page)) context_.Find(place + " stands on a page noted as having room.");
    }
}

}  // namespace varnel::access
