#include <algorithm>

#include "platform/CodePage.h"
#include "providers/sql/SqliteCatalog.h"
#include "providers/sql/StatementWriter.h"

namespace varnel::sql {
namespace {

/// One CREATE TABLE in SQLite's words.
class TableWriter {
public:
    explicit TableWriter(const CreateTableStatement& create) : create_(create) {
        for (const ColumnDefinition& column : create.columns) {
            types_.push_back(TypeOf(column));
            if (column.primaryKey) key_.push_back(column.name);
            if (types_.back().counter) counter_ = &column;
        }
        if (!create.primaryKey.empty()) key_ = create.primaryKey;
        CheckNames();
    }

    std::string Write() const {
        std::string sql = "CREATE TABLE " + QuotedName(create_.table) + " (";
        for (std::size_t i = 0; i < create_.columns.size(); ++i) sql += (i > 0 ? ", " : "") + Column(i);
        // A counter is the row's number in SQLite, and that is the primary key; another key stays unique beside it.
        if (!key_.empty() && !SingleKey()) sql += (counter_ != nullptr ? ", UNIQUE " : ", PRIMARY KEY ") + List(key_);
        for (const std::vector<std::string>& unique : create_.unique) sql += ", UNIQUE " + List(unique);
        return sql + ")";
    }

private:
    static DeclaredType TypeOf(const ColumnDefinition& column) {
        if (const auto type = FindDeclaredType(column.typeWord, column.typeArguments)) return *type;
        throw Error(ErrorKind::Syntax, column.name,
                    "Syntax error in field definition: column '" + column.name + "' has the unknown type '" +
                        column.typeWord + "'.");
    }

    static bool Same(const std::string& a, const std::string& b) { return FoldCase(a) == FoldCase(b); }
    static bool Contains(const std::vector<std::string>& names, const std::string& name) {
        return std::any_of(names.begin(), names.end(), [&](const std::string& one) { return Same(one, name); });
    }

    /// A key of one column, written with that column.
    bool SingleKey() const { return key_.size() == 1 && (counter_ == nullptr || Same(counter_->name, key_[0])); }

    std::string Column(std::size_t i) const {
        const ColumnDefinition& column = create_.columns[i];
        std::string sql =
            QuotedName(column.name) + " " + DeclarationToStore(types_[i], column.typeWord, column.typeArguments);
        if (&column == counter_) return sql + " PRIMARY KEY AUTOINCREMENT";
        const bool key = Contains(key_, column.name);
        if (column.notNull || key) sql += " NOT NULL";
        if (key && SingleKey()) return sql + " PRIMARY KEY";
        return sql + (column.unique ? " UNIQUE" : "");
    }

    static std::string List(const std::vector<std::string>& names) {
        std::string list;
        for (const std::string& name : names) list += (list.empty() ? "(" : ",") + QuotedName(name);
        return list + ")";
    }

    void CheckNames() const {
        for (std::size_t i = 0; i < create_.columns.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                if (Same(create_.columns[i].name, create_.columns[j].name))
                    throw Error(
                        ErrorKind::Constraint, create_.table,
                        "Field '" + create_.columns[i].name + "' already exists in table '" + create_.table + "'.");
        for (const std::string& name : key_)
            if (std::none_of(create_.columns.begin(), create_.columns.end(),
                             [&](const ColumnDefinition& column) { return Same(column.name, name); }))
                throw Error(ErrorKind::Syntax, create_.table, "There is no column '" + name + "' for the primary key.");
    }

    const CreateTableStatement& create_;
    std::vector<DeclaredType> types_;
    std::vector<std::string> key_;
    const ColumnDefinition* counter_ = nullptr;
};

}  // namespace

std::string WriteCreateTable(SqliteFile& file, const CreateTableStatement& create) {
    if (FindTable(file, create.table))
        throw Error(ErrorKind::Constraint, file.StoredPath(), "Table '" + create.table + "' already exists.");
    return TableWriter(create).Write();
}

std::string WriteDropTable(SqliteFile& file, const DropTableStatement& drop) {
    const std::optional<std::string> name = FindTable(file, drop.table);
    if (!name) throw Error(ErrorKind::Constraint, file.StoredPath(), "Table '" + drop.table + "' does not exist.");
    return "DROP TABLE " + QuotedName(*name);
}

}  // namespace varnel::sql
