// A table kept in a file, as the SQL engine sees it. Each file format implements these; none of them knows SQL.
// All calls throw Error.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/CodePage.h"

namespace varnel {

/// Names one row of a table for as long as the table is not rewritten as a whole.
using RowId = std::int64_t;

/// A forward read of the rows that existed when it was opened.
class TableRows {
public:
    virtual ~TableRows() = default;
    /// Fills row (one Value per wanted column) with the next row and returns true, or returns false after the last.
    virtual bool Next(std::span<Value> row) = 0;
    /// The id of the row that Next gave last.
    virtual RowId Current() const = 0;
};

/// Changes that are kept or taken back together; those of the table's whole store, for as long as it lives.
class TableUnit {
public:
    virtual ~TableUnit() = default;
    /// A commit point. Throws Error; the changes are then still pending.
    virtual void Commit() = 0;
    /// Takes back everything since the unit began.
    virtual void Rollback() = 0;
};

class TableFile {
public:
    virtual ~TableFile() = default;
    virtual const std::vector<ColumnInfo>& Columns() const = 0;
    /// The columns with what else the format knows of them: its own type words, keys, who gives the values. By default
    /// the types' usual names alone.
    virtual std::vector<TableColumn> Describe();
    /// The position in Columns() of the column that a statement calls name; nothing when there is none. Names compare
    /// without case; a format may know a column by further names.
    virtual std::optional<std::size_t> FindColumn(std::string_view name) const;
    /// wanted: positions in Columns(), in the order in which Next is to deliver them; only these are decoded. May be
    /// empty (the rows are only counted), and may name a column twice.
    virtual std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) = 0;
    /// Looks at every row slot or delete flag without decoding rows; never trusts a stored count.
    virtual std::int64_t CountRows() = 0;
    /// values: one per column; assigned: which of them were set. A refused row leaves no trace.
    virtual void Append(std::span<const Value> values, const std::vector<bool>& assigned) = 0;
    virtual void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) = 0;
    virtual void Delete(RowId row) = 0;
    /// Deletes every row and gives the space back.
    virtual void DeleteAll() = 0;
    /// A commit point: everything written so far survives the end of the process.
    virtual void Commit() = 0;
    /// Begins a unit; what was written before becomes a commit point. Null when changes cannot be taken back.
    virtual std::unique_ptr<TableUnit> BeginUnit() { return nullptr; }
};

inline std::vector<TableColumn> TableFile::Describe() {
    std::vector<TableColumn> described;
    for (const ColumnInfo& info : Columns()) described.push_back({info, TypeName(info.type)});
    return described;
}

inline std::optional<std::size_t> TableFile::FindColumn(std::string_view name) const {
    const std::string folded = FoldCase(name);
    const std::vector<ColumnInfo>& columns = Columns();
    for (std::size_t k = 0; k < columns.size(); ++k) {
        if (FoldCase(columns[k].name) == folded) return k;
    }
    return std::nullopt;
}

/// One column of CREATE TABLE, its type word as the dialect wrote it.
struct ColumnDefinition {
    std::string name;
    std::string typeWord;            ///< upper case: "TEXT", "LONG", "DECIMAL"
    std::vector<int> typeArguments;  ///< (10,2) gives 10 and 2
    bool notNull = false;
    bool primaryKey = false;
    bool unique = false;
};

/// A database of table files: an Access file, a folder of FoxPro tables, a folder of text files.
class TableStore {
public:
    virtual ~TableStore() = default;
    virtual std::vector<std::string> TableNames() = 0;
    /// True when OpenTable would find a table by this name, whatever its state.
    virtual bool HasTable(std::string_view name);
    /// Throws Error when there is no such table, in the words of the format.
    virtual std::unique_ptr<TableFile> OpenTable(std::string_view name) = 0;
    /// The queries kept in the store that can be read as tables.
    virtual std::vector<std::string> ViewNames() { return {}; }
    /// The SELECT statement, in Access's words, that a query kept in the store under that name stands for; nothing when
    /// there is no such query. Throws Error, in the words of the format, for one that cannot be read.
    virtual std::optional<std::string> ViewText(std::string_view /*name*/) { return std::nullopt; }
    /// Throws Error{Constraint} when the table exists; nothing is ever overwritten.
    virtual void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) = 0;
    virtual void DropTable(std::string_view name) = 0;
    /// Throws Error, in the words of the format, when nothing in here can be written.
    virtual void RequireWritable() {}
};

inline bool TableStore::HasTable(std::string_view name) {
    const std::string folded = FoldCase(name);
    for (const std::string& one : TableNames())
        if (FoldCase(one) == folded) return true;
    return false;
}

}  // namespace varnel
