// Statements of the dialect made ready for a SQLite file. All throw Error: syntax, missing tables and columns.
#pragma once

#include "providers/sql/SqlAst.h"
#include "providers/sql/SqliteFile.h"
#include "providers/sql/SqliteStatement.h"
#include "providers/sql/TableShape.h"

namespace varnel::sql {

SqliteStatement WriteSelect(SqliteFile& file, const SelectStatement& select, std::size_t markers);
/// The SQLite text of a SELECT. from: what SQLite calls the table. into: gets columns, codecs and programs; its markers
/// are made already. All names are looked up in table.
std::string WriteSelectText(const TableShape& table, const SelectStatement& select, const std::string& from,
                            SqliteStatement& into);
SqliteStatement WriteInsert(SqliteFile& file, const InsertStatement& insert, std::size_t markers);
SqliteStatement WriteUpdate(SqliteFile& file, const UpdateStatement& update, std::size_t markers);
SqliteStatement WriteDelete(SqliteFile& file, const DeleteStatement& statement, std::size_t markers);
/// The CREATE TABLE text for SQLite. Throws Error{Constraint} "Table 'name' already exists.", and for an unknown type
/// word an Error that names it.
std::string WriteCreateTable(SqliteFile& file, const CreateTableStatement& create);
/// Throws Error{Constraint} "Table 'name' does not exist."
std::string WriteDropTable(SqliteFile& file, const DropTableStatement& drop);

/// Works out the parameters from the markers' values and binds them, and the programs. Call before every run; the
/// statement must be reset. buffers: keeps what is bound alive until the run is over.
struct BoundValues {
    std::vector<Value> values;
    std::vector<std::string> texts;
};
void BindParameters(const SqliteFile& file, SqliteStatement& statement, BoundValues& buffers);

}  // namespace varnel::sql
