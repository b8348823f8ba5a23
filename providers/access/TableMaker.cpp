#include "providers/access/TableMaker.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/access/CatalogWriter.h"
#include "providers/access/DdlTypes.h"
#include "providers/access/DefinitionWriter.h"
#include "providers/access/IndexImage.h"
#include "providers/access/PropertyBlob.h"
#include "providers/access/RowPage.h"
#include "providers/access/UsageMapWriter.h"

namespace varnel::access {
namespace {

constexpr std::size_t kMostColumns = 255, kMostIndexes = 32, kMostIndexColumns = 10, kLongestName = 64;
constexpr std::string_view kForbidden = ".![]`";

void CheckCharacters(std::string_view name, const char* what) {
    const bool forbidden = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || kForbidden.find(c) != std::string_view::npos;
    });
    if (!name.empty() && name.front() != ' ' && !forbidden && CharacterCount(name) <= kLongestName) return;
    throw Error(ErrorKind::Constraint, std::string(name),
                "'" + std::string(name) + "' is not a valid name for a " + what +
                    ": it needs 1 to 64 characters, not a blank in front, and none of . ! ` [ ].");
}

bool CanBeIndexed(const Column& column) {
    return column.type != ColumnType::Ole && column.type != ColumnType::FixedBlob;
}

}  // namespace

void TableMaker::CheckName(std::string_view name) {
    CheckCharacters(name, "table");
    if (database_.schema_->Objects().Find(name) != nullptr)
        throw Error(ErrorKind::Constraint, std::string(name), "Table '" + std::string(name) + "' already exists.");
}

void TableMaker::AddColumns(std::span<const ColumnDefinition> columns) {
    if (columns.empty() || columns.size() > kMostColumns)
        throw Error(ErrorKind::Constraint, table_.name,
                    "A table has 1 to 255 fields; table '" + table_.name + "' would have " +
                        std::to_string(columns.size()) + ".");
    std::uint16_t fixedEnd = 0;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        CheckCharacters(columns[k].name, "field");
        Column column = ColumnFromDefinition(columns[k]);
        column.id = column.ordinal = static_cast<std::uint16_t>(k);
        column.variableNumber = table_.variableColumns;
        if (!column.IsFixed()) ++table_.variableColumns;
        if (column.type != ColumnType::Boolean) column.fixedOffset = column.IsFixed() ? fixedEnd : std::uint16_t{0};
        fixedEnd = static_cast<std::uint16_t>(fixedEnd + FixedAreaBytes(column));
        if (column.IsAutonumber() && columns[k].typeArguments.size() > 1) {
            table_.autonumberStep = columns[k].typeArguments[1];
            table_.lastAutonumber = static_cast<std::uint32_t>(columns[k].typeArguments[0] - table_.autonumberStep);
        }
        table_.columns.push_back(std::move(column));
    }
    table_.columnIds = static_cast<std::uint16_t>(columns.size());
    if (std::count_if(table_.columns.begin(), table_.columns.end(),
                      [](const Column& column) { return column.IsAutonumber(); }) > 1)
        throw Error(ErrorKind::Constraint, table_.name,
                    "Resultant table not allowed to have more than one AutoNumber field.");
}

void TableMaker::AddIndex(const std::string& name, const std::vector<std::uint16_t>& columnIds, bool primary) {
    for (const std::uint16_t id : columnIds)
        if (!CanBeIndexed(table_.columns[id]))
            throw Error(ErrorKind::Constraint, table_.name,
                        "Field '" + table_.columns[id].name + "' cannot be used in an index or primary key.");
    if (columnIds.size() > kMostIndexColumns || table_.realIndexes.size() >= kMostIndexes)
        throw Error(ErrorKind::Constraint, table_.name,
                    "Table '" + table_.name + "' would have more than 10 fields in an index, or more than 32 indexes.");
    RealIndex index;
    for (const std::uint16_t id : columnIds) index.columns.push_back({id, true});
    index.flags = primary ? kUniqueIndex | kRequiredIndex : kUniqueIndex;
    index.name = name;
    index.primaryKey = primary;
    LogicalIndex logical;
    logical.name = name;
    logical.number = logical.realIndex = static_cast<std::uint32_t>(table_.realIndexes.size());
    logical.kind = primary ? 1 : 0;
    table_.realIndexes.push_back(std::move(index));
    table_.logicalIndexes.push_back(std::move(logical));
}

void TableMaker::AddIndexes(std::span<const ColumnDefinition> columns) {
    const auto count = static_cast<std::uint16_t>(columns.size());
    std::vector<std::uint16_t> primary;
    for (std::uint16_t k = 0; k < count; ++k)
        if (columns[k].primaryKey) primary.push_back(k);
    const bool single = primary.size() == 1;
    if (!primary.empty()) AddIndex("PrimaryKey", primary, true);
    for (std::uint16_t k = 0; k < count; ++k)
        if (columns[k].unique && !(single && columns[k].primaryKey)) AddIndex(columns[k].name, {k}, false);
}

RowPointer TableMaker::NewMap() {
    const auto page = [&] { return RowPage(database_.file_.Change(mapPage_), mapPage_, kUsageMapPages); };
    if (mapPage_ == 0 || !page().Takes(kNewMapBytes)) {
        mapPage_ = database_.pages_.TakeLoose();
        RowPage::Format(database_.file_.Change(mapPage_), kUsageMapPages);
    }
    RowPage rows = page();
    const auto row = static_cast<std::uint8_t>(rows.Slots());
    rows.AddSpace(kNewMapBytes);
    return {mapPage_, row};
}

void TableMaker::TakePages() {
    const std::size_t count = DefinitionPageCount(DefinitionBytes(table_).size());
    while (table_.pages.size() < count) table_.pages.push_back(database_.pages_.TakeLoose());
    table_.ownedMap = NewMap();
    table_.roomMap = NewMap();
    for (Column& column : table_.columns) {
        if (!column.IsLong()) continue;
        column.ownedMap = NewMap();
        column.roomMap = NewMap();
    }
    for (RealIndex& index : table_.realIndexes) {
        index.map = NewMap();
        index.root = database_.pages_.Take(index.map);
        WriteLoneLeaf(database_.file_.Change(index.root), table_.Id());
    }
}

void TableMaker::Make(std::string_view name, std::span<const ColumnDefinition> columns) {
    table_.name = name;
    CheckName(name);
    AddColumns(columns);
    AddIndexes(columns);
    const RowBuilder fits(table_);  // refuses columns that do not lie in one row
    TakePages();
    WriteDefinition(database_.file_, table_);
    std::vector<std::string> required;
    for (const ColumnDefinition& column : columns)
        if (column.notNull && !column.primaryKey) required.push_back(column.name);
    CatalogWriter(*database_.schema_, database_.WriterOf("MSysObjects"), database_.WriterOf("MSysACEs"))
        .AddTable(name, table_.Id(), RequiredColumnsBlob(required));
}

}  // namespace varnel::access
