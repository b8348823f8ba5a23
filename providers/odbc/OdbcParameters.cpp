#include "providers/odbc/OdbcParameters.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"

namespace varnel::odbc {
namespace {

/// Longer texts and bytes are sent in pieces.
constexpr std::int64_t kWidestBound = 8000;
constexpr std::size_t kBytesPerCharacter = 4;
constexpr std::size_t kNumberText = 64;
constexpr std::size_t kMomentText = 32;
/// The most that the values put aside may take.
constexpr std::size_t kArrayBytes = std::size_t{2} << 20;
constexpr SQLULEN kMomentSize = 26;
constexpr SQLSMALLINT kMomentDigits = 6;
constexpr SQLULEN kLongSize = 2147483647;

struct Sort {
    DataTypeEnum type;
    SQLSMALLINT transferType, sqlType;
    SQLULEN size;
    SQLSMALLINT digits;
    std::size_t bytes;
};

constexpr Sort kSorts[] = {
    {adBoolean, SQL_C_BIT, SQL_BIT, 1, 0, 1},
    {adTinyInt, SQL_C_SBIGINT, SQL_SMALLINT, 5, 0, 8},
    {adUnsignedTinyInt, SQL_C_SBIGINT, SQL_SMALLINT, 5, 0, 8},
    {adSmallInt, SQL_C_SBIGINT, SQL_SMALLINT, 5, 0, 8},
    {adUnsignedSmallInt, SQL_C_SBIGINT, SQL_INTEGER, 10, 0, 8},
    {adInteger, SQL_C_SBIGINT, SQL_INTEGER, 10, 0, 8},
    {adUnsignedInt, SQL_C_SBIGINT, SQL_BIGINT, 19, 0, 8},
    {adBigInt, SQL_C_SBIGINT, SQL_BIGINT, 19, 0, 8},
    {adSingle, SQL_C_FLOAT, SQL_REAL, 7, 0, 4},
    {adDouble, SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, 8},
    {adCurrency, SQL_C_CHAR, SQL_DECIMAL, 19, 4, kNumberText},
    {adUnsignedBigInt, SQL_C_CHAR, SQL_DECIMAL, 38, 0, kNumberText},
    {adDecimal, SQL_C_CHAR, SQL_DECIMAL, 38, 0, kNumberText},
    {adNumeric, SQL_C_CHAR, SQL_DECIMAL, 38, 0, kNumberText},
    {adVarNumeric, SQL_C_CHAR, SQL_DECIMAL, 38, 0, kNumberText},
    {adDate, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kMomentSize, kMomentDigits, sizeof(SQL_TIMESTAMP_STRUCT)},
    {adDBDate, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kMomentSize, kMomentDigits, sizeof(SQL_TIMESTAMP_STRUCT)},
    {adDBTime, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kMomentSize, kMomentDigits, sizeof(SQL_TIMESTAMP_STRUCT)},
    {adDBTimeStamp, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kMomentSize, kMomentDigits, sizeof(SQL_TIMESTAMP_STRUCT)},
};

bool IsBytes(DataTypeEnum type) {
    return type == adBinary || type == adVarBinary || type == adLongVarBinary;
}
bool IsNumberText(DataTypeEnum type) {
    return type == adDecimal || type == adNumeric || type == adVarNumeric || type == adUnsignedBigInt ||
           type == adCurrency;
}

std::span<const std::uint8_t> BytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

template <typename Number>
void Put(std::vector<std::uint8_t>& room, std::size_t at, const Number& number) {
    std::memcpy(room.data() + at, &number, sizeof number);
}

SQL_TIMESTAMP_STRUCT Moment(DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    return {static_cast<SQLSMALLINT>(civil.year),         static_cast<SQLUSMALLINT>(civil.month),
            static_cast<SQLUSMALLINT>(civil.day),         static_cast<SQLUSMALLINT>(civil.hour),
            static_cast<SQLUSMALLINT>(civil.minute),      static_cast<SQLUSMALLINT>(civil.second),
            static_cast<SQLUINTEGER>(civil.micros) * 1000};
}

void RefuseNonFinite(double number) {
    if (!std::isfinite(number)) throw Error(ErrorKind::Conversion, "", "Overflow");
}

}  // namespace

OdbcParameters::OdbcParameters(std::span<const ParameterInfo> parameters, const OdbcLink& link, std::size_t rows)
    : cells_(parameters.size()), rows_(rows) {
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        cells_[k].info = parameters[k];
        Describe(cells_[k], link);
        hasLong_ = hasLong_ || cells_[k].bytes == 0;
    }
    std::size_t rowBytes = 1;
    for (const Cell& cell : cells_) rowBytes += cell.bytes + sizeof(SQLLEN);
    rows_ = hasLong_ ? 1 : std::clamp<std::size_t>(kArrayBytes / rowBytes, 1, rows_);
    for (Cell& cell : cells_) {
        cell.room.resize(cell.bytes * rows_);
        cell.lengths.assign(rows_, SQL_NULL_DATA);
    }
}

void OdbcParameters::Describe(Cell& cell, const OdbcLink& link) {
    for (const Sort& sort : kSorts) {
        if (sort.type != cell.info.type) continue;
        cell.transferType = sort.transferType;
        cell.sqlType = sort.sqlType;
        cell.size = sort.size;
        cell.digits = sort.digits;
        cell.bytes = sort.bytes;
        if (IsNumberText(sort.type) && cell.info.numericScale != kNotStated && sort.type != adCurrency)
            cell.digits = cell.info.numericScale;
        if (sort.transferType == SQL_C_TYPE_TIMESTAMP && link.KeepsMoments()) {
            cell.transferType = SQL_C_CHAR;
            cell.sqlType = SQL_WVARCHAR;  // as a moment the driver would take the text apart
            cell.bytes = kMomentText;
        }
        return;
    }
    if (cell.info.type == adGUID && link.Text().family == Family::SqlServer) {
        cell.sqlType = SQL_GUID;
        cell.size = 36;
        cell.bytes = 40;
        return;
    }
    const std::int64_t stated = cell.info.type == adGUID ? 38 : cell.info.size;
    const bool inPieces = stated <= 0 || stated > kWidestBound || cell.info.type == adLongVarBinary ||
                          cell.info.type == adLongVarChar || cell.info.type == adLongVarWChar;
    cell.size = inPieces ? kLongSize : static_cast<SQLULEN>(stated);
    if (IsBytes(cell.info.type)) {
        cell.transferType = SQL_C_BINARY;
        cell.sqlType = inPieces ? SQL_LONGVARBINARY : SQL_VARBINARY;
        cell.bytes = inPieces ? 0 : static_cast<std::size_t>(stated);
    } else {
        // Narrow parameters would pass through the server's code page, which may lack a character.
        cell.sqlType = static_cast<SQLSMALLINT>(inPieces ? SQL_WLONGVARCHAR : SQL_WVARCHAR);
        cell.bytes = inPieces ? 0 : static_cast<std::size_t>(stated) * kBytesPerCharacter;
    }
}

void OdbcParameters::Take(std::size_t row, std::span<const Value* const> values) {
    for (std::size_t k = 0; k < cells_.size(); ++k) TakeValue(cells_[k], row, *values[k]);
}

void OdbcParameters::TakeValue(Cell& cell, std::size_t row, const Value& value) {
    cell.lengths[row] = SQL_NULL_DATA;
    cell.content = {};
    if (value.IsNull()) return;
    if (cell.bytes == 0 && value.Kind() == ValueKind::Bytes && IsBytes(cell.info.type))
        return TakeContent(cell, row, value.AsBytes());
    if (cell.bytes == 0 && value.Kind() == ValueKind::Text && !IsBytes(cell.info.type))
        return TakeContent(cell, row, BytesOf(value.AsText()));
    ConvertValue(value, cell.info.type, cell.converted);
    const Value& converted = cell.converted;
    const std::size_t at = row * cell.bytes;
    cell.lengths[row] = static_cast<SQLLEN>(cell.bytes);
    switch (converted.Kind()) {
        case ValueKind::Boolean:
            return Put(cell.room, at, static_cast<std::uint8_t>(converted.AsBoolean() ? 1 : 0));
        case ValueKind::Integer:
            if (cell.transferType == SQL_C_SBIGINT) return Put(cell.room, at, converted.AsInteger());
            break;
        case ValueKind::Single:
            RefuseNonFinite(converted.AsSingle());
            return Put(cell.room, at, converted.AsSingle());
        case ValueKind::Double:
            RefuseNonFinite(converted.AsDouble());
            return Put(cell.room, at, converted.AsDouble());
        case ValueKind::DateTime:
            if (cell.transferType == SQL_C_TYPE_TIMESTAMP) return Put(cell.room, at, Moment(converted.AsDateTime()));
            text_.clear();
            AppendIsoDateTime(text_, converted.AsDateTime());
            return TakeContent(cell, row, BytesOf(text_));
        case ValueKind::Bytes:
            return TakeContent(cell, row, converted.AsBytes());
        case ValueKind::Text:
            return TakeText(cell, row, converted.AsText());
        default:
            break;
    }
    text_.clear();
    AppendDefaultText(text_, converted);
    if (converted.Kind() == ValueKind::Guid && cell.sqlType == SQL_GUID) text_ = text_.substr(1, 36);
    if (converted.Kind() == ValueKind::Decimal && converted.AsDecimal().scale > cell.digits) {
        cell.digits = converted.AsDecimal().scale;
        ++shape_;
    }
    TakeContent(cell, row, BytesOf(text_));
}

/// A text longer than the parameter's stated size is refused; a driver would cut it without a word.
void OdbcParameters::TakeText(Cell& cell, std::size_t row, std::string_view text) {
    if (cell.bytes != 0 && text.size() > cell.size && CharacterCount(text) > cell.size)
        throw Error(ErrorKind::Conversion, "",
                    "The text has " + std::to_string(CharacterCount(text)) + " characters; " +
                        std::to_string(cell.size) + " are allowed.");
    TakeContent(cell, row, BytesOf(text));
}

void OdbcParameters::TakeContent(Cell& cell, std::size_t row, std::span<const std::uint8_t> content) {
    if (cell.bytes == 0) {
        cell.content = content;
        cell.lengths[row] = SQL_LEN_DATA_AT_EXEC(static_cast<SQLLEN>(content.size()));
        return;
    }
    if (content.size() > cell.bytes)
        throw Error(ErrorKind::Conversion, "",
                    "The value has " + std::to_string(content.size()) + " bytes; " + std::to_string(cell.bytes) +
                        " are allowed.");
    std::copy(content.begin(), content.end(), cell.room.begin() + static_cast<std::ptrdiff_t>(row * cell.bytes));
    cell.lengths[row] = static_cast<SQLLEN>(content.size());
}

void OdbcParameters::CopyToFront(std::size_t row, std::size_t count) {
    if (row == 0) return;
    for (Cell& cell : cells_) {
        std::copy_n(cell.room.begin() + static_cast<std::ptrdiff_t>(row * cell.bytes), count * cell.bytes,
                    cell.room.begin());
        std::copy_n(cell.lengths.begin() + static_cast<std::ptrdiff_t>(row), count, cell.lengths.begin());
    }
}

void OdbcParameters::Bind(OdbcLink& link, const StatementHandle& statement) {
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        Cell& cell = cells_[k];
        const bool inPieces = cell.bytes == 0;
        SQLPOINTER room = inPieces ? AsPointer(k + 1) : cell.room.data();
        link.Check(SQLBindParameter(statement.Get(), static_cast<SQLUSMALLINT>(k + 1), SQL_PARAM_INPUT,
                                    cell.transferType, cell.sqlType, cell.size, cell.digits, room,
                                    static_cast<SQLLEN>(cell.bytes), cell.lengths.data()),
                   statement);
    }
}

std::span<const std::uint8_t> OdbcParameters::Content(SQLPOINTER token) const {
    const auto number = reinterpret_cast<std::uintptr_t>(token);
    return number >= 1 && number <= cells_.size() ? cells_[number - 1].content : std::span<const std::uint8_t>{};
}

}  // namespace varnel::odbc
