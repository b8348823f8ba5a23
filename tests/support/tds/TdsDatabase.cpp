#include "tests/support/tds/TdsDatabase.h"

#include <cctype>
#include <optional>
#include <regex>

#include "ado/types/ConnectionString.h"
#include "tests/support/tds/TdsCatalog.h"

namespace varnel::tds {
namespace {

Cell CellOf(sqlite3_value* value) {
    Cell cell;
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            cell.kind = Cell::Kind::Integer;
            cell.integer = sqlite3_value_int64(value);
            break;
        case SQLITE_FLOAT:
            cell.kind = Cell::Kind::Real;
            cell.real = sqlite3_value_double(value);
            break;
        case SQLITE_NULL:
            break;
        default:
            cell.kind = sqlite3_value_type(value) == SQLITE_BLOB ? Cell::Kind::Blob : Cell::Kind::Text;
            const void* bytes = sqlite3_value_blob(value);
            const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
            if (size > 0) cell.bytes.assign(static_cast<const char*>(bytes), size);
    }
    return cell;
}

void Bind(sqlite3_stmt* statement, int at, const Cell& cell) {
    const auto size = static_cast<int>(cell.bytes.size());
    switch (cell.kind) {
        case Cell::Kind::Null:
            sqlite3_bind_null(statement, at);
            break;
        case Cell::Kind::Integer:
            sqlite3_bind_int64(statement, at, cell.integer);
            break;
        case Cell::Kind::Real:
            sqlite3_bind_double(statement, at, cell.real);
            break;
        case Cell::Kind::Text:
            sqlite3_bind_text(statement, at, cell.bytes.data(), size, SQLITE_TRANSIENT);
            break;
        case Cell::Kind::Blob:
            sqlite3_bind_blob(statement, at, cell.bytes.data(), size, SQLITE_TRANSIENT);
            break;
    }
}

std::string MisfitText(int number, const std::string& column, const std::string& word) {
    switch (number) {
        case 8152:
            return "String or binary data would be truncated in column '" + column + "'.";
        case 8115:
            return "Arithmetic overflow error converting expression to data type " + word + ".";
        case 241:
            return "Conversion failed when converting date and/or time from character string.";
        default:
            return "Conversion failed when converting a value to data type " + word + ".";
    }
}

/// The parts of a column list at its own commas.
std::vector<std::string> SplitList(std::string_view list) {
    std::vector<std::string> parts(1);
    int depth = 0;
    bool bracket = false;
    for (const char c : list) {
        if (c == '[') bracket = true;
        if (c == ']') bracket = false;
        if (!bracket && c == '(') ++depth;
        if (!bracket && c == ')') --depth;
        if (c == ',' && depth == 0 && !bracket)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

/// The first one that is no part of a name in brackets.
std::size_t FirstParenthesis(std::string_view text) {
    bool bracket = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '[') bracket = true;
        if (text[at] == ']') bracket = false;
        if (text[at] == '(' && !bracket) return at;
    }
    return std::string::npos;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
    return quoted + "'";
}

/// N'…' without its N, which SQLite does not know.
std::string WithoutNationalMarks(std::string_view statement) {
    std::string text;
    char quote = 0;
    for (std::size_t k = 0; k < statement.size(); ++k) {
        const char c = statement[k];
        const bool free = quote == 0 && (k == 0 || std::isalnum(static_cast<unsigned char>(statement[k - 1])) == 0);
        if (free && c == 'N' && k + 1 < statement.size() && statement[k + 1] == '\'') continue;
        if (quote == 0 && (c == '\'' || c == '[' || c == '"')) {
            quote = c == '[' ? ']' : c;
        } else if (c == quote) {
            quote = 0;
        }
        text += c;
    }
    return text;
}

using Answer = void (*)(sqlite3_context* context, int count, sqlite3_value** values);

std::string_view TextOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text == nullptr ? "" : text;
}

void AnswerText(sqlite3_context* context, std::string_view text) {
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

/// The parts of a declared type as WithChecks writes it: affinity, word, numbers, collation.
SqlType ReadDeclared(const char* declared) {
    SqlType type;
    char word[64] = "", collation[64] = "";
    if (std::sscanf(declared, "%*s %63s %u,%u,%u %63s", word, &type.size, &type.precision, &type.scale, collation) >= 4)
        type.word = word;
    type.collation = collation;
    return type;
}

/// What is asked about the database and its columns: names, collations, and their code pages.
void DefineProperties(sqlite3* handle) {
    const auto define = [&](const char* name, int count, Answer answer) {
        sqlite3_create_function(handle, name, count, SQLITE_UTF8, nullptr, answer, nullptr, nullptr);
    };
    define("DB_NAME", 0, [](sqlite3_context* context, int, sqlite3_value**) { AnswerText(context, "shop"); });
    define("DATABASEPROPERTYEX", 2,
           [](sqlite3_context* context, int, sqlite3_value**) { AnswerText(context, kDatabaseCollation); });
    define("COLLATIONPROPERTY", 2, [](sqlite3_context* context, int, sqlite3_value** values) {
        const std::string_view name = TextOf(values[0]);
        const Collation* collation = name.empty() ? nullptr : FindCollation(name);
        if (collation != nullptr) sqlite3_result_int(context, collation->codePage);
    });
    // An object's "number" is its bare name, for a name in brackets or without.
    define("OBJECT_ID", 1, [](sqlite3_context* context, int, sqlite3_value** values) {
        std::string_view name = TextOf(values[0]);
        if (const auto dot = name.rfind("].["); dot != std::string_view::npos) name.remove_prefix(dot + 2);
        if (name.starts_with('[') && name.ends_with(']')) name = name.substr(1, name.size() - 2);
        AnswerText(context, AsciiLower(std::string(name)));
    });
    define("tds_collation", 1, [](sqlite3_context* context, int, sqlite3_value** values) {
        const SqlType type = ReadDeclared(std::string(TextOf(values[0])).c_str());
        if (!IsText(type)) return;
        AnswerText(context, type.collation.empty() ? kDatabaseCollation : std::string_view(type.collation));
    });
}

/// The catalogue's view of the columns, made when a statement asks it.
constexpr const char* kFillColumns =
    "DELETE FROM sys.columns; INSERT INTO sys.columns SELECT lower(t.name), c.name, tds_collation(c.type) FROM "
    "dbo.sqlite_schema t, pragma_table_info(t.name, 'dbo') c WHERE t.type = 'table'";

}  // namespace

TdsDatabase::TdsDatabase(const std::string& file) {
    sqlite3_open(file.c_str(), &handle_);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_MAINDBNAME, "dbo");  // where names without a schema belong
    sqlite3_busy_timeout(handle_, 20000);
    DefineProperties(handle_);
    sqlite3_create_function(handle_, "tds_fits", 6, SQLITE_UTF8, this, &TdsDatabase::CheckFit, nullptr, nullptr);
    Plain("ATTACH ':memory:' AS sys");
    Plain("CREATE TABLE sys.columns (object_id, name, collation_name)");
    Plain("PRAGMA dbo.journal_mode=MEMORY");
    Plain("PRAGMA dbo.synchronous=OFF");
}

TdsDatabase::~TdsDatabase() {
    last_.reset();
    sqlite3_close_v2(handle_);
}

void TdsDatabase::Plain(const char* statement) {
    if (sqlite3_exec(handle_, statement, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(statement);
}

/// tds_fits(value, column, word, size, precision, scale): whether SQL Server would store the value there.
void TdsDatabase::CheckFit(sqlite3_context* context, int, sqlite3_value** values) {
    auto* self = static_cast<TdsDatabase*>(sqlite3_user_data(context));
    SqlType type;
    type.word = reinterpret_cast<const char*>(sqlite3_value_text(values[2]));
    type.size = static_cast<unsigned>(sqlite3_value_int(values[3]));
    type.precision = static_cast<unsigned>(sqlite3_value_int(values[4]));
    type.scale = static_cast<unsigned>(sqlite3_value_int(values[5]));
    const int number = Misfit(type, CellOf(values[0]));
    if (number != 0) {
        const std::string column = reinterpret_cast<const char*>(sqlite3_value_text(values[1]));
        self->misfit_ = {number, MisfitText(number, column, type.word)};
    }
    sqlite3_result_int(context, number == 0 ? 1 : 0);
}

/// "create table …" with every column's kind of storage and a check in place of its type; the type itself goes into the
/// column's collation-free remark, which the descriptions are made from.
std::string TdsDatabase::WithChecks(const std::string& createTable) {
    const auto open = FirstParenthesis(createTable), close = createTable.rfind(')');
    if (open == std::string::npos || close == std::string::npos) return createTable;
    static const std::regex kColumn(
        R"(^\s*(\[(?:[^\]]|\]\])*\]|\w+)\s+\[?(\w+)\]?\s*(?:\(\s*([^)]*?)\s*\))?([\s\S]*)$)");
    static const std::regex kCollate(R"(\bcollate\s+(\w+))", std::regex::icase);
    std::string rewritten = createTable.substr(0, open + 1);
    bool first = true;
    for (const std::string& part : SplitList(std::string_view(createTable).substr(open + 1, close - open - 1))) {
        std::smatch match;
        if (!std::regex_match(part, match, kColumn)) throw SqlFailure{102, "Incorrect syntax near '" + part + "'."};
        const std::string word = AsciiLower(match[2].str());
        const auto type = ReadType(word, AsciiLower(match[3].str()));
        if (!type) throw SqlFailure{2715, "Cannot find data type " + word + "."};
        std::string name = match[1].str();
        std::string bare = name.front() == '[' ? name.substr(1, name.size() - 2) : name;
        // The declared "type" is the affinity followed by the real one; SQLite takes any words there.
        const std::string numbers =
            std::to_string(type->size) + "," + std::to_string(type->precision) + "," + std::to_string(type->scale);
        std::string rest = match[4].str(), collation;
        if (std::smatch named; std::regex_search(rest, named, kCollate)) {
            collation = named[1].str();
            if (FindCollation(collation) == nullptr) throw SqlFailure{448, "Invalid collation '" + collation + "'."};
            rest = named.prefix().str() + named.suffix().str();
        }
        if (!first) rewritten += ",";
        rewritten.append(name).append(" \"").append(AffinityOf(*type)).append(" ").append(word).append(" ");
        rewritten.append(numbers).append(" ").append(collation).append("\" ").append(rest);
        rewritten.append(" CHECK (tds_fits(").append(name).append(",").append(Quoted(bare)).append(",'").append(word);
        rewritten.append("',").append(numbers).append("))");
        first = false;
    }
    return rewritten + ")";
}

TdsDatabase::Statement TdsDatabase::Prepare(const std::string& statement) {
    static const std::regex kCreate(R"(^\s*create\s+table\b)", std::regex::icase);
    const std::string text = std::regex_search(statement, kCreate)
                                 ? WithChecks(statement)
                                 : CatalogQuery(statement).value_or(WithoutNationalMarks(statement));
    if (text.find("sys.columns") != std::string::npos) Plain(kFillColumns);
    sqlite3_stmt* made = nullptr;
    if (sqlite3_prepare_v2(handle_, text.c_str(), -1, &made, nullptr) != SQLITE_OK) Fail(statement);
    return Statement(made);
}

SqlType TdsDatabase::DeclaredType(sqlite3_stmt* statement, int k, bool onRow) {
    if (const char* declared = sqlite3_column_decltype(statement, k)) return ReadDeclared(declared);
    SqlType type;
    const int kind = onRow ? sqlite3_column_type(statement, k) : SQLITE_INTEGER;
    if (kind == SQLITE_INTEGER) type.word = "int";
    if (kind == SQLITE_FLOAT) type.word = "float";
    return type;
}

std::vector<SqlColumn> TdsDatabase::ColumnsOf(sqlite3_stmt* statement, bool onRow) {
    std::vector<SqlColumn> columns;
    for (int k = 0; k < sqlite3_column_count(statement); ++k) {
        const bool computed = sqlite3_column_decltype(statement, k) == nullptr;
        columns.push_back({computed ? "" : sqlite3_column_name(statement, k), DeclaredType(statement, k, onRow), true});
    }
    return columns;
}

std::vector<SqlColumn> TdsDatabase::Describe(const std::string& statement) {
    return ColumnsOf(Prepare(statement).get(), false);
}

TdsDatabase::Statement TdsDatabase::PreparedAgain(const std::string& statement) {
    Statement last = std::move(last_);
    return last && lastText_ == statement ? std::move(last) : Prepare(statement);
}

std::int64_t TdsDatabase::Run(const std::string& statement, const NamedCells& parameters, const Answer& answer) {
    Statement prepared = PreparedAgain(statement);
    for (const auto& [name, cell] : parameters) {
        const int at = sqlite3_bind_parameter_index(prepared.get(), name.c_str());
        if (at > 0) Bind(prepared.get(), at, cell);
    }
    std::int64_t rows = 0;
    std::vector<Cell> cells(static_cast<std::size_t>(sqlite3_column_count(prepared.get())));
    for (int outcome = sqlite3_step(prepared.get());; outcome = sqlite3_step(prepared.get()), ++rows) {
        if (outcome != SQLITE_ROW && outcome != SQLITE_DONE) Fail(statement);
        if (rows == 0 && !cells.empty()) answer.describe(ColumnsOf(prepared.get(), outcome == SQLITE_ROW));
        if (outcome == SQLITE_DONE) break;
        for (std::size_t k = 0; k < cells.size(); ++k)
            cells[k] = CellOf(sqlite3_column_value(prepared.get(), static_cast<int>(k)));
        answer.row(cells);
    }
    if (!cells.empty()) return rows;
    sqlite3_reset(prepared.get());
    sqlite3_clear_bindings(prepared.get());
    lastText_ = statement;
    last_ = std::move(prepared);
    return sqlite3_changes64(handle_);
}

void TdsDatabase::Fail(const std::string& statement) {
    const std::string text = sqlite3_errmsg(handle_);
    const int code = sqlite3_extended_errcode(handle_);
    const auto after = [&](std::string_view start) -> std::optional<std::string> {
        return text.compare(0, start.size(), start) == 0 ? std::optional(text.substr(start.size())) : std::nullopt;
    };
    if (code == SQLITE_CONSTRAINT_CHECK) throw misfit_;
    if (code == SQLITE_CONSTRAINT_PRIMARYKEY || code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_ROWID)
        throw SqlFailure{2627, "Violation of UNIQUE KEY constraint. Cannot insert duplicate key in object 'dbo'."};
    if (const auto column = after("NOT NULL constraint failed: "))
        throw SqlFailure{515,
                         "Cannot insert the value NULL into column '" + *column + "'; column does not allow nulls."};
    if (const auto table = after("no such table: ")) {
        const bool drop = AsciiLower(statement).find("drop") == 0;
        if (drop) throw SqlFailure{3701, "Cannot drop the table '" + *table + "', because it does not exist."};
        throw SqlFailure{208, "Invalid object name '" + *table + "'."};
    }
    if (const auto column = after("no such column: ")) throw SqlFailure{207, "Invalid column name '" + *column + "'."};
    if (text.find("already exists") != std::string::npos)
        throw SqlFailure{2714, "There is already an object of that name in the database: " + text};
    throw SqlFailure{102, "Incorrect syntax: " + text};
}

}  // namespace varnel::tds
