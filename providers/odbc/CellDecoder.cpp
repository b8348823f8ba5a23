#include "providers/odbc/CellDecoder.h"

#include <cstring>

#include "platform/DateTime.h"

namespace varnel::odbc {
namespace {

template <typename Number>
Number As(std::span<const std::uint8_t> cell) {
    Number number{};
    std::memcpy(&number, cell.data(), sizeof number);
    return number;
}

void SetMoment(const OdbcColumn& column, const CivilTime& civil, Value& value) {
    if (!IsRealCivil(civil)) {
        value.SetFailure(column.info.name + ": the server sent a date that does not exist.");
    } else {
        value.SetDateTime(FromCivil(civil));
    }
}

void DecodeDate(const OdbcColumn& column, std::span<const std::uint8_t> cell, Value& value) {
    const auto date = As<SQL_DATE_STRUCT>(cell);
    SetMoment(column, {date.year, date.month, date.day, 0, 0, 0, 0}, value);
}

/// A time of day lies on day 0.
void DecodeTime(const OdbcColumn& column, std::span<const std::uint8_t> cell, Value& value) {
    const auto time = As<SQL_TIME_STRUCT>(cell);
    SetMoment(column, {1899, 12, 30, time.hour, time.minute, time.second, 0}, value);
}

void DecodeDateTime(const OdbcColumn& column, std::span<const std::uint8_t> cell, Value& value) {
    const auto moment = As<SQL_TIMESTAMP_STRUCT>(cell);
    constexpr SQLUINTEGER kNanosPerMicro = 1000;
    SetMoment(column,
              {moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second,
               static_cast<int>(moment.fraction / kNanosPerMicro)},
              value);
}

void DecodeGuid(std::span<const std::uint8_t> cell, Value& value) {
    const auto guid = As<SQLGUID>(cell);
    GuidBytes bytes{};
    for (int k = 0; k < 4; ++k)
        bytes[static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(guid.Data1 >> (24 - 8 * k));
    for (std::size_t k = 0; k < 2; ++k) {
        bytes[4 + k] = static_cast<std::uint8_t>(guid.Data2 >> (8 - 8 * k));
        bytes[6 + k] = static_cast<std::uint8_t>(guid.Data3 >> (8 - 8 * k));
    }
    std::memcpy(bytes.data() + 8, guid.Data4, 8);
    value.SetGuid(bytes);
}

/// Zeros behind the point that only pad are not counted among the digits.
std::string_view WithoutPadding(std::string_view digits) {
    if (digits.find('.') == std::string_view::npos || digits.find_first_of("eE") != std::string_view::npos)
        return digits;
    while (digits.back() == '0') digits.remove_suffix(1);
    if (digits.back() == '.') digits.remove_suffix(1);
    return digits;
}

void DecodeNumber(const OdbcColumn& column, std::string_view digits, Value& value) {
    Decimal number;
    bool read = false;
    try {
        read = !digits.empty() && ParseDecimal(WithoutPadding(digits), number);
    } catch (const Error&) {
        read = false;  // more digits than any exact number has
    }
    if (!read) {
        value.SetFailure(column.info.name + ": '" + std::string(digits) + "' cannot be held exactly.");
    } else if (column.form == CellForm::Currency) {
        value.SetCurrency(CurrencyFromDecimal(number));
    } else {
        value.SetDecimal(number);
    }
}

void DecodeUnsigned(std::span<const std::uint8_t> cell, Value& value) {
    const auto number = As<SQLUBIGINT>(cell);
    if (number <= static_cast<SQLUBIGINT>(INT64_MAX)) {
        value.SetInteger(static_cast<std::int64_t>(number));
    } else {
        value.SetDecimal({number, 0, false});
    }
}

void DecodeContent(const OdbcColumn& column, std::span<const std::uint8_t> cell, SQLLEN length, Value& value) {
    const bool text = column.form != CellForm::Bytes;
    const std::size_t room = text ? cell.size() - 1 : cell.size();
    if (length < 0 || static_cast<std::size_t>(length) > room) {
        value.SetFailure(column.info.name + ": the value is longer than the driver announced (" + std::to_string(room) +
                         " bytes).");
        return;
    }
    const auto content = cell.first(static_cast<std::size_t>(length));
    if (!text) return value.SetBytes(content);
    const std::string_view characters(reinterpret_cast<const char*>(content.data()), content.size());
    if (column.form == CellForm::Text) return value.SetText(characters);
    DecodeNumber(column, characters, value);
}

}  // namespace

void DecodeCell(const OdbcColumn& column, std::span<const std::uint8_t> cell, SQLLEN length, Value& value) {
    switch (column.form) {
        case CellForm::Integer:
            return value.SetInteger(As<std::int64_t>(cell));
        case CellForm::UnsignedBig:
            return DecodeUnsigned(cell, value);
        case CellForm::Boolean:
            return value.SetBoolean(cell[0] != 0);
        case CellForm::Single:
            return value.SetSingle(static_cast<float>(As<double>(cell)));
        case CellForm::Double:
            return value.SetDouble(As<double>(cell));
        case CellForm::Date:
            return DecodeDate(column, cell, value);
        case CellForm::Time:
            return DecodeTime(column, cell, value);
        case CellForm::DateTime:
            return DecodeDateTime(column, cell, value);
        case CellForm::Guid:
            return DecodeGuid(cell, value);
        default:
            return DecodeContent(column, cell, length, value);
    }
}

}  // namespace varnel::odbc
