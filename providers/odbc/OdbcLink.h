// One log-in through the driver manager: owner of the connection, of its one open result, of every failure's text.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "providers/odbc/ConnectionText.h"
#include "providers/odbc/OdbcHandles.h"

namespace varnel::odbc {

class OdbcLink {
public:
    /// Logs in. Throws Error{Connection} with the driver's own text, without any password.
    explicit OdbcLink(const ConnectionString& stored);
    ~OdbcLink();
    OdbcLink(const OdbcLink&) = delete;
    OdbcLink& operator=(const OdbcLink&) = delete;

    const ConnectionText& Text() const { return text_; }
    /// True when the driver never frees the moments that it was given in arrays: they are sent as texts then.
    bool KeepsMoments() const { return keepsMoments_; }
    /// Throws Error{Connection} when the link is down, Error{Misuse} while the rows of a query are still being read on
    /// a driver that bears one result only.
    SQLHDBC Ready();
    StatementHandle NewStatement();
    /// Runs one statement and drops the rows it returns; returns whether there were any columns.
    bool Run(const std::string& statement);

    void BeginStream() { streaming_ = true; }
    void EndStream() { streaming_ = false; }
    bool Alive() noexcept;
    /// True when nothing of the log-in was changed and it may be used again.
    bool Reset() noexcept { return !down_ && !streaming_ && Alive(); }

    /// The statement's last failure. The link counts as down when it says so.
    [[noreturn]] void Fail(const StatementHandle& statement);
    /// Throws unless the call succeeded; no data is success.
    void Check(SQLRETURN outcome, const StatementHandle& statement) {
        if (!SQL_SUCCEEDED(outcome) && outcome != SQL_NO_DATA) Fail(statement);
    }
    /// Autocommit off, until Commit or Rollback puts it on again. Throw Error.
    void Begin();
    void Commit();
    void Rollback() noexcept;

private:
    [[noreturn]] void FailWith(SQLSMALLINT sort, SQLHANDLE handle);
    void LogIn();
    bool SwitchAutocommit(bool on) noexcept;

    ConnectionString stored_;
    ConnectionText text_;
    ConnectionHandle connection_;
    bool oneResultOnly_ = false;
    bool loggedIn_ = false;
    bool down_ = false;
    bool streaming_ = false;
    bool keepsMoments_ = false;
};

}  // namespace varnel::odbc
