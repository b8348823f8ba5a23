#include "providers/mysql/MySqlDecoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace varnel::mysql {
namespace {

/// Bounds of a text cell's own buffer, in bytes.
constexpr std::uint64_t kLeastBuffer = 96;
constexpr std::uint64_t kLargestBuffer = 8192;
constexpr unsigned kHoursPerDay = 24;
/// What a date of zeros becomes when it is not Null: the first year that an automation date can hold.
constexpr int kMinimumYear = 100;

enum_field_types WireType(CellForm form) {
    switch (form) {
        case CellForm::Integer:
        case CellForm::UnsignedBig:
            return MYSQL_TYPE_LONGLONG;
        case CellForm::Single:
            return MYSQL_TYPE_FLOAT;
        case CellForm::Double:
            return MYSQL_TYPE_DOUBLE;
        case CellForm::Date:
            return MYSQL_TYPE_DATE;
        case CellForm::Time:
            return MYSQL_TYPE_TIME;
        case CellForm::DateTime:
            return MYSQL_TYPE_DATETIME;
        case CellForm::Bit:
        case CellForm::Bytes:
            return MYSQL_TYPE_BLOB;
        case CellForm::Decimal:
        case CellForm::Text:
            break;
    }
    return MYSQL_TYPE_STRING;
}

CivilTime CivilOf(const MYSQL_TIME& time) {
    CivilTime civil;
    civil.year = static_cast<int>(time.year);
    civil.month = static_cast<int>(time.month);
    civil.day = static_cast<int>(time.day);
    civil.hour = static_cast<int>(time.hour);
    civil.minute = static_cast<int>(time.minute);
    civil.second = static_cast<int>(time.second);
    civil.micros = static_cast<int>(time.second_part);
    return civil;
}

bool IsAllZero(const CivilTime& c) {
    return c.year == 0 && c.month == 0 && c.day == 0 && c.hour == 0 && c.minute == 0 && c.second == 0 && c.micros == 0;
}

std::span<const std::uint8_t> AsByteSpan(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The digits of text without its trailing zeros after the point.
std::string_view WithoutTrailingZeros(std::string_view text) {
    if (text.find('.') == std::string_view::npos) return text;
    while (text.back() == '0') text.remove_suffix(1);
    if (text.back() == '.') text.remove_suffix(1);
    return text;
}

}  // namespace

bool ReadServerDecimal(std::string_view text, Decimal& number) {
    if (text.size() > kMaxDecimalDigits) text = WithoutTrailingZeros(text);
    const bool negative = !text.empty() && text[0] == '-';
    UInt128 magnitude = 0;
    int digits = 0, scale = 0;
    bool afterPoint = false;
    for (std::size_t at = negative ? 1 : 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '.' && !afterPoint) {
            afterPoint = true;
            continue;
        }
        if (c < '0' || c > '9') return false;
        if (digits > 0 || c != '0') ++digits;
        if (afterPoint) ++scale;
        if (digits > kMaxDecimalDigits || scale > kMaxDecimalDigits) return false;
        magnitude = magnitude * 10 + static_cast<unsigned>(c - '0');
    }
    if (text.size() == (negative ? 1U : 0U)) return false;
    number.magnitude = magnitude;
    number.scale = static_cast<std::uint8_t>(scale);
    number.negative = negative && magnitude != 0;
    return true;
}

CellDecoder::CellDecoder(const MySqlColumn& column, bool zeroDateToMinimum)
    : name_(column.info.name), form_(column.form), zeroDateToMinimum_(zeroDateToMinimum) {
    if (WireType(form_) == MYSQL_TYPE_STRING || WireType(form_) == MYSQL_TYPE_BLOB)
        buffer_.resize(std::clamp(column.wireBytes, kLeastBuffer, kLargestBuffer));
}

void CellDecoder::Bind(MYSQL_BIND& bind) {
    std::memset(&bind, 0, sizeof bind);
    bind.buffer_type = WireType(form_);
    bind.length = &length_;
    bind.is_null = &isNull_;
    bind.error = &cut_;
    bind.is_unsigned = form_ == CellForm::UnsignedBig ? 1 : 0;
    switch (bind.buffer_type) {
        case MYSQL_TYPE_LONGLONG:
            bind.buffer = &integer_;
            break;
        case MYSQL_TYPE_FLOAT:
            bind.buffer = &single_;
            break;
        case MYSQL_TYPE_DOUBLE:
            bind.buffer = &real_;
            break;
        case MYSQL_TYPE_DATE:
        case MYSQL_TYPE_TIME:
        case MYSQL_TYPE_DATETIME:
            bind.buffer = &moment_;
            break;
        default:
            bind.buffer = buffer_.data(), bind.buffer_length = buffer_.size();
    }
}

bool CellDecoder::Decode(MYSQL_STMT* statement, unsigned column, Value& value) {
    if (isNull_ != 0) return value.SetNull(), true;
    switch (form_) {
        case CellForm::Integer:
            value.SetInteger(integer_);
            break;
        case CellForm::UnsignedBig:
            DecodeUnsigned(value);
            break;
        case CellForm::Single:
            value.SetSingle(single_);
            break;
        case CellForm::Double:
            value.SetDouble(real_);
            break;
        case CellForm::Bit:
            value.SetBoolean(length_ > 0 && buffer_[0] != 0);
            break;
        case CellForm::Decimal:
            DecodeDecimal(value);
            break;
        case CellForm::Date:
        case CellForm::DateTime:
            DecodeMoment(value);
            break;
        case CellForm::Time:
            DecodeTime(value);
            break;
        case CellForm::Text:
            if (length_ > buffer_.size()) return DecodeLong(statement, column, value);
            value.SetText(Buffered());
            break;
        case CellForm::Bytes:
            if (length_ > buffer_.size()) return DecodeLong(statement, column, value);
            value.SetBytes(AsByteSpan(Buffered()));
            break;
    }
    return true;
}

void CellDecoder::DecodeUnsigned(Value& value) const {
    Decimal number;
    number.magnitude = static_cast<std::uint64_t>(integer_);
    value.SetDecimal(number);
}

void CellDecoder::DecodeDecimal(Value& value) const {
    Decimal number;
    if (length_ <= buffer_.size() && ReadServerDecimal(Buffered(), number)) return value.SetDecimal(number);
    const auto shown = Buffered().substr(0, buffer_.size());
    value.SetFailure(
        fmt::format("The number {} in column '{}' has more than {} digits", shown, name_, kMaxDecimalDigits));
}

void CellDecoder::DecodeMoment(Value& value) const {
    CivilTime civil = CivilOf(moment_);
    if (IsAllZero(civil) && !zeroDateToMinimum_) return value.SetNull();
    if (zeroDateToMinimum_) {
        if (civil.year == 0) civil.year = kMinimumYear;
        civil.month = std::max(civil.month, 1);
        civil.day = std::max(civil.day, 1);
    }
    if (IsRealCivil(civil)) return value.SetDateTime(FromCivil(civil));
    value.SetFailure(fmt::format("The value {:04}-{:02}-{:02} in column '{}' is not a date", civil.year, civil.month,
                                 civil.day, name_));
}

void CellDecoder::DecodeTime(Value& value) const {
    const unsigned hours = moment_.day * kHoursPerDay + moment_.hour;
    if (moment_.neg == 0 && hours < kHoursPerDay) {
        const std::int64_t seconds = (hours * 60 + moment_.minute) * 60 + moment_.second;
        return value.SetDateTime({0, seconds * kMicrosPerSecond + static_cast<std::int64_t>(moment_.second_part)});
    }
    value.SetFailure(fmt::format("The time {}{:02}:{:02}:{:02} in column '{}' is not a time of day",
                                 moment_.neg != 0 ? "-" : "", hours, moment_.minute, moment_.second, name_));
}

bool CellDecoder::DecodeLong(MYSQL_STMT* statement, unsigned column, Value& value) {
    std::string& whole = form_ == CellForm::Text ? value.StartText() : value.StartBytes();
    whole.resize(length_);
    unsigned long length = 0;
    my_bool isNull = 0, cut = 0;
    MYSQL_BIND bind{};
    bind.buffer_type = WireType(form_);
    bind.buffer = whole.data();
    bind.buffer_length = whole.size();
    bind.length = &length;
    bind.is_null = &isNull;
    bind.error = &cut;
    return mysql_stmt_fetch_column(statement, &bind, column, 0) == 0 && length == whole.size();
}

}  // namespace varnel::mysql
