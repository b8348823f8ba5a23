#include "providers/access/AccessDatabase.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "providers/access/AccessTable.h"
#include "providers/access/FileHeader.h"
#include "providers/access/SavedQuery.h"

namespace varnel::access {
namespace {

std::shared_ptr<Schema> OpenSchema(std::shared_ptr<PageFile> file, const AccessOptions& options) {
    const auto hold = file->HoldForReading();
    const FileHeader header = ReadFileHeader(*file);
    CheckPassword(header, options.password, file->StoredPath());
    return std::make_shared<Schema>(std::move(file), header.catalog, header.codePage);
}

[[noreturn]] void ThrowLinked(const CatalogEntry& entry) {
    const std::string there = entry.foreignName.empty() ? "" : " ('" + entry.foreignName + "' over there)";
    if (entry.type == kOdbcLink)
        throw Error(ErrorKind::NotSupported, entry.name,
                    "The table '" + entry.name + "' is linked to a server" + there +
                        ". Linked tables are not followed: name the server in the connection string.");
    throw Error(ErrorKind::NotSupported, entry.name,
                "The table '" + entry.name + "' is linked to '" + entry.database + "'" + there +
                    ". Linked tables are not followed: name that file in the connection string.");
}

}  // namespace

AccessDatabase::AccessDatabase(std::string_view storedPath, const AccessOptions& options)
    : AccessDatabase(OpenPageFile(storedPath, options.readOnly), options) {}

AccessDatabase::AccessDatabase(std::shared_ptr<PageFile> file, const AccessOptions& options)
    : schema_(OpenSchema(std::move(file), options)) {
    if (!options.readOnly && schema_->File()->Shape().version == Version::Jet4)
        writer_ = std::make_shared<DatabaseWriter>(schema_);
}

std::vector<std::string> AccessDatabase::TableNames() {
    return schema_->Objects().UserTables();
}

std::unique_ptr<TableFile> AccessDatabase::OpenTable(std::string_view name) {
    const auto hold = schema_->File()->HoldForReading();
    const Catalog& catalog = schema_->Objects();
    const CatalogEntry* entry = catalog.Find(name);
    if (entry == nullptr) ThrowNoTable(name, catalog);
    if (entry->type == kSavedQuery)
        throw Error(ErrorKind::NotSupported, entry->name, "'" + entry->name + "' is a query, not a table.");
    if (entry->type != kLocalTable) ThrowLinked(*entry);
    return std::make_unique<AccessTable>(schema_, writer_, *entry);
}

std::vector<std::string> AccessDatabase::ViewNames() {
    const auto hold = schema_->File()->HoldForReading();
    std::vector<std::string> names;
    for (const CatalogEntry& entry : schema_->Objects().Entries())
        if (entry.IsSelectQuery()) names.push_back(entry.name);
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return FoldCase(a) < FoldCase(b); });
    return names;
}

std::optional<std::string> AccessDatabase::ViewText(std::string_view name) {
    const auto hold = schema_->File()->HoldForReading();
    const CatalogEntry* entry = schema_->Objects().Find(name);
    if (entry == nullptr || entry->type != kSavedQuery) return std::nullopt;
    const CatalogEntry query = *entry;
    return QueryText(query.name, ReadQueryParts(*schema_, query));
}

void AccessDatabase::CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) {
    RequireWritable();
    writer_->CreateTable(name, columns);
}

void AccessDatabase::DropTable(std::string_view name) {
    RequireWritable();
    writer_->DropTable(name);
}

void AccessDatabase::RequireWritable() {
    const std::string& path = schema_->File()->StoredPath();
    if (schema_->File()->Shape().version != Version::Jet4)
        throw Error(ErrorKind::NotSupported, path,
                    "'" + path + "' is of a version that is only read; save it as an Access 2000 or 2003 file");
    if (writer_ == nullptr)
        throw Error(ErrorKind::NotSupported, path, "Cannot update. Database or object is read-only.");
}

}  // namespace varnel::access
