// A statement with or without parameters, run any number of times.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/Parameter.h"
#include "ado/SessionLease.h"

namespace varnel {

/// The parameters of a command, in the order of the statement's markers.
class ParameterList {
public:
    /// Throws Error{Misuse} when a variable-length type has no size.
    void Append(Parameter parameter);
    std::size_t Count() const { return list_.size(); }
    /// Throws Error{Misuse} for a position that does not exist.
    Parameter& operator()(std::size_t index);

private:
    friend class Command;
    std::vector<Parameter> list_;
};

class Command {
public:
    CommandTypeEnum CommandType = adCmdUnspecified;
    std::string CommandText;
    ParameterList Parameters;

    /// Takes a log-in of the command's own. Throws Error.
    void SetActiveConnection(const std::string& connectionString);
    /// Runs CommandText with the parameters' current values. With parameters it is prepared once and prepared anew
    /// only when the text changes. A value is converted to its parameter's type; a text longer than Size is refused.
    void Execute();
    /// How many runs can be put aside and sent together; 0 when each goes by Execute. Prepares the statement.
    std::size_t QueueLimit();
    /// As Execute, but the parameters' values are only put aside.
    void Queue();
    /// Sends what was put aside and tells each run's outcome, as if each had been one Execute.
    void Send(const RowOutcome& outcome);
    /// Starts CommandText, which has no parameters, and returns before its outcome is known where the provider can.
    /// Throws what is known at once; Finish waits for the rest.
    void Start();
    /// Waits for the statement that Start began, if there is one. Throws its failure.
    void Finish();
    /// A commit point for what was executed so far. Throws Error when something of it was lost.
    void Commit();

private:
    void RequireConnection() const;
    void PrepareOnce();
    void ConvertParameters();

    std::unique_ptr<SessionLease> session_;
    std::unique_ptr<PreparedStatement> prepared_;
    std::string preparedText_;
    std::vector<Value> values_;
};

}  // namespace varnel
