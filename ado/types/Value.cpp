#include "ado/types/Value.h"

#include <type_traits>

#include "ado/types/ValueText.h"
#include "platform/Error.h"

namespace varnel {
namespace {

template <class Content>
Value Made(void (Value::*set)(Content), const std::type_identity_t<Content>& content) {
    Value made;
    (made.*set)(content);
    return made;
}

const char* KindName(ValueKind kind) {
    switch (kind) {
        case ValueKind::Null:
            return "Null";
        case ValueKind::Boolean:
            return "Boolean";
        case ValueKind::Integer:
            return "Integer";
        case ValueKind::Single:
            return "Single";
        case ValueKind::Double:
            return "Double";
        case ValueKind::Currency:
            return "Currency";
        case ValueKind::Decimal:
            return "Decimal";
        case ValueKind::DateTime:
            return "DateTime";
        case ValueKind::Text:
            return "Text";
        case ValueKind::Bytes:
            return "Bytes";
        case ValueKind::Guid:
            return "Guid";
        case ValueKind::Failure:
            return "Failure";
    }
    return "unknown";
}

}  // namespace

void Value::ThrowWrongKind(ValueKind asked) const {
    throw Error(ErrorKind::Misuse, "",
                std::string("A value of kind ") + KindName(kind_) + " was read as " + KindName(asked));
}

std::span<const std::uint8_t> Value::AsBytes() const {
    const std::string& bytes = Checked(ValueKind::Bytes).buffer_;
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

void Value::SetBytes(std::span<const std::uint8_t> bytes) {
    kind_ = ValueKind::Bytes;
    buffer_.assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

bool operator==(const Value& a, const Value& b) {
    if (a.kind_ != b.kind_) return false;
    switch (a.kind_) {
        case ValueKind::Null:
            return true;
        case ValueKind::Boolean:
            return a.number_.boolean == b.number_.boolean;
        case ValueKind::Integer:
        case ValueKind::Currency:
            return a.number_.integer == b.number_.integer;
        case ValueKind::Single:
            return a.number_.single == b.number_.single;
        case ValueKind::Double:
            return a.number_.real == b.number_.real;
        case ValueKind::Decimal:
            return a.number_.decimal == b.number_.decimal;
        case ValueKind::DateTime:
            return a.number_.moment == b.number_.moment;
        case ValueKind::Guid:
            return a.number_.guid == b.number_.guid;
        case ValueKind::Text:
        case ValueKind::Bytes:
        case ValueKind::Failure:
            return a.buffer_ == b.buffer_;
    }
    return false;
}

Value Value::OfBoolean(bool value) {
    return Made(&Value::SetBoolean, value);
}

Value Value::OfInteger(std::int64_t value) {
    return Made(&Value::SetInteger, value);
}

Value Value::OfSingle(float value) {
    return Made(&Value::SetSingle, value);
}

Value Value::OfDouble(double value) {
    return Made(&Value::SetDouble, value);
}

Value Value::OfCurrency(std::int64_t scaled) {
    return Made(&Value::SetCurrency, scaled);
}

Value Value::OfDecimal(std::string_view digits) {
    varnel::Decimal number;
    if (!ParseDecimal(digits, number)) {
        throw Error(ErrorKind::Conversion, "", "Type mismatch: '" + std::string(digits) + "' is no decimal number");
    }
    return Made(&Value::SetDecimal, number);
}

Value Value::OfDateTime(DateTime value) {
    return Made(&Value::SetDateTime, value);
}

Value Value::OfText(std::string_view utf8) {
    return Made(&Value::SetText, utf8);
}

Value Value::OfBytes(std::string_view bytes) {
    Value made;
    made.StartBytes().assign(bytes);
    return made;
}

Value Value::OfGuid(std::string_view braces) {
    GuidBytes guid{};
    if (!ParseGuid(braces, guid)) {
        throw Error(ErrorKind::Conversion, "", "Type mismatch: '" + std::string(braces) + "' is no GUID");
    }
    return Made(&Value::SetGuid, guid);
}

}  // namespace varnel
