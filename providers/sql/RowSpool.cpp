#include "providers/sql/RowSpool.h"

#include "platform/Error.h"

namespace varnel::sql {
namespace {

[[noreturn]] void Broken(const char* what) {
    throw Error(ErrorKind::Io, "", std::string("The temporary file that keeps rows aside cannot be ") + what + ".");
}

std::string_view LongPart(const Value& value) {
    if (value.Kind() == ValueKind::Text) return value.AsText();
    if (value.Kind() == ValueKind::Failure) return value.FailureText();
    const auto bytes = value.AsBytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

RowSpool::RowSpool() : file_(std::tmpfile()) {
    if (!file_) Broken("made");
}

void RowSpool::Put(const void* bytes, std::size_t count) {
    if (std::fwrite(bytes, 1, count, file_.get()) != count) Broken("written");
}

void RowSpool::Get(void* bytes, std::size_t count) {
    if (std::fread(bytes, 1, count, file_.get()) != count) Broken("read");
}

void RowSpool::Add(std::span<const Value> row) {
    for (const Value& value : row) PutValue(value);
    ++written_;
}

void RowSpool::Rewind() {
    if (std::fflush(file_.get()) != 0) Broken("written");
    std::rewind(file_.get());
}

bool RowSpool::Next(std::span<Value> row) {
    if (read_ == written_) return false;
    for (Value& value : row) GetValue(value);
    ++read_;
    return true;
}

void RowSpool::PutValue(const Value& value) {
    const ValueKind kind = value.Kind();
    Put(&kind, sizeof kind);
    const auto put = [&](const auto& part) { Put(&part, sizeof part); };
    switch (kind) {
        case ValueKind::Null:
            return;
        case ValueKind::Boolean:
            return put(value.AsBoolean());
        case ValueKind::Integer:
            return put(value.AsInteger());
        case ValueKind::Single:
            return put(value.AsSingle());
        case ValueKind::Double:
            return put(value.AsDouble());
        case ValueKind::Currency:
            return put(value.AsCurrency());
        case ValueKind::Decimal:
            return put(value.AsDecimal());
        case ValueKind::DateTime:
            return put(value.AsDateTime());
        case ValueKind::Guid:
            return put(value.AsGuid());
        case ValueKind::Text:
        case ValueKind::Bytes:
        case ValueKind::Failure:
            break;
    }
    const std::string_view bytes = LongPart(value);
    put(bytes.size());
    Put(bytes.data(), bytes.size());
}

void RowSpool::GetBytes(std::string& buffer) {
    std::size_t size = 0;
    Get(&size, sizeof size);
    buffer.resize(size);
    Get(buffer.data(), size);
}

void RowSpool::GetValue(Value& value) {
    ValueKind kind = ValueKind::Null;
    Get(&kind, sizeof kind);
    const auto get = [&](auto part) { return Get(&part, sizeof part), part; };
    switch (kind) {
        case ValueKind::Null:
            return value.SetNull();
        case ValueKind::Boolean:
            return value.SetBoolean(get(false));
        case ValueKind::Integer:
            return value.SetInteger(get(std::int64_t{}));
        case ValueKind::Single:
            return value.SetSingle(get(float{}));
        case ValueKind::Double:
            return value.SetDouble(get(double{}));
        case ValueKind::Currency:
            return value.SetCurrency(get(std::int64_t{}));
        case ValueKind::Decimal:
            return value.SetDecimal(get(Decimal{}));
        case ValueKind::DateTime:
            return value.SetDateTime(get(DateTime{}));
        case ValueKind::Guid:
            return value.SetGuid(get(GuidBytes{}));
        case ValueKind::Text:
            return GetBytes(value.StartText());
        case ValueKind::Bytes:
            return GetBytes(value.StartBytes());
        case ValueKind::Failure:
            break;
    }
    std::string text;
    GetBytes(text);
    value.SetFailure(text);
}

}  // namespace varnel::sql
