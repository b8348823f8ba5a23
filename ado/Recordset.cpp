#include "ado/Recordset.h"

#include <algorithm>

#include "ado/types/ValueConvert.h"
#include "platform/CodePage.h"

namespace varnel {

namespace {

Error NoCurrentRecord() {
    return {ErrorKind::Misuse, "",
            "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current "
            "record."};
}

Error NoSuchItem(std::string item) {
    const std::string text =
        "Item cannot be found in the collection corresponding to the requested name or ordinal: " + item;
    return {ErrorKind::Misuse, std::move(item), text};
}

}  // namespace

Recordset::~Recordset() {
    DropEverything();
}

void Recordset::Open(const std::string& source, const std::string& connectionString, CursorTypeEnum /*cursorType*/,
                     LockTypeEnum lockType, int /*options*/) {
    OpenOn(std::make_shared<SessionLease>(connectionString), source, lockType);
}

void Recordset::Open(const std::string& source, const Connection& connection, CursorTypeEnum /*cursorType*/,
                     LockTypeEnum lockType, int /*options*/) {
    OpenOn(connection.Session(), source, lockType);
}

void Recordset::OpenOn(std::shared_ptr<SessionLease> session, const std::string& source, LockTypeEnum lockType) {
    if (IsOpen()) throw Error(ErrorKind::Misuse, "", "Operation is not allowed when the object is open.");
    session_ = std::move(session);
    source_ = source;
    position_ = Position::NotRead;
    try {
        if (lockType == adLockUnspecified || lockType == adLockReadOnly) {
            readSession_ = session_;
            RunQuery();
        } else {
            appender_ = session_->Guarded([&](ProviderSession& s) { return s.OpenAppender(source_); });
            DescribeFields(appender_->Columns());
        }
    } catch (const Error&) {
        DropEverything();
        throw;
    }
}

void Recordset::RunQuery() {
    reader_.reset();
    reader_ = readSession_->Guarded([&](ProviderSession& s) { return s.Query(source_); });
    if (!reader_) return DropEverything();  // a statement without rows leaves the record set closed
    if (fields_.empty()) DescribeFields(reader_->Columns());
    row_.resize(reader_->Columns().size());
    Fetch();
}

void Recordset::Fetch() {
    try {
        const bool more = readSession_->Guarded([&](ProviderSession&) { return reader_->Next(row_); });
        position_ = more ? Position::OnRow : Position::AtEnd;
        if (!more) reader_.reset();
    } catch (const Error& error) {
        brokenBy_ = std::make_unique<Error>(error);
        position_ = Position::Broken;
        reader_.reset();
        throw;
    }
}

void Recordset::DescribeFields(const std::vector<ColumnInfo>& columns) {
    fields_.clear();
    for (std::size_t k = 0; k < columns.size(); ++k) fields_.emplace_back(*this, k, columns[k]);
    if (!appender_) return;
    pending_.resize(columns.size());
    assigned_.assign(columns.size(), false);
}

void Recordset::DropEverything() {
    reader_.reset();
    appender_.reset();
    fields_.clear();
    readSession_.reset();
    session_.reset();
    brokenBy_.reset();
}

void Recordset::Close() {
    RequireOpen();
    std::unique_ptr<Error> failure;
    try {
        if (appender_) session_->Guarded([&](ProviderSession&) { appender_->Commit(); });
    } catch (const Error& error) {
        failure = std::make_unique<Error>(error);
    }
    DropEverything();
    if (failure) throw Error(*failure);
}

void Recordset::RequireOpen() const {
    if (!IsOpen()) throw Error(ErrorKind::Misuse, "", "Operation is not allowed when the object is closed.");
}

Field& Recordset::Fields(std::size_t index) {
    if (index >= fields_.size()) throw NoSuchItem(std::to_string(index));
    return fields_[index];
}

Field& Recordset::Fields(std::string_view name) {
    const std::string folded = FoldCase(name);
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const Field& field) { return FoldCase(field.Name()) == folded; });
    if (found == fields_.end()) throw NoSuchItem(std::string(name));
    return *found;
}

void Recordset::ReadOnFirstUse() {
    RequireOpen();
    if (position_ != Position::NotRead) return;
    if (!readSession_) readSession_ = std::make_shared<SessionLease>(session_->ConnectionText());
    RunQuery();
}

bool Recordset::Eof() {
    ReadOnFirstUse();
    if (position_ == Position::Broken) throw Error(*brokenBy_);
    return position_ == Position::AtEnd;
}

void Recordset::MoveFirst() {
    RequireOpen();
    CancelUpdate();
    if (!readSession_) readSession_ = std::make_shared<SessionLease>(session_->ConnectionText());
    RunQuery();
    if (position_ == Position::AtEnd) throw NoCurrentRecord();
}

void Recordset::MoveNext() {
    CancelUpdate();
    if (Eof()) throw NoCurrentRecord();
    Fetch();
}

void Recordset::AddNew() {
    RequireOpen();
    if (!appender_) {
        throw Error(ErrorKind::Misuse, "", "Object or provider is not capable of performing requested operation.");
    }
    if (position_ != Position::Adding) beforeAdding_ = position_;
    position_ = Position::Adding;
    assigned_.assign(assigned_.size(), false);
    for (Value& value : pending_) value.SetNull();
}

void Recordset::RequireAdding() const {
    RequireOpen();
    if (position_ != Position::Adding) throw Error(ErrorKind::Misuse, "", "Operation is not allowed in this context.");
}

void Recordset::Update() {
    RequireAdding();
    session_->Guarded([&](ProviderSession&) { appender_->Append(pending_, assigned_); });
    position_ = Position::OnNewRow;
}

void Recordset::QueueUpdate() {
    RequireAdding();
    session_->Guarded([&](ProviderSession&) { appender_->Queue(pending_, assigned_); });
    position_ = Position::OnNewRow;
}

void Recordset::SendUpdates(const RowOutcome& outcome) {
    RequireOpen();
    if (appender_) session_->Guarded([&](ProviderSession&) { appender_->Send(outcome); });
}

void Recordset::CancelUpdate() {
    RequireOpen();
    if (position_ == Position::Adding || position_ == Position::OnNewRow) position_ = beforeAdding_;
}

const Value& Recordset::Read(std::size_t index) {
    if (position_ == Position::NotRead) ReadOnFirstUse();
    switch (position_) {
        case Position::Adding:
        case Position::OnNewRow:
            return pending_[index];
        case Position::Broken:
            throw Error(*brokenBy_);
        case Position::OnRow:
            break;
        default:
            throw NoCurrentRecord();
    }
    const Value& value = row_[index];
    if (value.Kind() == ValueKind::Failure) {
        throw Error(ErrorKind::Conversion, fields_[index].Name(), std::string(value.FailureText()));
    }
    return value;
}

void Recordset::Assign(std::size_t index, const Value& value) {
    if (position_ != Position::Adding) throw Error(ErrorKind::Misuse, "", "Operation is not allowed in this context.");
    try {
        ConvertValue(value, fields_[index].Type(), pending_[index]);
    } catch (const Error& error) {
        assigned_[index] = false;
        throw Error(error.kind, fields_[index].Name(), fields_[index].Name() + ": " + error.what());
    }
    assigned_[index] = true;
}

}  // namespace varnel
