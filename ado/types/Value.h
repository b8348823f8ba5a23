// One database value: what a field holds and what a parameter gets. A Value keeps its text buffer when it is set
// anew, so that a row of values is filled for every row of a table without an allocation per cell.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "ado/types/Decimal.h"
#include "platform/DateTime.h"

namespace varnel {

enum class ValueKind : std::uint8_t {
    Null,
    Boolean,
    Integer,  ///< 64-bit signed
    Single,   ///< 4-byte float, kept apart because its text has fewer digits
    Double,
    Currency,  ///< 64-bit integer, the value times 10,000
    Decimal,
    DateTime,
    Text,  ///< UTF-8
    Bytes,
    Guid,    ///< 16 bytes in the order in which the text form shows them
    Failure  ///< a cell that could not be read; its text says why, and reading the field raises it
};

using GuidBytes = std::array<std::uint8_t, 16>;

class Value {
public:
    Value() = default;

    ValueKind Kind() const { return kind_; }
    bool IsNull() const { return kind_ == ValueKind::Null; }

    /// Each As… needs the matching kind and throws Error{Misuse} otherwise.
    bool AsBoolean() const { return Checked(ValueKind::Boolean).number_.boolean; }
    std::int64_t AsInteger() const { return Checked(ValueKind::Integer).number_.integer; }
    float AsSingle() const { return Checked(ValueKind::Single).number_.single; }
    double AsDouble() const { return Checked(ValueKind::Double).number_.real; }
    std::int64_t AsCurrency() const { return Checked(ValueKind::Currency).number_.integer; }
    const Decimal& AsDecimal() const { return Checked(ValueKind::Decimal).number_.decimal; }
    DateTime AsDateTime() const { return Checked(ValueKind::DateTime).number_.moment; }
    std::string_view AsText() const { return Checked(ValueKind::Text).buffer_; }
    std::span<const std::uint8_t> AsBytes() const;
    const GuidBytes& AsGuid() const { return Checked(ValueKind::Guid).number_.guid; }
    std::string_view FailureText() const { return Checked(ValueKind::Failure).buffer_; }

    void SetNull() { kind_ = ValueKind::Null; }
    void SetBoolean(bool value) { kind_ = ValueKind::Boolean, number_.boolean = value; }
    void SetInteger(std::int64_t value) { kind_ = ValueKind::Integer, number_.integer = value; }
    void SetSingle(float value) { kind_ = ValueKind::Single, number_.single = value; }
    void SetDouble(double value) { kind_ = ValueKind::Double, number_.real = value; }
    void SetCurrency(std::int64_t scaled) { kind_ = ValueKind::Currency, number_.integer = scaled; }
    void SetDecimal(const Decimal& value) { kind_ = ValueKind::Decimal, number_.decimal = value; }
    void SetDateTime(DateTime value) { kind_ = ValueKind::DateTime, number_.moment = value; }
    void SetText(std::string_view utf8) { kind_ = ValueKind::Text, buffer_.assign(utf8); }
    void SetBytes(std::span<const std::uint8_t> bytes);
    void SetGuid(const GuidBytes& value) { kind_ = ValueKind::Guid, number_.guid = value; }
    void SetFailure(std::string_view text) { kind_ = ValueKind::Failure, buffer_.assign(text); }

    /// Becomes an empty text, or empty bytes, and hands out the buffer to be filled in place.
    std::string& StartText() { return kind_ = ValueKind::Text, buffer_.clear(), buffer_; }
    std::string& StartBytes() { return kind_ = ValueKind::Bytes, buffer_.clear(), buffer_; }

    /// Same kind and same content; decimals of different scale but the same number are equal. For tests and caches.
    friend bool operator==(const Value& a, const Value& b);

    static Value OfBoolean(bool value);
    static Value OfInteger(std::int64_t value);
    static Value OfSingle(float value);
    static Value OfDouble(double value);
    static Value OfCurrency(std::int64_t scaled);
    static Value OfDecimal(std::string_view digits);
    static Value OfDateTime(DateTime value);
    static Value OfText(std::string_view utf8);
    static Value OfBytes(std::string_view bytes);
    static Value OfGuid(std::string_view braces);

private:
    const Value& Checked(ValueKind kind) const {
        if (kind_ != kind) ThrowWrongKind(kind);
        return *this;
    }
    [[noreturn]] void ThrowWrongKind(ValueKind asked) const;

    union Number {
        Number() : integer(0) {}
        bool boolean;
        std::int64_t integer;
        float single;
        double real;
        Decimal decimal;
        DateTime moment;
        GuidBytes guid;
    };
    Number number_;
    std::string buffer_;
    ValueKind kind_ = ValueKind::Null;
};

}  // namespace varnel
