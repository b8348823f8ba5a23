#include "providers/access/VerifyCatalog.h"

#include <algorithm>
#include <array>
#include <set>

namespace varnel::access {
namespace {

constexpr std::int32_t kRoot = 0x0F000000;
constexpr std::int64_t kRelationship = 8;

std::string ObjectName(const CatalogEntry& object) {
    return "MSysObjects: the object '" + object.name + "' (" + std::to_string(object.id) + ")";
}

void CheckObjects(VerifyContext& context, const Catalog& catalog) {
    std::set<std::int32_t> ids;
    std::set<std::pair<std::int32_t, std::string>> names;
    for (const CatalogEntry& object : catalog.Entries()) {
        if (!ids.insert(object.id).second) context.Find(ObjectName(object) + " has the id of another one.");
        if (!names.emplace(object.parent, FoldCase(object.name)).second) {
            context.Find(ObjectName(object) + " has the name of another one.");
        }
    }
    for (const CatalogEntry& object : catalog.Entries()) {
        if (object.parent != kRoot && !ids.contains(object.parent)) {
            context.Find(ObjectName(object) + " is kept in something that is not there.");
        }
    }
}

/// Rights name objects, and every table and query has some.
void CheckRights(VerifyContext& context, Schema& schema) {
    const CatalogEntry* rights = schema.Objects().Find("MSysACEs");
    if (rights == nullptr) return context.Find("MSysObjects: the table MSysACEs is missing.");
    std::set<std::int64_t> ids, withRights;
    for (const CatalogEntry& object : schema.Objects().Entries()) ids.insert(object.id);
    constexpr std::array<std::string_view, 1> kColumns = {"ObjectId"};
    const auto rows = schema.Rows(schema.DefinitionOf(*rights), kColumns);
    std::array<Value, 1> row;
    while (rows->Next(row)) {
        if (row[0].Kind() != ValueKind::Integer) continue;
        const std::int64_t id = row[0].AsInteger();
        withRights.insert(id);
        if (!ids.contains(id)) {
            context.Find("MSysACEs: a row names the object " + std::to_string(id) + ", which is not in MSysObjects.");
        }
    }
    for (const CatalogEntry& object : schema.Objects().Entries()) {
        if (object.IsUserTable() && !withRights.contains(object.id)) {
            context.Find(ObjectName(object) + " has no row in MSysACEs.");
        }
    }
}

/// Each row of MSysRelationships names tables and columns that exist, and an object of its own.
void CheckRelationshipRows(VerifyContext& context, Schema& schema) {
    const Catalog& catalog = schema.Objects();
    const CatalogEntry* table = catalog.Find("MSysRelationships");
    if (table == nullptr) return context.Find("MSysObjects: the table MSysRelationships is missing.");
    constexpr std::array<std::string_view, 5> kColumns = {"szRelationship", "szObject", "szColumn",
                                                          "szReferencedObject", "szReferencedColumn"};
    const auto rows = schema.Rows(schema.DefinitionOf(*table), kColumns);
    std::array<Value, kColumns.size()> row;
    while (rows->Next(row)) {
        const bool whole =
            std::all_of(row.begin(), row.end(), [](const Value& value) { return value.Kind() == ValueKind::Text; });
        if (!whole) {
            context.Find("MSysRelationships: a row is not complete.");
            continue;
        }
        const std::string name(row[0].AsText());
        const bool isObject =
            std::any_of(catalog.Entries().begin(), catalog.Entries().end(), [&](const CatalogEntry& object) {
                return object.type == kRelationship && FoldCase(object.name) == FoldCase(name);
            });
        if (!isObject) context.Find("MSysRelationships: '" + name + "' is not in MSysObjects.");
        for (const std::size_t side : {1U, 3U}) {
            const CatalogEntry* end = catalog.Find(row[side].AsText());
            if (end == nullptr) {
                context.Find("MSysRelationships: '" + name + "' names the table '" + std::string(row[side].AsText()) +
                             "', which does not exist.");
                continue;
            }
            if (end->type != kLocalTable) continue;
            const auto definition = schema.DefinitionOf(*end);
            const std::string column = FoldCase(row[side + 1].AsText());
            const bool hasColumn = std::any_of(definition->columns.begin(), definition->columns.end(),
                                               [&](const Column& c) { return FoldCase(c.name) == column; });
            if (!hasColumn) {
                context.Find("MSysRelationships: '" + name + "' names the column '" +
                             std::string(row[side + 1].AsText()) + "', which does not exist.");
            }
        }
    }
}

}  // namespace

void VerifyCatalog(VerifyContext& context, Schema& schema) {
    const Catalog& catalog = schema.Objects();
    if (!catalog.Damage().empty()) context.Find(catalog.Damage());
    CheckObjects(context, catalog);
    context.Try([&] { CheckRights(context, schema); });
    context.Try([&] { CheckRelationshipRows(context, schema); });
}

void VerifyRelationships(VerifyContext& context,
                         const std::map<PageNumber, std::shared_ptr<const TableDefinition>>& tables) {
    for (const auto& [id, table] : tables) {
        const PageNumber page = id;
        for (const LogicalIndex& index : table->logicalIndexes) {
            if (index.relationSide == 0 || index.partnerTable == 0) continue;
            const auto partner = tables.find(index.partnerTable);
            const bool isAnswered = partner != tables.end() &&
                                    std::any_of(partner->second->logicalIndexes.begin(),
                                                partner->second->logicalIndexes.end(), [&](const LogicalIndex& other) {
                                                    return other.number == index.partnerNumber &&
                                                           other.partnerTable == page &&
                                                           other.partnerNumber == index.number;
                                                });
            if (!isAnswered) {
                context.Find(PlaceOf(*table) + ", index '" + index.name +
                             "': the other table of the relationship does not know it.");
            }
        }
    }
}

}  // namespace varnel::access
