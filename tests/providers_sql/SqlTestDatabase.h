// A SQLite file of one test, driven through the provider.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/SqlProvider.h"
#include "tests/support/TempFolder.h"

namespace varnel {

/// A session on the file with this connection string, which the provider must take for its own.
std::unique_ptr<ProviderSession> OpenSession(const std::string& connection);

class SqlTestDatabase {
public:
    /// Makes an empty file.
    SqlTestDatabase();

    const std::string& Path() const { return path_; }
    const TempFolder& Folder() const { return folder_; }
    ProviderSession& Session() { return *session_; }
    /// A further session on the same file.
    std::unique_ptr<ProviderSession> Another() const { return OpenSession(Connection()); }
    std::string Connection() const { return "Provider=SQLite;Data Source=" + path_; }

    void Run(const std::string& statement) { session_->Execute(statement); }
    /// The rows as default texts: values between bars, rows between semicolons, Null as NULL.
    std::string Ask(const std::string& query) { return AskOn(*session_, query); }
    static std::string AskOn(ProviderSession& session, const std::string& query);
    /// The first column of the first row.
    Value First(const std::string& query);
    /// Runs statements of SQLite itself on a connection of its own, past the dialect and the provider.
    void RunRaw(const std::string& sql) const;
    /// The first value that SQLite itself gives for a query, as text; "" for Null.
    std::string AskRaw(const std::string& sql) const;
    /// Appends one row through an appender, all columns set.
    void Append(const std::string& select, const std::vector<Value>& row);

private:
    TempFolder folder_;
    std::string path_;
    std::unique_ptr<ProviderSession> session_;
};

}  // namespace varnel
