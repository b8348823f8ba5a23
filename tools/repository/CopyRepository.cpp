// Carries every table of a repository into a new file of either form.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "ado/Ado.h"
#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "platform/StoredPath.h"
#include "tools/output/Progress.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/Repository.h"
#include "tools/repository/RepositoryTables.h"

namespace varnel::admin {
namespace {

struct TableContent {
    std::string name;
    std::vector<std::string> columns;
    std::vector<std::string> types;  ///< type words of Jet's CREATE TABLE, which both forms understand
    std::vector<std::vector<Value>> rows;
};

/// Removes a file that was made only in part.
class Unfinished {
public:
    explicit Unfinished(std::string file) : file_(std::move(file)) {}
    ~Unfinished() {
        if (finished_) return;
        CloseIdleSessions();
        std::error_code ignored;
        std::filesystem::remove(LocalPath(file_), ignored);
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;
    void Finished() { finished_ = true; }

private:
    std::string file_;
    bool finished_ = false;
};

std::string InBrackets(const std::string& name) {
    return "[" + name + "]";
}

std::string TypeWord(const std::string& table, const Field& field) {
    const std::string size = "(" + std::to_string(field.DefinedSize()) + ")";
    switch (field.Type()) {
        case adSmallInt:
            return "SHORT";
        case adInteger:
            return "LONG";
        case adSingle:
            return "SINGLE";
        case adDouble:
            return "DOUBLE";
        case adCurrency:
            return "CURRENCY";
        case adDate:
            return "DATETIME";
        case adBoolean:
            return "YESNO";
        case adUnsignedTinyInt:
            return "BYTE";
        case adGUID:
            return "GUID";
        case adNumeric:
            return "DECIMAL(" + std::to_string(field.Precision()) + "," + std::to_string(field.NumericScale()) + ")";
        case adVarWChar:
            return "TEXT" + size;
        case adWChar:
            return "CHAR" + size;
        case adLongVarWChar:
            return "MEMO";
        case adBinary:
        case adVarBinary:
            return "VARBINARY" + size;
        case adLongVarBinary:
            return "OLEOBJECT";
        default:
            throw Error(ErrorKind::NotSupported, table,
                        "the column " + field.Name() + " of the table " + table + " has the type " +
                            std::to_string(static_cast<int>(field.Type())) +
                            ", which an Access database does not know");
    }
}

/// Ours and the user's own, not those by which the database keeps itself.
std::vector<std::string> TableNames(const std::string& file, const Connection& repository) {
    const bool access = RepositoryFormOf(file) == RepositoryForm::Access;
    Recordset names;
    names.Open(access ? "SELECT Name FROM MSysObjects WHERE Type=1 AND Flags=0 ORDER BY Name"
                      : "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite%' ORDER BY name",
               repository);
    std::vector<std::string> list;
    for (; !names.Eof(); names.MoveNext()) list.emplace_back(names.Fields(0).GetValue().AsText());
    return list;
}

TableContent ReadTable(const std::string& name, const Connection& repository, Progress& progress) {
    TableContent table{name, {}, {}, {}};
    Recordset rows;
    rows.Open("SELECT * FROM " + InBrackets(name), repository);
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
        table.columns.push_back(rows.Fields(k).Name());
        table.types.push_back(TypeWord(name, rows.Fields(k)));
    }
    for (; !rows.Eof(); rows.MoveNext(), progress.Count(table.rows.size())) {
        std::vector<Value>& row = table.rows.emplace_back(table.columns.size());
        for (std::size_t k = 0; k < row.size(); ++k) row[k] = rows.Fields(k).GetValue();
    }
    return table;
}

/// The positions of a repository table's key columns; empty for other tables, and where the rows do not obey the key
/// (a designer's repository need not have one).
std::vector<std::size_t> KeyOf(const TableContent& table) {
    const auto* known = std::find_if(kRepositoryTables.begin(), kRepositoryTables.end(),
                                     [&](const auto& one) { return EqualNoCase(one.name, table.name); });
    if (known == kRepositoryTables.end()) return {};
    std::vector<std::size_t> key;
    for (const std::string& column : KeyColumns(*known)) {
        const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                        [&](const std::string& one) { return EqualNoCase(one, column); });
        if (found == table.columns.end()) return {};
        key.push_back(static_cast<std::size_t>(found - table.columns.begin()));
    }
    std::set<std::string> seen;
    for (const std::vector<Value>& row : table.rows) {
        std::string text;
        for (const std::size_t column : key) {
            if (row[column].IsNull()) return {};
            text += DefaultText(row[column]) + "\n";
        }
        if (!seen.insert(text).second) return {};
    }
    return key;
}

void WriteTable(const TableContent& table, Connection& repository, Progress& progress) {
    std::string definitions, columns, key;
    for (std::size_t k = 0; k < table.columns.size(); ++k) {
        const std::string name = InBrackets(table.columns[k]);
        definitions += (k > 0 ? ", " : "") + name + " " + table.types[k];
        columns += (k > 0 ? ", " : "") + name;
    }
    for (const std::size_t column : KeyOf(table)) key += (key.empty() ? "" : ", ") + InBrackets(table.columns[column]);
    if (!key.empty()) definitions += ", CONSTRAINT " + InBrackets(table.name + "Key") + " PRIMARY KEY (" + key + ")";
    repository.Execute("CREATE TABLE " + InBrackets(table.name) + " (" + definitions + ")");
    Recordset rows;
    rows.Open("SELECT " + columns + " FROM " + InBrackets(table.name), repository, adOpenKeyset, adLockOptimistic);
    std::size_t written = 0;
    for (const std::vector<Value>& row : table.rows) {
        progress.Count(written++, table.rows.size());
        rows.AddNew();
        for (std::size_t k = 0; k < row.size(); ++k) rows.Fields(k).SetValue(row[k]);
        rows.Update();
    }
    rows.Close();
}

}  // namespace

void CopyRepository(const std::string& from, const std::string& to, RepositoryForm form) {
    const Connection source = OpenRepository(from);
    Connection target = MakeRepositoryFile(to, form);
    Unfinished unfinished(to);
    Progress progress("copying", "rows");
    for (const std::string& name : TableNames(from, source)) {
        progress.Begin("copying " + name);
        const TableContent table = ReadTable(name, source, progress);
        WriteTable(table, target, progress);
        progress.Erase();
        std::printf("%s: %zu rows\n", name.c_str(), table.rows.size());
    }
    target.Close();
    unfinished.Finished();
}

}  // namespace varnel::admin
