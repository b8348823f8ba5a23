// The rows of a query, read forward, and new rows for a table.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ado/Connection.h"
#include "ado/Field.h"
#include "ado/SessionLease.h"
#include "ado/types/Provider.h"

namespace varnel {

/// A record set is a stable forward read of the rows that existed when it was opened; cursor types are accepted and
/// all mean that. Opened with a lock type other than read-only it also takes new rows: AddNew, Fields(k).SetValue,
/// Update. Memory is bounded by one block of rows and the largest single value.
class Recordset {
public:
    Recordset() = default;
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    /// Runs the query and stands on its first row. Throws Error; the record set is then closed.
    /// The first form takes a log-in of its own, the second one shares the connection's.
    void Open(const std::string& source, const std::string& connectionString,
              CursorTypeEnum cursorType = adOpenUnspecified, LockTypeEnum lockType = adLockUnspecified,
              int options = -1);
    void Open(const std::string& source, const Connection& connection, CursorTypeEnum cursorType = adOpenUnspecified,
              LockTypeEnum lockType = adLockUnspecified, int options = -1);
    /// Commits appended rows, drops a pending one, ends the read. Throws Error when the commit fails; closed all the
    /// same.
    void Close();
    bool IsOpen() const { return session_ != nullptr; }

    std::size_t FieldCount() const { return fields_.size(); }
    /// By position from 0, or by name without regard to case. Throws Error{Misuse} for one that does not exist.
    Field& Fields(std::size_t index);
    Field& Fields(std::string_view name);

    /// True after the last row. After a failed MoveNext it raises that failure again: a broken read is no end.
    bool Eof();
    /// Runs the query again, in the same order, and stands on the first row. Throws Error on an empty set.
    void MoveFirst();
    /// Throws Error{Misuse} at the end. A failure leaves no current row.
    void MoveNext();

    /// Starts a new record; a pending one that Update refused, or never saw, is dropped.
    void AddNew();
    /// Writes the pending record with the fields that were set. Throws Error; the record then stays pending.
    void Update();
    /// Drops the pending record; does nothing when there is none.
    void CancelUpdate();

    /// How many new records can be put aside and written together; 0 when each goes by Update.
    std::size_t QueueLimit() const { return appender_ ? appender_->QueueLimit() : 0; }
    /// As Update, but the record is only put aside; all records aside set the same fields.
    void QueueUpdate();
    /// Writes the records put aside and tells each one's outcome, as if each had been written by Update.
    void SendUpdates(const RowOutcome& outcome);

private:
    friend class Field;

    void OpenOn(std::shared_ptr<SessionLease> session, const std::string& source, LockTypeEnum lockType);
    void RunQuery();
    void RequireAdding() const;
    void Fetch();
    void ReadOnFirstUse();
    void RequireOpen() const;
    void DescribeFields(const std::vector<ColumnInfo>& columns);
    const Value& Read(std::size_t index);
    void Assign(std::size_t index, const Value& value);
    void DropEverything();

    /// NotRead: an updatable record set whose rows nobody has asked for yet.
    enum class Position { NotRead, OnRow, OnNewRow, Adding, AtEnd, Broken };

    std::shared_ptr<SessionLease> session_;
    std::shared_ptr<SessionLease> readSession_;  // a log-in of its own for the rows of an updatable record set
    std::string source_;
    std::unique_ptr<RowReader> reader_;
    std::unique_ptr<Appender> appender_;
    std::vector<Field> fields_;
    std::vector<Value> row_;
    std::vector<Value> pending_;
    std::vector<bool> assigned_;
    std::unique_ptr<Error> brokenBy_;
    Position position_ = Position::NotRead;
    Position beforeAdding_ = Position::NotRead;
};

}  // namespace varnel
