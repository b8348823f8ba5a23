// What a database of one sort has to offer: the interface between the data layer's objects and the providers.
// A provider is chosen by the connection string; it opens sessions; a session runs queries and statements.
// All objects are used by one thread. Everything throws Error.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Catalog.h"
#include "ado/types/Column.h"
#include "ado/types/ConnectionString.h"
#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"
#include "platform/Error.h"

namespace varnel {

/// The rows of one query: forward only, streamed, in a bounded block. They are the rows that existed when the query
/// was run, whatever is written meanwhile. Ends (releasing locks and the wire) when destroyed, at its last row, or by
/// an error.
class RowReader {
public:
    virtual ~RowReader() = default;
    virtual const std::vector<ColumnInfo>& Columns() const = 0;
    /// Fills row (one Value per column) with the next row and returns true, or returns false after the last one.
    /// A single cell that cannot be read becomes a Failure value; anything worse throws, and ends the rows.
    virtual bool Next(std::span<Value> row) = 0;
};

/// Gets the outcome of one row that was sent with others: null when it is stored. May throw; the rows behind it are
/// then neither sent one by one nor counted.
using RowOutcome = std::function<void(const Error*)>;

/// A statement with parameter markers, run once per row.
class PreparedStatement {
public:
    virtual ~PreparedStatement() = default;
    /// parameters: one value per marker. Throws when the database refuses; nothing of this call is stored then.
    virtual void Execute(std::span<const Value> parameters) = 0;
    /// A commit point: what was executed survives the end of the process. Nothing to do where every Execute is one.
    virtual void Commit() {}
    /// How many rows can be put aside and sent together; 0 when each is to be executed by itself.
    virtual std::size_t QueueLimit() const { return 0; }
    /// Puts a row aside. Throws for a value that its parameter cannot hold; the row is then not put aside.
    virtual void Queue(std::span<const Value> parameters) { Execute(parameters); }
    /// Sends the rows put aside and tells each one's outcome in their order, as if each had been executed alone: a
    /// refused row costs no other.
    virtual void Send(const RowOutcome& outcome) { (void)outcome; }
};

/// What AddNew and Update need: inserts rows into the table that a SELECT of plain columns names.
class Appender {
public:
    virtual ~Appender() = default;
    /// The columns in the order of the SELECT.
    virtual const std::vector<ColumnInfo>& Columns() const = 0;
    /// Inserts one row. values: one per column; assigned: which of them were set, the others keep the table's defaults.
    /// Values are already converted to their columns' types. A refused row leaves no trace.
    virtual void Append(std::span<const Value> values, const std::vector<bool>& assigned) = 0;
    /// A commit point: what was appended survives the end of the process. Destroying the appender tries the same but
    /// cannot report a failure.
    virtual void Commit() = 0;
    /// Rows put aside and sent together, as in PreparedStatement; all of them set the same columns.
    virtual std::size_t QueueLimit() const { return 0; }
    virtual void Queue(std::span<const Value> values, const std::vector<bool>& assigned) { Append(values, assigned); }
    virtual void Send(const RowOutcome& outcome) { (void)outcome; }
};

/// The type, size and digits of one parameter, as the caller described it.
struct ParameterInfo {
    DataTypeEnum type = adVarWChar;
    std::int64_t size = 0;
    std::uint8_t precision = kNotStated;
    std::uint8_t numericScale = kNotStated;
};

/// One log-in (or one open file). At most one RowReader of a session is read at a time; statements may be executed
/// while it is open only where the provider says so.
class ProviderSession {
public:
    virtual ~ProviderSession() = default;
    /// Runs a statement that returns rows; null when it returned none (an UPDATE, say).
    virtual std::unique_ptr<RowReader> Query(const std::string& statement) = 0;
    /// Runs a statement and drops whatever rows it returns.
    virtual void Execute(const std::string& statement) = 0;
    /// Starts a statement without waiting for its outcome, where the provider can; FinishExecute waits for it and
    /// throws its failure. Nothing else may run on the session in between. By default it simply runs.
    virtual void StartExecute(const std::string& statement) { Execute(statement); }
    virtual void FinishExecute() {}
    virtual std::unique_ptr<PreparedStatement> Prepare(const std::string& statement,
                                                       std::span<const ParameterInfo> parameters) = 0;
    /// selectStatement: "SELECT columns FROM table". Reads no rows.
    virtual std::unique_ptr<Appender> OpenAppender(const std::string& selectStatement) = 0;
    /// The tables and views that can be read, without the system's own, by owner and name.
    virtual std::vector<TableInfo> Tables() = 0;
    /// The columns of a table or view in their order. owner: "" for the one that a plain name means.
    /// Throws in the database's words when there is no such table.
    virtual std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) = 0;
    /// Makes an idle session as it was after log-in (nothing open, no transaction, settings of the log-in), ready for
    /// the pool. False when it cannot be used again. Never throws.
    virtual bool Reset() noexcept = 0;
    /// Asks the other side whether an idle session still lives. Never throws.
    virtual bool Alive() noexcept = 0;
};

class Provider {
public:
    virtual ~Provider() = default;
    /// True when the connection string is this provider's to open. Must not touch a file or a server.
    virtual bool Accepts(const ConnectionString& text) const = 0;
    virtual std::unique_ptr<ProviderSession> Open(const ConnectionString& text) const = 0;
};

}  // namespace varnel
