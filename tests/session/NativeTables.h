// Tables written and read through the databases' own libraries, so that a fault of the data layer on the way in cannot
// hide behind the same fault on the way out.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/MariaDbServer.h"

struct st_mysql;

namespace varnel {

/// How a cell is compared.
enum class CellForm {
    Number,  ///< all digits, plain, without trailing zeros: "-0.0001"
    Double,  ///< a number that a database reads as a floating-point one; compared as Number
    Single,  ///< the same with the fewer digits of a 4-byte float
    Text,    ///< the text itself, UTF-8
    Bytes,   ///< the bytes themselves
    Moment   ///< "2003-07-15 13:05:09", with a fraction only when there is one
};

/// Nothing is Null.
using Cell = std::optional<std::string>;
using Row = std::vector<Cell>;
using Rows = std::vector<Row>;

struct NativeColumn {
    std::string name;
    CellForm form;
};

/// The content of a number's cell: the shortest digits that read back as the same number, in plain notation.
std::string PlainDigits(double number);
std::string PlainDigits(float number);

/// A database as its own library sees it.
class NativeDatabase {
public:
    virtual ~NativeDatabase() = default;
    /// Runs statements in their order. Throws std::runtime_error with the library's words.
    virtual void Run(const std::vector<std::string>& statements) = 0;
    /// Adds rows to a table in one transaction.
    virtual void Insert(const std::string& table, const std::vector<NativeColumn>& columns, const Rows& rows) = 0;
    /// The columns of a table, rows in the order of the columns named in order (as SQL writes them).
    virtual Rows Read(const std::string& table, const std::vector<NativeColumn>& columns, const std::string& order) = 0;
    /// The first column of the first row; "NULL" for Null, "" without a row.
    virtual std::string Ask(const std::string& query) = 0;
    std::int64_t Count(const std::string& table) { return std::stoll(Ask("select count(*) from " + table)); }
};

class NativeSqlite : public NativeDatabase {
public:
    /// Opens the file, or makes it. Waits up to ten seconds for others.
    /// numbersAsText: numbers are kept as text there by rule.
    explicit NativeSqlite(const std::string& path, bool numbersAsText = false);
    void Run(const std::vector<std::string>& statements) override;
    void Insert(const std::string& table, const std::vector<NativeColumn>& columns, const Rows& rows) override;
    Rows Read(const std::string& table, const std::vector<NativeColumn>& columns, const std::string& order) override;
    std::string Ask(const std::string& query) override;

private:
    using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
    Statement Prepare(const std::string& query);
    [[noreturn]] void Fail();

    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_;
    bool numbersAsText_;
};

/// Logged in as the server's root.
class NativeMySql : public NativeDatabase {
public:
    explicit NativeMySql(const MariaDbServer& server, const std::string& database = "shop");
    ~NativeMySql() override;
    void Run(const std::vector<std::string>& statements) override;
    void Insert(const std::string& table, const std::vector<NativeColumn>& columns, const Rows& rows) override;
    Rows Read(const std::string& table, const std::vector<NativeColumn>& columns, const std::string& order) override;
    std::string Ask(const std::string& query) override;

private:
    st_mysql* handle_;
};

/// "" when both are equal, else the first row and column that differ, with both values.
std::string FirstDifference(const Rows& expected, const Rows& actual, const std::vector<NativeColumn>& columns);

}  // namespace varnel
