#include "providers/access/SystemTables.h"

#include <algorithm>
#include <span>
#include <string>

#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kFixedSystem = 0x13, kVariableSystem = 0x12, kSecurityId = 0x32;
constexpr std::uint16_t kLongestBytes = 510;

struct SystemColumn {
    const char* name;
    std::uint16_t id;
    ColumnType type;
    std::uint16_t variableNumber, fixedOffset, length;
    std::uint8_t flags;
};

using enum ColumnType;

constexpr SystemColumn kObjectsColumns[] = {
    {"Connect", 9, Memo, 3, 0, 0, kVariableSystem},
    {"Database", 8, Memo, 2, 0, 0, kVariableSystem},
    {"DateCreate", 4, Date, 1, 10, 8, kFixedSystem},
    {"DateUpdate", 5, Date, 1, 18, 8, kFixedSystem},
    {"Flags", 7, Long, 2, 26, 4, kFixedSystem},
    {"ForeignName", 10, Text, 4, 0, kLongestBytes, kVariableSystem},
    {"Id", 0, Long, 0, 0, 4, kFixedSystem},
    {"Lv", 13, Ole, 7, 0, 0, kVariableSystem},
    {"LvExtra", 16, Ole, 10, 0, 0, kVariableSystem},
    {"LvModule", 15, Ole, 9, 0, 0, kVariableSystem},
    {"LvProp", 14, Ole, 8, 0, 0, kVariableSystem},
    {"Name", 2, Text, 0, 0, kLongestBytes, kVariableSystem},
    {"Owner", 6, Binary, 1, 0, kLongestBytes, kSecurityId},
    {"ParentId", 1, Long, 0, 4, 4, kFixedSystem},
    {"RmtInfoLong", 12, Ole, 6, 0, 0, kVariableSystem},
    {"RmtInfoShort", 11, Binary, 5, 0, kLongestBytes, kVariableSystem},
    {"Type", 3, Integer, 1, 8, 2, kFixedSystem},
};

constexpr SystemColumn kAcesColumns[] = {
    {"ACM", 2, Long, 1, 4, 4, kFixedSystem},
    {"FInheritable", 3, Boolean, 1, 0, 1, kFixedSystem},
    {"ObjectId", 0, Long, 0, 0, 4, kFixedSystem},
    {"SID", 1, Binary, 0, 0, kLongestBytes, kSecurityId},
};

constexpr SystemColumn kQueriesColumns[] = {
    {"Attribute", 1, Byte, 0, 4, 1, kFixedSystem},
    {"Expression", 5, Memo, 3, 0, 0, kVariableSystem},
    {"Flag", 6, Integer, 4, 5, 2, kFixedSystem},
    {"LvExtra", 7, Long, 4, 7, 4, kFixedSystem},
    {"Name1", 3, Text, 1, 0, kLongestBytes, kVariableSystem},
    {"Name2", 4, Text, 2, 0, kLongestBytes, kVariableSystem},
    {"ObjectId", 0, Long, 0, 0, 4, kFixedSystem},
    {"Order", 2, Binary, 0, 0, kLongestBytes, kVariableSystem},
};

constexpr SystemColumn kRelationshipsColumns[] = {
    {"ccolumn", 2, Long, 1, 4, 4, kFixedSystem},
    {"grbit", 1, Long, 1, 0, 4, kFixedSystem},
    {"icolumn", 3, Long, 1, 8, 4, kFixedSystem},
    {"szColumn", 5, Text, 2, 0, kLongestBytes, kVariableSystem},
    {"szObject", 4, Text, 1, 0, kLongestBytes, kVariableSystem},
    {"szReferencedColumn", 7, Text, 4, 0, kLongestBytes, kVariableSystem},
    {"szReferencedObject", 6, Text, 3, 0, kLongestBytes, kVariableSystem},
    {"szRelationship", 0, Text, 0, 0, kLongestBytes, kVariableSystem},
};

struct SystemIndex {
    const char* name;
    std::uint32_t number;
    std::uint8_t flags, kind;
    std::uint8_t mapRow;
    PageNumber root;
    std::vector<const char*> columns;
};

RowPointer MapRow(std::size_t row) {
    return {kSystemMapsPage, static_cast<std::uint8_t>(row)};
}

/// In the order of the real indexes.
std::vector<SystemIndex> IndexesOf(PageNumber id) {
    constexpr std::uint8_t kPrimary = 1;
    switch (id) {
        case kObjectsTable:
            return {{"ParentIdName", 0, kUniqueIndex, 0, 16, 7, {"ParentId", "Name"}},
                    {"Id", 1, kUniqueIndex, kPrimary, 17, 8, {"Id"}}};
        case kAcesTable:
            return {{"ObjectId", 0, kRequiredIndex, 0, 20, 9, {"ObjectId"}}};
        case kQueriesTable:
            return {{"ObjectIdAttribute", 0, kUniqueIndex, kPrimary, 25, 10, {"ObjectId", "Attribute", "Order"}}};
        default:
            return {{"szRelationship", 0, kIgnoreNullsIndex, 0, 28, 11, {"szRelationship"}},
                    {"szObject", 1, kIgnoreNullsIndex, 0, 29, 12, {"szObject"}},
                    {"szReferencedObject", 2, kIgnoreNullsIndex, 0, 30, 13, {"szReferencedObject"}}};
    }
}

void AddColumns(TableDefinition& table, std::span<const SystemColumn> columns, std::size_t firstLongMap) {
    for (const SystemColumn& stored : columns) {
        Column column;
        column.name = stored.name;
        column.type = stored.type;
        column.id = stored.id;
        column.variableNumber = stored.variableNumber;
        column.fixedOffset = stored.fixedOffset;
        column.length = stored.length;
        column.flags = stored.flags;
        table.columns.push_back(std::move(column));
        if ((stored.flags & kFixedColumn) == 0) ++table.variableColumns;
    }
    table.columnIds = static_cast<std::uint16_t>(columns.size());
    std::vector<Column*> longOnes;
    for (Column& column : table.columns)
        if (column.IsLong()) longOnes.push_back(&column);
    std::sort(longOnes.begin(), longOnes.end(), [](const Column* a, const Column* b) { return a->id < b->id; });
    for (Column* column : longOnes) {
        column->ownedMap = MapRow(firstLongMap++);
        column->roomMap = MapRow(firstLongMap++);
    }
}

void AddIndexes(TableDefinition& table, std::uint32_t differentKeys) {
    std::uint32_t number = 0;
    for (const SystemIndex& stored : IndexesOf(table.Id())) {
        RealIndex index;
        for (const char* column : stored.columns)
            index.columns.push_back({table.columns[ColumnAt(table, column)].id, true});
        index.map = MapRow(stored.mapRow);
        index.root = stored.root;
        index.flags = stored.flags;
        index.differentKeys = differentKeys;
        index.name = stored.name;
        index.primaryKey = stored.kind == 1;
        table.realIndexes.push_back(std::move(index));
        LogicalIndex logical;
        logical.name = stored.name;
        logical.number = stored.number;
        logical.realIndex = number++;
        logical.kind = stored.kind;
        table.logicalIndexes.push_back(std::move(logical));
    }
}

TableDefinition Build(PageNumber id, const char* name, std::span<const SystemColumn> columns, std::size_t ownedMapRow,
                      std::size_t firstLongMap, std::uint32_t rows, std::uint32_t keys) {
    TableDefinition table;
    table.name = name;
    table.pages = {id};
    table.systemTable = true;
    table.rowCount = rows;
    table.ownedMap = MapRow(ownedMapRow);
    table.roomMap = MapRow(ownedMapRow + 1);
    AddColumns(table, columns, firstLongMap);
    AddIndexes(table, keys);
    return table;
}

}  // namespace

TableDefinition SystemTable(PageNumber id) {
    switch (id) {
        case kObjectsTable:
            return Build(id, "MSysObjects", kObjectsColumns, 0, 2, 8, 8);
        case kAcesTable:
            return Build(id, "MSysACEs", kAcesColumns, 18, 0, 16, 8);
        case kQueriesTable:
            return Build(id, "MSysQueries", kQueriesColumns, 21, 23, 0, 0);
        default:
            return Build(kRelationshipsTable, "MSysRelationships", kRelationshipsColumns, 26, 0, 0, 0);
    }
}

std::size_t ColumnAt(const TableDefinition& definition, std::string_view name) {
    for (std::size_t k = 0; k < definition.columns.size(); ++k)
        if (definition.columns[k].name == name) return k;
    throw Error(ErrorKind::Corrupt, definition.name,
                "The database is damaged: table " + definition.name + " has no column '" + std::string(name) + "'.");
}

}  // namespace varnel::access
