#include "providers/access/Schema.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Error.h"
#include "providers/access/TableDefinitionParser.h"
#include "providers/access/TableProperties.h"

namespace varnel::access {
namespace {

constexpr std::array<std::string_view, 7> kCatalogColumns = {"Id",    "ParentId", "Name",       "Type",
                                                             "Flags", "Database", "ForeignName"};

std::int64_t IntegerOf(const Value& value) {
    return value.Kind() == ValueKind::Integer ? value.AsInteger() : 0;
}

std::string TextOf(const Value& value) {
    return value.Kind() == ValueKind::Text ? std::string(value.AsText()) : std::string();
}

}  // namespace

Schema::Schema(std::shared_ptr<PageFile> file, PageNumber catalogTable, int codePage)
    : file_(std::move(file)), catalogTable_(catalogTable) {
    if (file_->Shape().version == Version::Jet3) codePage_.emplace(codePage);
}

void Schema::Forget() {
    ++state_;
    catalog_.reset();
    catalogDefinition_.reset();
    definitions_.clear();
}

void Schema::DropWhatIsStale() {
    if (generation_ == file_->Generation()) return;
    Forget();
    generation_ = file_->Generation();
}

const Catalog& Schema::Objects() {
    const auto hold = file_->HoldForReading();
    DropWhatIsStale();
    if (!catalog_) ReadCatalog();
    return *catalog_;
}

void Schema::ReadCatalog() {
    TableDefinition definition = ReadTableDefinition(*file_, catalogTable_, TextPage());
    definition.name = "MSysObjects";
    catalogDefinition_ = std::make_shared<const TableDefinition>(std::move(definition));
    const auto rows = Rows(catalogDefinition_, kCatalogColumns);
    std::vector<CatalogEntry> entries;
    std::string damage;
    std::array<Value, kCatalogColumns.size()> row;
    while (rows->Next(row)) {
        const auto failed =
            std::find_if(row.begin(), row.end(), [](const Value& value) { return value.Kind() == ValueKind::Failure; });
        if (failed != row.end()) {
            damage = failed->FailureText();
            continue;
        }
        CatalogEntry entry;
        entry.id = static_cast<std::int32_t>(IntegerOf(row[0]));
        entry.parent = static_cast<std::int32_t>(IntegerOf(row[1]));
        entry.name = TextOf(row[2]);
        entry.type = IntegerOf(row[3]);
        entry.flags = static_cast<std::uint32_t>(IntegerOf(row[4]));
        entry.database = TextOf(row[5]);
        entry.foreignName = TextOf(row[6]);
        entry.row = rows->Current();
        entries.push_back(std::move(entry));
    }
    catalog_.emplace(std::move(entries), std::move(damage));
}

std::shared_ptr<const TableDefinition> Schema::DefinitionOf(const CatalogEntry& table) {
    const auto hold = file_->HoldForReading();
    DropWhatIsStale();
    const auto page = static_cast<PageNumber>(table.id);
    if (const auto kept = definitions_.find(page); kept != definitions_.end()) return kept->second;
    auto definition = std::make_shared<TableDefinition>(ReadTableDefinition(*file_, page, TextPage()));
    definition->name = table.name;
    ReadProperties(table, *definition);
    return definitions_[page] = std::move(definition);
}

std::shared_ptr<const TableDefinition> Schema::DefinitionOf(std::string_view table) {
    const auto hold = file_->HoldForReading();
    const CatalogEntry* entry = Objects().Find(table);
    if (entry == nullptr || entry->type != kLocalTable) ThrowNoTable(table, Objects());
    return DefinitionOf(*entry);
}

void Schema::ReadProperties(const CatalogEntry& table, TableDefinition& definition) {
    Objects();
    constexpr std::array<std::string_view, 1> kProperties = {"LvProp"};
    std::array<Value, 1> row;
    if (!Rows(catalogDefinition_, kProperties)->Seek(table.row, row)) return;
    if (row[0].Kind() == ValueKind::Failure)
        throw Error(ErrorKind::Corrupt, table.name, std::string(row[0].FailureText()));
    if (row[0].Kind() == ValueKind::Bytes)
        ApplyProperties(row[0].AsBytes(), TextPage(), file_->StoredPath(), definition);
}

std::unique_ptr<TableReader> Schema::Rows(std::shared_ptr<const TableDefinition> table,
                                          std::span<const std::string_view> columns) const {
    std::vector<std::size_t> wanted;
    for (const std::string_view name : columns) {
        const auto found = std::find_if(table->columns.begin(), table->columns.end(),
                                        [&](const Column& column) { return column.name == name; });
        if (found == table->columns.end())
            throw Error(ErrorKind::Corrupt, file_->StoredPath(),
                        "The table '" + table->name + "' of '" + file_->StoredPath() + "' has no column '" +
                            std::string(name) + "'.");
        wanted.push_back(static_cast<std::size_t>(found - table->columns.begin()));
    }
    return std::make_unique<TableReader>(file_, std::move(table), wanted, TextPage());
}

}  // namespace varnel::access
