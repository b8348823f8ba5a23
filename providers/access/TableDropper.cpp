#include "providers/access/TableDropper.h"

#include "platform/Error.h"
#include "providers/access/CatalogWriter.h"
#include "providers/access/RowPage.h"
#include "providers/access/UsageMapWriter.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kRelationIndex = 2, kDroppedDefinition = 8;

}  // namespace

void TableDropper::CheckDroppable(const CatalogEntry& entry, const TableDefinition& table) {
    if (!entry.IsUserTable())
        throw Error(ErrorKind::NotSupported, entry.name, "The system table '" + entry.name + "' cannot be deleted.");
    for (const LogicalIndex& index : table.logicalIndexes)
        if (index.kind == kRelationIndex)
            throw Error(ErrorKind::Constraint, entry.name,
                        "You cannot delete the table '" + entry.name +
                            "': it participates in one or more relationships ('" + index.name + "').");
}

void TableDropper::RemoveMap(RowPointer map) {
    if (map.IsNone()) return;
    RowPage rows(database_.file_.Change(map.page), map.page, kUsageMapPages);
    rows.Delete(map.row);
    if (rows.IsEmpty()) database_.pages_.GiveLoose(map.page);
}

void TableDropper::Drop(std::string_view name) {
    const CatalogEntry* found = database_.schema_->Objects().Find(name);
    if (found == nullptr || found->type != kLocalTable) ThrowNoTable(name, database_.schema_->Objects());
    const CatalogEntry entry = *found;
    const TableDefinition table = *database_.schema_->DefinitionOf(entry);
    CheckDroppable(entry, table);
    const auto drop = [&](RowPointer owned, RowPointer room) {
        database_.pages_.GiveAll(owned);
        if (!room.IsNone()) database_.pages_.EmptyMap(room);
        RemoveMap(owned);
        RemoveMap(room);
    };
    for (const Column& column : table.columns)
        if (column.IsLong()) drop(column.ownedMap, column.roomMap);
    for (const RealIndex& index : table.realIndexes) drop(index.map, {});
    drop(table.ownedMap, table.roomMap);
    database_.file_.Change(table.Id())[0] = kDroppedDefinition;
    for (const PageNumber page : table.pages) database_.pages_.GiveLoose(page);
    CatalogWriter(*database_.schema_, database_.WriterOf("MSysObjects"), database_.WriterOf("MSysACEs"))
        .RemoveTable(entry);
    database_.writers_.erase(table.Id());
}

}  // namespace varnel::access
