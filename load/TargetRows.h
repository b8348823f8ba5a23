// Where a transfer's rows go: parameters of a statement, or new records of a record set.
#pragma once

#include <cstddef>

#include "ado/Ado.h"

namespace varnel {

/// One row at a time is begun, filled and written. All calls throw Error.
class TargetRows {
public:
    virtual ~TargetRows() = default;
    virtual void Begin() = 0;
    /// Carries field k of SrcRs over.
    virtual void Set(std::size_t k) = 0;
    virtual void Write() = 0;
    /// Forgets a row that was begun and cannot be written.
    virtual void Drop() = 0;

    /// How many rows can be put aside and written together; 0 when each is written by itself.
    virtual std::size_t QueueLimit() = 0;
    virtual void Queue() = 0;
    virtual void Send(const RowOutcome& outcome) = 0;
};

/// Runs of a command with one parameter per source field.
class ParameterRows : public TargetRows {
public:
    explicit ParameterRows(Command& command) : command_(command) {}
    void Begin() override {}
    void Set(std::size_t k) override;
    void Write() override { command_.Execute(); }
    void Drop() override {}
    std::size_t QueueLimit() override { return command_.QueueLimit(); }
    void Queue() override { command_.Queue(); }
    void Send(const RowOutcome& outcome) override { command_.Send(outcome); }

private:
    Command& command_;
};

/// New records of DestRs. carry: the value for a target field, out of the source's (RecordValues.h).
class RecordRows : public TargetRows {
public:
    using Carry = const Value& (*)(const Field& source, const Field& target, Value& scratch);
    explicit RecordRows(Carry carry) : carry_(carry) {}
    void Begin() override;
    void Set(std::size_t k) override;
    void Write() override;
    void Drop() override;
    std::size_t QueueLimit() override;
    void Queue() override;
    void Send(const RowOutcome& outcome) override;

private:
    Carry carry_;
    Value scratch_;
};

}  // namespace varnel
