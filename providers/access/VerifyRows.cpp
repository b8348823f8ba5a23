#include "providers/access/VerifyRows.h"

namespace varnel::access {

VerifyRows::VerifyRows(VerifyContext& context, const TableDefinition& table)
    : context_(context),
      table_(table),
      pages_(context.file.Freeze({})),
      decoder_(context.file, *pages_, context.textPage),
      reader_(context.file, *pages_),
      row_(context.file.Shape().version) {
    owned_ = VerifyMap(context, table.ownedMap, "the data of table '" + table.name + "'", true);
    room_ = VerifyMap(context, table.roomMap, "room in table '" + table.name + "'", false);
    for (std::size_t k = 0; k < table.columns.size(); ++k) {
        const Column& column = table.columns[k];
        plans_.push_back(PlanCell(column));
        if (column.IsLong()) {
            longValues_.try_emplace(k, context, table, column);
        }
    }
}

void VerifyRows::Run() {
    if (table_.ownedMap.IsNone()) context_.Find(PlaceOf(table_) + ": it has no map of its pages.");
    for (auto page = owned_.Next(0); page; page = owned_.Next(*page + 1)) CheckPage(*page);
    ForEachSlot([&](RowPointer where, const Slot& slot) {
        const Bytes row = RowAt(where, slot, true);
        if (row.data() != nullptr) CheckRow(where, row);
    });
    CheckRoom();
    ReportOrphans();
    for (auto& [k, values] : longValues_) values.Finish();
    if (count_ != table_.rowCount) {
        context_.Note(PlaceOf(table_) + ": it has " + std::to_string(count_) + " rows, its definition says " +
                      std::to_string(table_.rowCount) + ".");
    }
}

void VerifyRows::CheckPage(PageNumber page) {
    auto read = VerifyRowPage(context_, page, table_.Id(), PlaceOf(table_, page));
    if (!read) return;
    for (std::size_t k = 0; k < read->rows.SlotCount() && k < 256; ++k) {
        if (read->rows.At(k).kind == SlotKind::Moved) {
            moved_[PackRowPointer({page, static_cast<std::uint8_t>(k)})] = false;
        }
    }
    readable_.Add(page);
}

Bytes VerifyRows::RowAt(RowPointer where, const Slot& slot, bool report) {
    if (slot.kind == SlotKind::Row) return slot.bytes;
    const RowPointer at = slot.bytes.size() < 4 ? RowPointer() : UnpackRowPointer(LoadU32(slot.bytes, 0));
    const auto moved = moved_.find(PackRowPointer(at));
    if (moved == moved_.end()) {
        if (report) context_.Find(PlaceOf(table_, where) + ": the pointer to the row leads to no row.");
        return {};
    }
    if (report && moved->second) context_.Find(PlaceOf(table_, where) + ": two pointers lead to the same row.");
    if (report) moved->second = true;
    movedPage_ = OpenRowPage(context_, at.page);
    return movedPage_.rows.At(at.row).bytes;
}

void VerifyRows::CheckRow(RowPointer where, Bytes row) {
    ++count_;
    if (context_.seen) context_.seen(context_.rows + count_);
    const std::string place = PlaceOf(table_, where);
    if (const Fault fault = row_.Attach(row)) return context_.Find(place + ": " + fault + ".");
    for (std::size_t k = 0; k < plans_.size(); ++k) {
        if (const Fault fault = decoder_.Decode(plans_[k], row_, value_)) {
            context_.Find(place + ", column '" + table_.columns[k].name + "' cannot be read: " + fault + ".");
        }
        const auto values = longValues_.find(k);
        if (values == longValues_.end() || !row_.Has(plans_[k].id)) continue;
        const auto cell = plans_[k].fixed ? std::nullopt : row_.Variable(plans_[k].place);
        if (cell) values->second.Cell(*cell, place + ", column '" + table_.columns[k].name + "'");
    }
}

/// A page noted as having room is one of the table's.
void VerifyRows::CheckRoom() {
    for (auto page = room_.Next(0); page; page = room_.Next(*page + 1)) {
        if (owned_.Has(*page)) continue;
        return context_.Find(PlaceOf(table_) + ": its map of room names page " + std::to_string(*page) +
                             ", which is not the table's.");
    }
}

void VerifyRows::ReportOrphans() {
    for (const auto& [at, pointedAt] : moved_) {
        if (!pointedAt) context_.Find(PlaceOf(table_, UnpackRowPointer(at)) + ": no pointer leads to this moved row.");
    }
}

Bytes VerifyRows::LongValue(std::size_t position, RowView& row) {
    longValue_.clear();
    const auto cell = row.Variable(plans_[position].place);
    const auto take = [&](Bytes piece) -> Fault {
        longValue_.insert(longValue_.end(), piece.begin(), piece.end());
        return nullptr;
    };
    const Fault fault = cell ? reader_.Read(*cell, take) : "the row is damaged";
    if (fault != nullptr) {
        throw Error(
            ErrorKind::Corrupt, table_.name,
            PlaceOf(table_) + ", column '" + table_.columns[position].name + "' cannot be read: " + fault + ".");
    }
    return longValue_;
}

/// Calls with the slots of all rows.
void VerifyRows::ForEachSlot(const std::function<void(RowPointer, const Slot&)>& onSlot) {
    for (auto page = readable_.Next(0); page; page = readable_.Next(*page + 1)) {
        const VerifiedPage read = OpenRowPage(context_, *page);
        for (std::size_t k = 0; k < read.rows.SlotCount() && k < 256; ++k) {
            const Slot slot = read.rows.At(k);
            const bool isRow = slot.kind == SlotKind::Row || slot.kind == SlotKind::Pointer;
            if (isRow) onSlot({*page, static_cast<std::uint8_t>(k)}, slot);
        }
    }
}

void VerifyRows::ForEach(const std::function<void(RowPointer, RowView&)>& onRow) {
    ForEachSlot([&](RowPointer where, const Slot& slot) {
        const Bytes row = RowAt(where, slot, false);
        if (row.data() != nullptr && row_.Attach(row) == nullptr) onRow(where, row_);
    });
}

}  // namespace varnel::access
