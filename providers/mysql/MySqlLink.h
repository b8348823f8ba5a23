// One log-in to a server: owner of the client library's handle, of the session's settings and of every failure's text.
#pragma once

#include <mysql.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Error.h"
#include "providers/mysql/MySqlOptions.h"

namespace varnel::mysql {

struct CloseConnection {
    void operator()(MYSQL* handle) const noexcept { mysql_close(handle); }
};
struct CloseStatement {
    void operator()(MYSQL_STMT* statement) const noexcept { mysql_stmt_close(statement); }
};
using StatementHandle = std::unique_ptr<MYSQL_STMT, CloseStatement>;

struct FreeResult {
    void operator()(MYSQL_RES* result) const noexcept { mysql_free_result(result); }
};
using ResultHandle = std::unique_ptr<MYSQL_RES, FreeResult>;

/// Which sql_mode a statement runs under.
enum class SqlMode : std::uint8_t {
    LogIn,   ///< as the server gave it at log-in (INITSTMT included)
    Writing  ///< that, and NO_BACKSLASH_ESCAPES and strict mode: doubled quotes are all the escaping, nothing is cut
};

class MySqlLink {
public:
    /// Logs in and sets what a session needs, in one round trip after the log-in. Throws Error{Connection} with the
    /// server's or the client library's own text.
    explicit MySqlLink(const MySqlOptions& options);

    const MySqlOptions& Options() const { return options_; }
    /// Throws Error{Connection} when the link is down, Error{Misuse} while rows of a query are still being read.
    MYSQL* Ready();
    /// Runs one statement as text and drops the rows it returns; returns whether there were any columns.
    bool Run(std::string_view statement);
    /// Sends a statement without waiting for its outcome; nothing else may run until FinishRun.
    void StartRun(std::string_view statement);
    /// Waits for the outcome of a statement under way, if there is one. Throws its failure.
    void FinishRun();
    /// Prepares a statement; never null.
    StatementHandle Prepare(std::string_view statement);
    /// The statement without throwing; for tidying up.
    bool TryRun(std::string_view statement) noexcept;

    /// Changes the session's sql_mode when it is another than asked for; a run of equal statements costs nothing.
    void UseMode(SqlMode mode);
    /// The server's max_allowed_packet in bytes, asked once.
    std::uint64_t PacketLimit();
    /// True when a transaction is open, or when autocommit was switched off.
    bool InTransaction() const;
    /// Notes that a statement may have changed the session's settings, so that it never goes back to a pool.
    void NoteAltered() { altered_ = true; }

    /// Only one stream of rows at a time.
    void BeginStream() { streaming_ = true; }
    void EndStream() { streaming_ = false, discarded_.clear(); }
    /// Closes a statement; while rows of another are being read, as soon as they end, since closing reads the wire.
    void Discard(StatementHandle statement);
    /// Ends the connection at once, unread rows included.
    void Drop() noexcept;

    bool Reset() noexcept;
    bool Alive() noexcept;

    /// Throws the handle's, or the statement's, last failure.
    [[noreturn]] void Fail();
    [[noreturn]] void Fail(MYSQL_STMT* statement);
    /// Throws the failure of a stream of rows and drops the link, on which nothing can be trusted to follow.
    [[noreturn]] void FailStream(MYSQL_STMT* statement);

private:
    bool DropResults();
    void ApplyOptions();
    void LogIn();
    [[noreturn]] void FailLogIn();
    [[noreturn]] void FailWith(unsigned code, const char* text, bool drop);

    MySqlOptions options_;
    std::shared_ptr<const void> library_;  // outlives the handle
    std::unique_ptr<MYSQL, CloseConnection> handle_;
    std::vector<StatementHandle> discarded_;
    std::uint64_t packetLimit_ = 0;
    SqlMode mode_ = SqlMode::LogIn;
    bool streaming_ = false;
    bool underWay_ = false;  // a statement was sent and its outcome not yet read
    bool altered_ = false;
};

}  // namespace varnel::mysql
