#include "providers/mysql/MySqlTypes.h"

#include <algorithm>

namespace varnel::mysql {
namespace {

struct FixedType {
    enum_field_types type;
    CellForm form;
    DataTypeEnum code;
    std::int64_t size;
    std::uint8_t precision;
    DataTypeEnum unsignedCode;
};

constexpr FixedType kFixedTypes[] = {
    {MYSQL_TYPE_TINY, CellForm::Integer, adTinyInt, 1, 3, adUnsignedTinyInt},
    {MYSQL_TYPE_SHORT, CellForm::Integer, adSmallInt, 2, 5, adUnsignedSmallInt},
    {MYSQL_TYPE_YEAR, CellForm::Integer, adSmallInt, 2, 5, adSmallInt},
    {MYSQL_TYPE_INT24, CellForm::Integer, adInteger, 4, 10, adUnsignedInt},
    {MYSQL_TYPE_LONG, CellForm::Integer, adInteger, 4, 10, adUnsignedInt},
    {MYSQL_TYPE_FLOAT, CellForm::Single, adSingle, 4, 7, adSingle},
    {MYSQL_TYPE_DOUBLE, CellForm::Double, adDouble, 8, 15, adDouble},
    {MYSQL_TYPE_DATE, CellForm::Date, adDBDate, 6, kNotStated, adDBDate},
    {MYSQL_TYPE_NEWDATE, CellForm::Date, adDBDate, 6, kNotStated, adDBDate},
    {MYSQL_TYPE_TIME, CellForm::Time, adDBTime, 6, kNotStated, adDBTime},
    {MYSQL_TYPE_DATETIME, CellForm::DateTime, adDBTimeStamp, 16, kNotStated, adDBTimeStamp},
    {MYSQL_TYPE_TIMESTAMP, CellForm::DateTime, adDBTimeStamp, 16, kNotStated, adDBTimeStamp},
};

constexpr unsigned kBinaryCharacterSet = 63;
constexpr std::int64_t kBytesPerCharacter = 4;  // of utf8mb4, in which the server states the lengths of texts
/// From here on a long column is the largest there is.
constexpr std::int64_t kLargestText = 0x3FFFFFFF;
constexpr std::int64_t kLongSize = 2147483647;

bool IsUnsigned(const MYSQL_FIELD& field) {
    return (field.flags & UNSIGNED_FLAG) != 0;
}

void DescribeBigInt(const MYSQL_FIELD& field, bool noBigInt, MySqlColumn& column) {
    column.form = IsUnsigned(field) ? CellForm::UnsignedBig : CellForm::Integer;
    column.info.type = noBigInt ? adInteger : IsUnsigned(field) ? adUnsignedBigInt : adBigInt;
    column.info.definedSize = noBigInt ? 4 : 8;
    column.info.precision = noBigInt ? 10 : IsUnsigned(field) ? 20 : 19;
}

/// The stated length counts the sign and the point.
void DescribeDecimal(const MYSQL_FIELD& field, MySqlColumn& column) {
    const unsigned long marks = (field.decimals > 0 ? 1 : 0) + (IsUnsigned(field) ? 0 : 1);
    column.form = CellForm::Decimal;
    column.info.type = adNumeric;
    column.info.definedSize = 19;
    column.info.precision = static_cast<std::uint8_t>(field.length > marks ? std::min(field.length - marks, 254UL) : 0);
    column.info.numericScale = static_cast<std::uint8_t>(std::min(field.decimals, 254U));
}

void DescribeBit(const MYSQL_FIELD& field, MySqlColumn& column) {
    const bool single = field.length <= 1;
    column.form = single ? CellForm::Bit : CellForm::Bytes;
    column.info.type = single ? adBoolean : adBinary;
    column.info.definedSize = single ? 2 : static_cast<std::int64_t>((field.length + 7) / 8);
}

bool IsLong(enum_field_types type) {
    return (type >= MYSQL_TYPE_TINY_BLOB && type <= MYSQL_TYPE_BLOB) || type == MYSQL_TYPE_JSON ||
           type == MYSQL_TYPE_GEOMETRY;
}

void DescribeBytes(const MYSQL_FIELD& field, MySqlColumn& column) {
    const bool fixed = field.type == MYSQL_TYPE_STRING;
    column.form = CellForm::Bytes;
    column.info.type = IsLong(field.type) ? adLongVarBinary : fixed ? adBinary : adVarBinary;
    column.info.definedSize = std::min<std::int64_t>(static_cast<std::int64_t>(field.length), kLongSize);
}

void DescribeText(const MYSQL_FIELD& field, MySqlColumn& column) {
    const bool fixed = field.type == MYSQL_TYPE_STRING || field.type == MYSQL_TYPE_ENUM || field.type == MYSQL_TYPE_SET;
    const auto characters = static_cast<std::int64_t>(field.length) / kBytesPerCharacter;
    column.form = CellForm::Text;
    column.info.type = IsLong(field.type) ? adLongVarChar : fixed ? adChar : adVarChar;
    column.info.definedSize = characters >= kLargestText ? kLongSize : characters;
}

void DescribeString(const MYSQL_FIELD& field, MySqlColumn& column) {
    const bool words = (field.flags & (ENUM_FLAG | SET_FLAG)) != 0 || field.type == MYSQL_TYPE_JSON;
    const bool bytes = field.charsetnr == kBinaryCharacterSet && !words && field.type != MYSQL_TYPE_NULL;
    bytes || field.type == MYSQL_TYPE_GEOMETRY ? DescribeBytes(field, column) : DescribeText(field, column);
}

}  // namespace

MySqlColumn DescribeColumn(const MYSQL_FIELD& field, const MySqlOptions& options) {
    MySqlColumn column;
    column.info.name.assign(field.name, field.name_length);
    column.info.nullable = (field.flags & NOT_NULL_FLAG) == 0;
    column.wireBytes = field.length;
    const auto* fixed = std::find_if(std::begin(kFixedTypes), std::end(kFixedTypes),
                                     [&](const FixedType& row) { return row.type == field.type; });
    if (fixed != std::end(kFixedTypes)) {
        column.form = fixed->form;
        column.info.type = IsUnsigned(field) ? fixed->unsignedCode : fixed->code;
        column.info.definedSize = fixed->size;
        column.info.precision = fixed->precision;
    } else if (field.type == MYSQL_TYPE_LONGLONG) {
        DescribeBigInt(field, options.noBigInt, column);
    } else if (field.type == MYSQL_TYPE_NEWDECIMAL || field.type == MYSQL_TYPE_DECIMAL) {
        DescribeDecimal(field, column);
    } else if (field.type == MYSQL_TYPE_BIT) {
        DescribeBit(field, column);
    } else {
        DescribeString(field, column);
    }
    return column;
}

}  // namespace varnel::mysql
