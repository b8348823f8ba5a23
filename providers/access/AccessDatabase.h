// An Access file (.mdb of Access 97 to 2003, .accdb) as a database of tables.
// Start here. Needs the file alone; reads every version, writes Jet 4.
//
// From bytes to values, each stage in files of its own:
//   PageFile                    the file's pages: cached, locked, journaled
//   DataPage, TableScan         row slots, and a table's rows one after the other
//   RowView                     a row's cells
//   CellDecoder, UnicodeText,
//   LongValueReader             values
//   TableReader                 rows of values
//   TableDefinitionParser, TableProperties, Catalog, Schema   what tables there are
//   SavedQuery                  queries kept in the file, as statements
// And back:
//   DatabaseWriter              everything that changes the file, one step at a time
//   TableWriter                 rows of a table: the rules, the indexes, the long values
//   RowBuilder, ValueEncoder,
//   LongValueWriter             bytes of rows
//   StoredRows, RowPages        where rows lie
//   FilePages, UsageMapWriter   whose pages are whose
//   TableMaker, TableDropper,
//   CatalogWriter               tables
//   BlankDatabase               a new file
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/access/DatabaseWriter.h"
#include "providers/access/Schema.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::access {

struct AccessOptions {
    std::string password;
    bool readOnly = false;
};

class AccessDatabase : public TableStore {
public:
    /// Throws Error{Constraint} "Not a valid password.", Error{Corrupt} for a file that is none of ours,
    /// Error{NotSupported} for an encrypted one, Error{Io}.
    AccessDatabase(std::string_view storedPath, const AccessOptions& options);
    /// Over pages that are open already.
    AccessDatabase(std::shared_ptr<PageFile> file, const AccessOptions& options);

    /// The tables that a user made, sorted by name without regard to case.
    std::vector<std::string> TableNames() override;
    /// Any local table, the system's too. Throws Error{NotSupported} naming the path for a linked table.
    std::unique_ptr<TableFile> OpenTable(std::string_view name) override;
    std::vector<std::string> ViewNames() override;
    std::optional<std::string> ViewText(std::string_view name) override;
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) override;
    void DropTable(std::string_view name) override;
    /// Throws Error{NotSupported} for a version that is only read.
    void RequireWritable() override;

private:
    std::shared_ptr<Schema> schema_;
    std::shared_ptr<DatabaseWriter> writer_;  ///< null when the database is only read
};

}  // namespace varnel::access
