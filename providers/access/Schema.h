// What a file says about its tables, read from its system tables when first asked for and kept until the file may have
// changed.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CodePage.h"
#include "providers/access/Catalog.h"
#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"
#include "providers/access/TableReader.h"

namespace varnel::access {

class Schema {
public:
    /// catalogTable: the page of MSysObjects' definition. codePage: of the texts of Access 97.
    Schema(std::shared_ptr<PageFile> file, PageNumber catalogTable, int codePage);

    const std::shared_ptr<PageFile>& File() const { return file_; }
    /// Null for every version but Access 97.
    const CodePage* TextPage() const { return codePage_ ? &*codePage_ : nullptr; }

    // These throw Error{Corrupt} and Error{Io}; what they return is good as long as the caller holds the file.

    const Catalog& Objects();
    /// With the properties of its columns.
    std::shared_ptr<const TableDefinition> DefinitionOf(const CatalogEntry& table);
    /// Throws Error{Constraint} when there is no such table.
    std::shared_ptr<const TableDefinition> DefinitionOf(std::string_view table);
    /// Rows of a table with these columns, by name. Throws Error{Corrupt} when it has no such column.
    std::unique_ptr<TableReader> Rows(std::shared_ptr<const TableDefinition> table,
                                      std::span<const std::string_view> columns) const;
    /// Whoever changes the catalog or a definition calls this.
    void Forget();
    /// Grows whenever the catalog or a definition may have changed. Needs a hold.
    std::uint64_t State() {
        DropWhatIsStale();
        return state_;
    }

private:
    void DropWhatIsStale();
    void ReadCatalog();
    void ReadProperties(const CatalogEntry& table, TableDefinition& definition);

    std::shared_ptr<PageFile> file_;
    PageNumber catalogTable_;
    std::optional<CodePage> codePage_;
    std::uint64_t state_ = 0;
    std::uint64_t generation_ = 0;  ///< of the file, when the following was read
    std::optional<Catalog> catalog_;
    std::shared_ptr<const TableDefinition> catalogDefinition_;
    std::map<PageNumber, std::shared_ptr<const TableDefinition>> definitions_;
};

}  // namespace varnel::access
