#include "tests/providers_sql/SqlTestDatabase.h"

#include <gtest/gtest.h>

#include "ado/types/ValueText.h"
#include "providers/sql/SqliteHandle.h"

namespace varnel {
namespace {

sql::Database OpenRaw(const std::string& path) {
    sqlite3* raw = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    sqlite3_busy_timeout(raw, 20'000);
    return sql::Database(raw);
}

}  // namespace

std::unique_ptr<ProviderSession> OpenSession(const std::string& connection) {
    EXPECT_TRUE(SqlProvider().Accepts(ConnectionString(connection))) << connection;
    return SqlProvider().Open(ConnectionString(connection));
}

SqlTestDatabase::SqlTestDatabase()
    : path_(folder_.File("test.db")), session_(OpenSession(Connection() + ";Mode=ReadWriteCreate")) {}

std::string SqlTestDatabase::AskOn(ProviderSession& session, const std::string& query) {
    const auto rows = session.Query(query);
    std::vector<Value> row(rows->Columns().size());
    std::string text;
    while (rows->Next(row)) {
        if (!text.empty()) text += ";";
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0) text += "|";
            if (row[i].Kind() == ValueKind::Failure)
                text += "FAILURE " + std::string(row[i].FailureText());
            else
                text += row[i].IsNull() ? "NULL" : DefaultText(row[i]);
        }
    }
    return text;
}

Value SqlTestDatabase::First(const std::string& query) {
    const auto rows = session_->Query(query);
    std::vector<Value> row(rows->Columns().size());
    EXPECT_TRUE(rows->Next(row));
    return row.at(0);
}

void SqlTestDatabase::RunRaw(const std::string& sql) const {
    const sql::Database raw = OpenRaw(path_);
    EXPECT_EQ(sqlite3_exec(raw.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(raw.get());
}

std::string SqlTestDatabase::AskRaw(const std::string& sql) const {
    const sql::Database raw = OpenRaw(path_);
    const sql::Statement statement = sql::PrepareStatement(raw.get(), sql, path_);
    if (sqlite3_step(statement.get()) != SQLITE_ROW) return "no row";
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
    return text == nullptr ? "" : text;
}

void SqlTestDatabase::Append(const std::string& select, const std::vector<Value>& row) {
    const auto appender = session_->OpenAppender(select);
    appender->Append(row, std::vector<bool>(row.size(), true));
    appender->Commit();
}

}  // namespace varnel
