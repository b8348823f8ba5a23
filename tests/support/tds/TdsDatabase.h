// The database under the double: SQLite, with the checks that it leaves out and SQL Server's error numbers.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/tds/TdsTypes.h"

namespace varnel::tds {

/// What SQL Server would answer.
struct SqlFailure {
    int number = 0;
    std::string text;
};

using NamedCells = std::vector<std::pair<std::string, Cell>>;

class TdsDatabase {
public:
    /// file: holds the tables of the schema dbo; several objects may share it.
    explicit TdsDatabase(const std::string& file);
    ~TdsDatabase();
    TdsDatabase(const TdsDatabase&) = delete;
    TdsDatabase& operator=(const TdsDatabase&) = delete;

    struct Answer {
        /// Called once before the first row, when the statement returns rows.
        std::function<void(const std::vector<SqlColumn>&)> describe;
        std::function<void(const std::vector<Cell>&)> row;
    };
    /// Runs one statement; returns how many rows it returned or changed. Throws SqlFailure.
    std::int64_t Run(const std::string& statement, const NamedCells& parameters, const Answer& answer);
    /// The columns that a statement would return; none when it returns no rows. Throws SqlFailure.
    std::vector<SqlColumn> Describe(const std::string& statement);
    void Begin() { Plain("BEGIN IMMEDIATE"); }
    void Commit() { Plain("COMMIT"); }
    void Rollback() { Plain("ROLLBACK"); }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

    static void CheckFit(sqlite3_context* context, int count, sqlite3_value** values);
    void Plain(const char* statement);
    Statement Prepare(const std::string& statement);
    /// The statement prepared, or as it was left when it was the last one to run.
    Statement PreparedAgain(const std::string& statement);
    std::string WithChecks(const std::string& createTable);
    std::vector<SqlColumn> ColumnsOf(sqlite3_stmt* statement, bool onRow);
    SqlType DeclaredType(sqlite3_stmt* statement, int k, bool onRow);
    [[noreturn]] void Fail(const std::string& statement);

    sqlite3* handle_ = nullptr;
    std::string lastText_;
    Statement last_;     ///< the one that ran last, if it returned no rows: many more may come through it
    SqlFailure misfit_;  ///< why the check of a value failed
};

}  // namespace varnel::tds
