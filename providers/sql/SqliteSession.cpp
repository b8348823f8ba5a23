#include "providers/sql/SqliteSession.h"

#include "platform/Error.h"
#include "providers/sql/SqliteAppender.h"
#include "providers/sql/SqlitePrepared.h"
#include "providers/sql/SqliteReader.h"
#include "providers/sql/StatementParser.h"
#include "providers/sql/StatementWriter.h"

namespace varnel::sql {
namespace {

void RefuseMarkers(const ParsedStatement& parsed) {
    if (parsed.markers > 0) throw Error(ErrorKind::Syntax, "", "No value given for one or more required parameters.");
}

/// An INSERT, UPDATE or DELETE made ready for the file.
SqliteStatement WriteChange(SqliteFile& file, const ParsedStatement& parsed) {
    if (const auto* insert = std::get_if<InsertStatement>(&parsed.body))
        return WriteInsert(file, *insert, parsed.markers);
    if (const auto* update = std::get_if<UpdateStatement>(&parsed.body))
        return WriteUpdate(file, *update, parsed.markers);
    if (const auto* statement = std::get_if<DeleteStatement>(&parsed.body))
        return WriteDelete(file, *statement, parsed.markers);
    throw Error(ErrorKind::NotSupported, "", "Only INSERT, UPDATE and DELETE statements can be prepared.");
}

}  // namespace

void SqliteSession::RequireWritable() const {
    if (readOnly_ || sqlite3_db_readonly(file_->Handle(), "main") == 1)
        throw Error(ErrorKind::Constraint, file_->StoredPath(), "Cannot update. Database or object is read-only.");
}

std::unique_ptr<RowReader> SqliteSession::Query(const std::string& statement) {
    const ParsedStatement parsed = ParseStatement(statement);
    RefuseMarkers(parsed);
    const auto* select = std::get_if<SelectStatement>(&parsed.body);
    if (select == nullptr) {
        Change(parsed);
        return nullptr;
    }
    SqliteStatement written = WriteSelect(*file_, *select, 0);
    BoundValues none;
    BindParameters(*file_, written, none);
    return std::make_unique<SqliteReader>(file_, std::move(written));
}

void SqliteSession::Execute(const std::string& statement) {
    Query(statement);
}

void SqliteSession::Change(const ParsedStatement& parsed) {
    RequireWritable();
    if (const auto* create = std::get_if<CreateTableStatement>(&parsed.body))
        return ChangeTables(WriteCreateTable(*file_, *create));
    if (const auto* drop = std::get_if<DropTableStatement>(&parsed.body))
        return ChangeTables(WriteDropTable(*file_, *drop));
    SqliteStatement written = WriteChange(*file_, parsed);
    BoundValues buffers;
    BindParameters(*file_, written, buffers);
    file_->RunAlone(written.tracked);
}

void SqliteSession::ChangeTables(const std::string& sql) {
    file_->Commit();
    file_->KeepAllReads();
    TrackedStatement statement = file_->Prepare(sql);
    file_->RunAlone(statement);
}

std::vector<TableColumn> SqliteSession::Columns(const std::string& /*owner*/, const std::string& table) {
    return DescribeTable(*file_, table);
}

std::unique_ptr<PreparedStatement> SqliteSession::Prepare(const std::string& statement,
                                                          std::span<const ParameterInfo>) {
    RequireWritable();
    const ParsedStatement parsed = ParseStatement(statement);
    return std::make_unique<SqlitePrepared>(file_, WriteChange(*file_, parsed));
}

std::unique_ptr<Appender> SqliteSession::OpenAppender(const std::string& selectStatement) {
    RequireWritable();
    const ParsedStatement parsed = ParseStatement(selectStatement);
    const auto* select = std::get_if<SelectStatement>(&parsed.body);
    if (select == nullptr) throw Error(ErrorKind::Syntax, "", "Operation must use an updatable query.");
    return std::make_unique<SqliteAppender>(file_, *select);
}

}  // namespace varnel::sql
