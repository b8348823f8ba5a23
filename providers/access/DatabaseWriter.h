// Everything that changes an Access file: rows of its tables, and the tables themselves. There is one for each file
// that the process has open, so that all who write see one another's rows.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <string_view>

#include "providers/access/FilePages.h"
#include "providers/access/Schema.h"
#include "providers/access/TableWriter.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::access {

class DatabaseWriter {
public:
    explicit DatabaseWriter(std::shared_ptr<Schema> schema);

    // Rows. These need a write hold that lasts until Commit, and are all or nothing. table: as the catalog has it.
    RowPointer Insert(const CatalogEntry& table, const NewValues& given);
    void Update(const CatalogEntry& table, RowPointer row, const NewValues& given);
    void Delete(const CatalogEntry& table, RowPointer row);
    void DeleteAll(const CatalogEntry& table);
    /// A commit point for everything that was written. Throws Error{Io}; what was written then stays pending.
    void Commit();

    // Tables. These hold the file themselves and commit.
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns);
    void DropTable(std::string_view name);

private:
    friend class TableMaker;
    friend class TableDropper;

    void DropWhatIsStale();
    TableWriter& WriterOf(const CatalogEntry& table);
    TableWriter& WriterOf(std::string_view systemTable);
    void StoreCounts();
    template <class Body>
    void ChangeRow(const CatalogEntry& table, Body&& body);
    template <class Body>
    void ChangeTables(Body&& body);

    std::shared_ptr<Schema> schema_;
    PageFile& file_;
    FilePages pages_;
    std::uint64_t generation_ = 0;
    std::map<PageNumber, std::unique_ptr<TableWriter>> writers_;  ///< by table
};

}  // namespace varnel::access
