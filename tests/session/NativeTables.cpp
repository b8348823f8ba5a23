#include "tests/session/NativeTables.h"

#include <mysql.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <stdexcept>

namespace varnel {

namespace {

template <class Number>
std::string Plain(Number number) {
    std::array<char, 512> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed).ptr;
    return {digits.data(), end};
}

std::string WithoutTrailingZeros(std::string digits) {
    if (digits.find('.') == std::string::npos) return digits;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
}

/// A moment as a database wrote it, a date alone as its midnight.
std::string WholeMoment(std::string text) {
    return text.size() == 10 ? text + " 00:00:00" : WithoutTrailingZeros(std::move(text));
}

std::string Hex(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

std::string NameList(const std::vector<NativeColumn>& columns, const char* quote) {
    std::string list;
    for (const NativeColumn& column : columns) list += (list.empty() ? "" : ",") + (quote + column.name + quote);
    return list;
}

std::string Shown(const Cell& cell, CellForm form) {
    if (!cell) return "NULL";
    return form == CellForm::Bytes ? "x'" + Hex(*cell) + "'" : "'" + *cell + "'";
}

}  // namespace

std::string PlainDigits(double number) {
    return Plain(number);
}
std::string PlainDigits(float number) {
    return Plain(number);
}

NativeSqlite::NativeSqlite(const std::string& path, bool numbersAsText)
    : database_(nullptr, &sqlite3_close), numbersAsText_(numbersAsText) {
    sqlite3* database = nullptr;
    const int code = sqlite3_open(path.c_str(), &database);
    database_.reset(database);
    if (code != SQLITE_OK) Fail();
    sqlite3_busy_timeout(database, 10'000);
}

void NativeSqlite::Fail() {
    throw std::runtime_error(sqlite3_errmsg(database_.get()));
}

void NativeSqlite::Run(const std::vector<std::string>& statements) {
    for (const std::string& statement : statements) {
        if (sqlite3_exec(database_.get(), statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
    }
}

NativeSqlite::Statement NativeSqlite::Prepare(const std::string& query) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(database_.get(), query.c_str(), -1, &statement, nullptr);
    Statement owned(statement, &sqlite3_finalize);
    if (code != SQLITE_OK) Fail();
    return owned;
}

namespace {

/// Digits that a column of numbers would keep exactly; longer ones are stored as a blob of digits.
void BindNumber(sqlite3_stmt* statement, int at, const std::string& digits) {
    constexpr std::size_t kSurelyKept = 16;  // with the point
    std::int64_t whole = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), whole);
    if (read.ec == std::errc() && read.ptr == digits.data() + digits.size()) {
        sqlite3_bind_int64(statement, at, whole);
    } else if (digits.size() <= kSurelyKept) {
        sqlite3_bind_double(statement, at, std::strtod(digits.c_str(), nullptr));
    } else {
        sqlite3_bind_blob(statement, at, digits.data(), static_cast<int>(digits.size()), SQLITE_STATIC);
    }
}

void BindCell(sqlite3_stmt* statement, int at, CellForm form, const Cell& cell) {
    if (!cell) {
        sqlite3_bind_null(statement, at);
        return;
    }
    const auto size = static_cast<int>(cell->size());
    switch (form) {
        case CellForm::Number:
            return BindNumber(statement, at, *cell);
        case CellForm::Double:
            sqlite3_bind_double(statement, at, std::strtod(cell->c_str(), nullptr));
            return;
        case CellForm::Single:
            sqlite3_bind_double(statement, at, static_cast<double>(std::strtof(cell->c_str(), nullptr)));
            return;
        case CellForm::Bytes:
            sqlite3_bind_blob(statement, at, cell->data(), size, SQLITE_STATIC);
            return;
        case CellForm::Text:
        case CellForm::Moment:
            sqlite3_bind_text(statement, at, cell->data(), size, SQLITE_STATIC);
    }
}

Cell SqliteNumber(sqlite3_stmt* statement, int at, CellForm form, std::string stored, bool numbersAsText) {
    switch (sqlite3_column_type(statement, at)) {
        case SQLITE_INTEGER:
        case SQLITE_BLOB:
            return stored;
        case SQLITE_FLOAT: {
            const double number = sqlite3_column_double(statement, at);
            return form == CellForm::Single ? Plain(static_cast<float>(number)) : Plain(number);
        }
        default:
            return numbersAsText ? WithoutTrailingZeros(stored) : "stored as text: " + stored;
    }
}

Cell SqliteCell(sqlite3_stmt* statement, int at, CellForm form, bool numbersAsText) {
    const int storage = sqlite3_column_type(statement, at);
    if (storage == SQLITE_NULL) return std::nullopt;
    const auto* bytes = storage == SQLITE_BLOB ? static_cast<const char*>(sqlite3_column_blob(statement, at))
                                               : reinterpret_cast<const char*>(sqlite3_column_text(statement, at));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, at));
    std::string stored = bytes == nullptr ? std::string() : std::string(bytes, size);
    if (form == CellForm::Text && storage != SQLITE_TEXT) return "not stored as text: " + stored;
    if (form == CellForm::Bytes && storage != SQLITE_BLOB) return "not stored as bytes: " + stored;
    if (form == CellForm::Text || form == CellForm::Bytes) return stored;
    if (form == CellForm::Moment) return WholeMoment(stored);
    return SqliteNumber(statement, at, form, std::move(stored), numbersAsText);
}

}  // namespace

void NativeSqlite::Insert(const std::string& table, const std::vector<NativeColumn>& columns, const Rows& rows) {
    std::string marks;
    for (std::size_t k = 0; k < columns.size(); ++k) marks += k == 0 ? "?" : ",?";
    const Statement insert =
        Prepare("insert into \"" + table + "\" (" + NameList(columns, "\"") + ") values (" + marks + ")");
    Run({"begin"});
    for (const Row& row : rows) {
        for (std::size_t k = 0; k < columns.size(); ++k) {
            BindCell(insert.get(), static_cast<int>(k) + 1, columns[k].form, row[k]);
        }
        if (sqlite3_step(insert.get()) != SQLITE_DONE) Fail();
        sqlite3_reset(insert.get());
    }
    Run({"commit"});
}

Rows NativeSqlite::Read(const std::string& table, const std::vector<NativeColumn>& columns, const std::string& order) {
    const Statement query = Prepare("select " + NameList(columns, "\"") + " from \"" + table + "\" order by " + order);
    Rows rows;
    int code = sqlite3_step(query.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(query.get())) {
        Row& row = rows.emplace_back();
        for (std::size_t k = 0; k < columns.size(); ++k) {
            row.push_back(SqliteCell(query.get(), static_cast<int>(k), columns[k].form, numbersAsText_));
        }
    }
    if (code != SQLITE_DONE) Fail();
    return rows;
}

std::string NativeSqlite::Ask(const std::string& query) {
    const Statement statement = Prepare(query);
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) Fail();
    if (code == SQLITE_DONE) return "";
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
    return text == nullptr ? "NULL" : text;
}

NativeMySql::NativeMySql(const MariaDbServer& server, const std::string& database) : handle_(mysql_init(nullptr)) {
    mysql_options(handle_, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    if (mysql_real_connect(handle_, "localhost", "root", "", database.c_str(), 0, server.Socket().c_str(), 0) ==
        nullptr) {
        const std::string words = mysql_error(handle_);
        mysql_close(handle_);
        throw std::runtime_error(words);
    }
}

NativeMySql::~NativeMySql() {
    mysql_close(handle_);
}

void NativeMySql::Run(const std::vector<std::string>& statements) {
    for (const std::string& statement : statements) {
        if (mysql_real_query(handle_, statement.data(), statement.size()) != 0) {
            throw std::runtime_error(mysql_error(handle_));
        }
        mysql_free_result(mysql_store_result(handle_));
    }
}

namespace {

std::string MySqlLiteral(CellForm form, const Cell& cell) {
    if (!cell) return "NULL";
    switch (form) {
        case CellForm::Text:
            return "_utf8mb4 X'" + Hex(*cell) + "'";
        case CellForm::Bytes:
            return "X'" + Hex(*cell) + "'";
        case CellForm::Moment:
            return "'" + *cell + "'";
        case CellForm::Number:
            return *cell;
        case CellForm::Double:
        case CellForm::Single:
            break;
    }
    std::array<char, 64> digits;
    const double number = form == CellForm::Double ? std::strtod(cell->c_str(), nullptr)
                                                   : static_cast<double>(std::strtof(cell->c_str(), nullptr));
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::scientific).ptr;
    return {digits.data(), end};
}

Cell MySqlCell(const char* bytes, unsigned long size, CellForm form) {
    if (bytes == nullptr) return std::nullopt;
    const std::string stored(bytes, size);
    switch (form) {
        case CellForm::Number:
            if (size == 1 && stored[0] >= 0 && stored[0] < 2) return stored[0] == 1 ? "1" : "0";  // a bit
            return WithoutTrailingZeros(stored);
        case CellForm::Double:
            return Plain(std::strtod(stored.c_str(), nullptr));
        case CellForm::Single:
            return Plain(std::strtof(stored.c_str(), nullptr));
        case CellForm::Moment:
            return WholeMoment(stored);
        case CellForm::Text:
        case CellForm::Bytes:
            break;
    }
    return stored;
}

}  // namespace

void NativeMySql::Insert(const std::string& table, const std::vector<NativeColumn>& columns, const Rows& rows) {
    if (rows.empty()) return;
    std::string statement = "insert into `" + table + "` (" + NameList(columns, "`") + ") values ";
    for (const Row& row : rows) {
        statement += '(';
        for (std::size_t k = 0; k < columns.size(); ++k) statement += MySqlLiteral(columns[k].form, row[k]) + ",";
        statement.back() = ')';
        statement += ',';
    }
    statement.pop_back();
    Run({statement});
}

Rows NativeMySql::Read(const std::string& table, const std::vector<NativeColumn>& columns, const std::string& order) {
    const std::string query = "select " + NameList(columns, "`") + " from `" + table + "` order by " + order;
    if (mysql_real_query(handle_, query.data(), query.size()) != 0) throw std::runtime_error(mysql_error(handle_));
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(mysql_store_result(handle_),
                                                                          &mysql_free_result);
    Rows rows;
    while (const MYSQL_ROW cells = mysql_fetch_row(result.get())) {
        const unsigned long* sizes = mysql_fetch_lengths(result.get());
        Row& row = rows.emplace_back();
        for (std::size_t k = 0; k < columns.size(); ++k) {
            row.push_back(MySqlCell(cells[k], sizes[k], columns[k].form));
        }
    }
    return rows;
}

std::string NativeMySql::Ask(const std::string& query) {
    if (mysql_real_query(handle_, query.data(), query.size()) != 0) throw std::runtime_error(mysql_error(handle_));
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(mysql_store_result(handle_),
                                                                          &mysql_free_result);
    const MYSQL_ROW row = result ? mysql_fetch_row(result.get()) : nullptr;
    if (row == nullptr) return "";
    return row[0] == nullptr ? "NULL" : row[0];
}

std::string FirstDifference(const Rows& expected, const Rows& actual, const std::vector<NativeColumn>& columns) {
    for (std::size_t r = 0; r < expected.size() && r < actual.size(); ++r) {
        for (std::size_t k = 0; k < columns.size(); ++k) {
            if (expected[r][k] == actual[r][k]) continue;
            return "row " + std::to_string(r + 1) + ", column " + columns[k].name + ": expected " +
                   Shown(expected[r][k], columns[k].form) + ", got " + Shown(actual[r][k], columns[k].form);
        }
    }
    if (expected.size() == actual.size()) return "";
    return "expected " + std::to_string(expected.size()) + " rows, got " + std::to_string(actual.size());
}

}  // namespace varnel
