#include "providers/access/TableScan.h"

#include "platform/Error.h"
#include "providers/access/UsageMapReader.h"

namespace varnel::access {
namespace {

constexpr int kMostHops = 8;
constexpr std::size_t kMostSlots = 256;  // a row pointer has one byte for the slot

[[noreturn]] void ThrowPage(const PageFile& file, PageNumber page, const std::string& table, Fault fault) {
    const std::string place = file.StoredPath() + ", page " + std::to_string(page);
    throw Error(ErrorKind::Corrupt, place, "The table '" + table + "' cannot be read: " + place + ": " + fault);
}

/// What keeps a page from being one of the table's; null when it is.
Fault AttachTablePage(DataPage& slots, const PagePin& pin, const Layout& shape, PageNumber table) {
    if (const Fault fault = slots.Attach({pin.get(), shape.pageSize}, shape)) return fault;
    if (slots.Owner() != table) return "it belongs to another table";
    return slots.SlotCount() > kMostSlots ? "it has too many row slots" : nullptr;
}

}  // namespace

TableScan::TableScan(PageFile& file, const TableDefinition& table, PageSet alsoFrozen)
    : file_(file), tableName_(table.name), table_(table.Id()), pages_(ReadUsageMap(file, table.ownedMap)) {
    for (auto page = pages_.Next(0); page; page = pages_.Next(*page + 1)) alsoFrozen.Add(*page);
    snapshot_ = file.Freeze(std::move(alsoFrozen));
}

void TableScan::OpenPage(PageNumber page) {
    slots_ = DataPage();
    page_ = page;
    next_ = 0;
    pin_ = snapshot_->Read(page);
    if (const Fault fault = AttachTablePage(slots_, pin_, file_.Shape(), table_)) {
        slots_ = DataPage();
        ThrowPage(file_, page, tableName_, fault);
    }
}

bool TableScan::Next() {
    for (;;) {
        while (next_ < slots_.SlotCount()) {
            slot_ = next_++;
            if (TakeSlot()) return true;
        }
        const auto page = pages_.Next(page_ + 1);
        if (!page) return false;
        OpenPage(*page);
    }
}

bool TableScan::Seek(RowPointer at) {
    if (!pages_.Has(at.page)) return false;
    if (at.page != page_) OpenPage(at.page);
    if (at.row >= slots_.SlotCount()) return false;
    slot_ = at.row;
    next_ = slot_ + 1;
    return TakeSlot();
}

bool TableScan::TakeSlot() {
    const Slot slot = slots_.At(slot_);
    if (slot.kind == SlotKind::Deleted || slot.kind == SlotKind::Moved) return false;
    row_ = slot.bytes;
    fault_ = slot.kind == SlotKind::Pointer ? FollowPointer(slot.bytes) : nullptr;
    if (fault_ != nullptr) row_ = {};
    return true;
}

Fault TableScan::FollowPointer(Bytes pointer) {
    for (int hop = 0; hop < kMostHops; ++hop) {
        if (pointer.size() < 4) return "the pointer to it is cut short";
        const RowPointer at = UnpackRowPointer(LoadU32(pointer, 0));
        if (!pages_.Has(at.page) || at.page >= file_.PageCount()) return "the pointer to it leads out of the table";
        movedPin_ = snapshot_->Read(at.page);
        DataPage moved;
        if (const Fault fault = AttachTablePage(moved, movedPin_, file_.Shape(), table_)) return fault;
        if (at.row >= moved.SlotCount()) break;
        const Slot slot = moved.At(at.row);
        if (slot.kind == SlotKind::Moved) {
            row_ = slot.bytes;
            return nullptr;
        }
        if (slot.kind != SlotKind::Pointer) break;
        pointer = slot.bytes;
    }
    return "the pointer to it leads to no row";
}

std::int64_t CountTableRows(PageFile& file, const TableDefinition& table) {
    const PageSet pages = ReadUsageMap(file, table.ownedMap);
    std::int64_t count = 0;
    for (auto page = pages.Next(1); page; page = pages.Next(*page + 1)) {
        const PagePin pin = file.Read(*page);
        DataPage slots;
        if (const Fault fault = AttachTablePage(slots, pin, file.Shape(), table.Id()))
            ThrowPage(file, *page, table.name, fault);
        for (std::size_t k = 0; k < slots.SlotCount(); ++k) {
            const SlotKind kind = slots.At(k).kind;
            if (kind == SlotKind::Row || kind == SlotKind::Pointer) ++count;
        }
    }
    return count;
}

}  // namespace varnel::access
