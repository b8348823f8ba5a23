#include "ado/Command.h"

#include "ado/types/ValueConvert.h"
#include "platform/CodePage.h"

namespace varnel {

namespace {

bool HasVariableLength(DataTypeEnum type) {
    return IsText(type) || type == adBinary || type == adVarBinary || type == adLongVarBinary;
}

void RefuseWhenTooLong(const Value& value, const Parameter& parameter) {
    if (value.Kind() != ValueKind::Text) return;
    const std::size_t bytes = value.AsText().size();
    if (bytes <= static_cast<std::size_t>(parameter.Size)) return;  // never more characters than bytes
    const std::size_t length = CharacterCount(value.AsText());
    if (length <= static_cast<std::size_t>(parameter.Size)) return;
    throw Error(ErrorKind::Conversion, parameter.Name,
                "Application uses a value of the wrong type for the current operation: the text has " +
                    std::to_string(length) + " characters, " + std::to_string(parameter.Size) + " is the most");
}

}  // namespace

void ParameterList::Append(Parameter parameter) {
    if (HasVariableLength(parameter.Type) && parameter.Size <= 0) {
        throw Error(ErrorKind::Misuse, "",
                    "Parameter object is improperly defined. Inconsistent or incomplete information was provided.");
    }
    list_.push_back(std::move(parameter));
}

Parameter& ParameterList::operator()(std::size_t index) {
    if (index >= list_.size()) {
        throw Error(ErrorKind::Misuse, "",
                    "Item cannot be found in the collection corresponding to the requested name or ordinal: " +
                        std::to_string(index));
    }
    return list_[index];
}

void Command::SetActiveConnection(const std::string& connectionString) {
    prepared_.reset();
    session_.reset();
    session_ = std::make_unique<SessionLease>(connectionString);
}

void Command::RequireConnection() const {
    if (session_) return;
    throw Error(ErrorKind::Misuse, "",
                "The connection cannot be used to perform this operation. It is either closed or invalid in this "
                "context.");
}

void Command::Start() {
    RequireConnection();
    session_->Guarded([&](ProviderSession& session) { session.StartExecute(CommandText); });
}

void Command::Finish() {
    RequireConnection();
    session_->Guarded([&](ProviderSession& session) { session.FinishExecute(); });
}

void Command::Execute() {
    RequireConnection();
    if (Parameters.Count() == 0) {
        session_->Guarded([&](ProviderSession& session) { session.Execute(CommandText); });
        return;
    }
    PrepareOnce();
    ConvertParameters();
    session_->Guarded([&](ProviderSession&) { prepared_->Execute(values_); });
}

std::size_t Command::QueueLimit() {
    RequireConnection();
    if (Parameters.Count() == 0) return 0;
    PrepareOnce();
    return prepared_->QueueLimit();
}

void Command::Queue() {
    RequireConnection();
    PrepareOnce();
    ConvertParameters();
    session_->Guarded([&](ProviderSession&) { prepared_->Queue(values_); });
}

void Command::Send(const RowOutcome& outcome) {
    RequireConnection();
    if (prepared_) session_->Guarded([&](ProviderSession&) { prepared_->Send(outcome); });
}

void Command::Commit() {
    if (prepared_) session_->Guarded([&](ProviderSession&) { prepared_->Commit(); });
}

void Command::PrepareOnce() {
    if (prepared_ && preparedText_ == CommandText) return;
    std::vector<ParameterInfo> described;
    for (const Parameter& parameter : Parameters.list_) {
        described.push_back({parameter.Type, parameter.Size, parameter.Precision, parameter.NumericScale});
    }
    prepared_.reset();
    prepared_ = session_->Guarded([&](ProviderSession& session) { return session.Prepare(CommandText, described); });
    preparedText_ = CommandText;
    values_.resize(described.size());
}

void Command::ConvertParameters() {
    for (std::size_t k = 0; k < values_.size(); ++k) {
        const Parameter& parameter = Parameters.list_[k];
        try {
            ConvertValue(parameter.Value, parameter.Type, values_[k]);
            RefuseWhenTooLong(values_[k], parameter);
        } catch (const Error& error) {
            if (parameter.Name.empty()) throw;
            throw Error(error.kind, parameter.Name, parameter.Name + ": " + error.what());
        }
    }
}

}  // namespace varnel
