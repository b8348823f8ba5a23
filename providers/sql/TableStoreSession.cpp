#include "providers/sql/TableStoreSession.h"

#include "platform/Error.h"
#include "providers/sql/StoreAppender.h"
#include "providers/sql/StoreChange.h"
#include "providers/sql/StoreDefinitions.h"
#include "providers/sql/StorePrepared.h"
#include "providers/sql/StoreSelect.h"
#include "providers/sql/ViewTable.h"

namespace varnel::sql {

void TableStoreSession::RequireWritable() const {
    if (readOnly_)
        throw Error(ErrorKind::Constraint, store_->StoredPath(), "Cannot update. Database or object is read-only.");
    store_->Tables().RequireWritable();
}

ParsedStatement TableStoreSession::Parse(const std::string& statement) const {
    ParsedStatement parsed = dialect_.parse(statement);
    if (dialect_.resolve != nullptr) dialect_.resolve(parsed, store_->Tables());
    return parsed;
}

std::unique_ptr<RowReader> TableStoreSession::Query(const std::string& statement) {
    const ParsedStatement parsed = Parse(statement);
    if (parsed.markers > 0) throw Error(ErrorKind::Syntax, "", "No value given for one or more required parameters.");
    if (const auto* select = std::get_if<SelectStatement>(&parsed.body))
        return OpenStoreSelect(store_, *dialect_.rules, *select);
    Change(parsed);
    return nullptr;
}

void TableStoreSession::Execute(const std::string& statement) {
    Query(statement);
}

void TableStoreSession::Change(const ParsedStatement& parsed) {
    RequireWritable();
    if (const auto* create = std::get_if<CreateTableStatement>(&parsed.body))
        return store_->Tables().CreateTable(create->table, DefinitionsOf(*create));
    if (const auto* drop = std::get_if<DropTableStatement>(&parsed.body))
        return store_->Tables().DropTable(drop->table);
    const auto change = WriteStoreChange(store_, *dialect_.rules, parsed, std::make_shared<const std::vector<Value>>());
    change->Run();
    change->Commit();
}

std::unique_ptr<PreparedStatement> TableStoreSession::Prepare(const std::string& statement,
                                                              std::span<const ParameterInfo>) {
    RequireWritable();
    return std::make_unique<StorePrepared>(store_, *dialect_.rules, Parse(statement));
}

std::unique_ptr<Appender> TableStoreSession::OpenAppender(const std::string& selectStatement) {
    RequireWritable();
    const ParsedStatement parsed = Parse(selectStatement);
    const auto* select = std::get_if<SelectStatement>(&parsed.body);
    if (select == nullptr) throw Error(ErrorKind::Syntax, "", "Operation must use an updatable query.");
    return std::make_unique<StoreAppender>(store_, *dialect_.rules, *select);
}

std::vector<TableInfo> TableStoreSession::Tables() {
    std::vector<TableInfo> tables;
    for (std::string& name : store_->Tables().TableNames()) tables.push_back({"", std::move(name), false});
    for (std::string& name : store_->Tables().ViewNames()) tables.push_back({"", std::move(name), true});
    return tables;
}

std::vector<TableColumn> TableStoreSession::Columns(const std::string& owner, const std::string& table) {
    return OpenStoreSource(store_, *dialect_.rules, table, owner)->file->Describe();
}

bool TableStoreSession::Alive() noexcept {
    try {
        return store_->StillThere();
    } catch (const std::exception&) {
        return false;  // the path cannot even be looked up any more
    }
}

}  // namespace varnel::sql
