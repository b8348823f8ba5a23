// A connection to a database, and the providers that can open one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/SessionLease.h"
#include "ado/types/Provider.h"

namespace varnel {

class Connection {
public:
    /// Accepted and kept; the rows of every record set are streamed all the same.
    CursorLocationEnum CursorLocation = adUseServer;

    /// Opens by connection string, taking an idle log-in with the same string when there is one. Empty user and
    /// password count as absent; others override the string's.
    /// Throws Error: "Operation is not allowed when the object is open.", the string's syntax, or the provider's words.
    void Open(const std::string& connectionString, const std::string& user = "", const std::string& password = "",
              int options = -1);
    /// Runs a statement; rows that it returns are dropped.
    void Execute(const std::string& statement);
    /// What OpenSchema tells in ADO; see ProviderSession.
    std::vector<TableInfo> Tables() const;
    std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) const;
    /// Gives the log-in back once the last record set opened through this connection is closed.
    /// Throws Error{Misuse} when the connection is closed.
    void Close();
    bool IsOpen() const { return session_ != nullptr; }

    /// The log-in itself, shared with the record sets opened through this connection. Throws when closed.
    const std::shared_ptr<SessionLease>& Session() const;

private:
    std::shared_ptr<SessionLease> session_;
};

}  // namespace varnel
