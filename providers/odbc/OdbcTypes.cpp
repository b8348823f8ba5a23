#include "providers/odbc/OdbcTypes.h"

#include <algorithm>
#include <array>

namespace varnel::odbc {
namespace {

struct FixedType {
    SQLSMALLINT type;
    CellForm form;
    DataTypeEnum code, unsignedCode;
    std::int64_t size;
    std::uint8_t precision;
    std::size_t cellBytes;
};

constexpr FixedType kFixedTypes[] = {
    {SQL_BIT, CellForm::Boolean, adBoolean, adBoolean, 2, kNotStated, 1},
    {SQL_TINYINT, CellForm::Integer, adTinyInt, adUnsignedTinyInt, 1, 3, 8},
    {SQL_SMALLINT, CellForm::Integer, adSmallInt, adUnsignedSmallInt, 2, 5, 8},
    {SQL_INTEGER, CellForm::Integer, adInteger, adUnsignedInt, 4, 10, 8},
    {SQL_BIGINT, CellForm::Integer, adBigInt, adUnsignedBigInt, 8, 19, 8},
    {SQL_REAL, CellForm::Single, adSingle, adSingle, 4, 7, 8},
    {SQL_FLOAT, CellForm::Double, adDouble, adDouble, 8, 15, 8},
    {SQL_DOUBLE, CellForm::Double, adDouble, adDouble, 8, 15, 8},
    {SQL_TYPE_DATE, CellForm::Date, adDBDate, adDBDate, 6, kNotStated, sizeof(SQL_DATE_STRUCT)},
    {SQL_DATE, CellForm::Date, adDBDate, adDBDate, 6, kNotStated, sizeof(SQL_DATE_STRUCT)},
    {SQL_TYPE_TIME, CellForm::Time, adDBTime, adDBTime, 6, kNotStated, sizeof(SQL_TIME_STRUCT)},
    {SQL_TIME, CellForm::Time, adDBTime, adDBTime, 6, kNotStated, sizeof(SQL_TIME_STRUCT)},
    {SQL_GUID, CellForm::Guid, adGUID, adGUID, 16, kNotStated, sizeof(SQLGUID)},
};

struct ContentType {
    SQLSMALLINT type;
    bool text;
    DataTypeEnum code, longCode;
};
constexpr ContentType kContentTypes[] = {
    {SQL_CHAR, true, adChar, adLongVarChar},
    {SQL_VARCHAR, true, adVarChar, adLongVarChar},
    {SQL_LONGVARCHAR, true, adLongVarChar, adLongVarChar},
    {SQL_WCHAR, true, adWChar, adLongVarWChar},
    {SQL_WVARCHAR, true, adVarWChar, adLongVarWChar},
    {SQL_WLONGVARCHAR, true, adLongVarWChar, adLongVarWChar},
    {SQL_BINARY, false, adBinary, adLongVarBinary},
    {SQL_VARBINARY, false, adVarBinary, adLongVarBinary},
    {SQL_LONGVARBINARY, false, adLongVarBinary, adLongVarBinary},
};

/// Up to here a cell has its place in the block of rows; longer ones come in pieces.
constexpr SQLULEN kWidestBound = 8000;
constexpr std::size_t kBytesPerCharacter = 4;
constexpr std::int64_t kLongSize = 2147483647;
constexpr std::size_t kDecimalText = 160;  // a driver may pad with zeros far beyond the 38 digits

void DescribeDecimal(const DriverColumn& column, const ConnectionText& connection, OdbcColumn& described) {
    described.form = CellForm::Decimal;
    described.cellBytes = kDecimalText;
    const bool money = column.typeName == "money" || column.typeName == "smallmoney";
    if (connection.family == Family::SqlServer && connection.nativeProvider && money) {
        described.form = CellForm::Currency;
        described.info.type = adCurrency;
        described.info.definedSize = 8;
        described.info.precision = 19;
        return;
    }
    const bool scaleFits = column.digits >= 0 && static_cast<SQLULEN>(column.digits) <= column.size;
    const bool open = connection.family == Family::Oracle && (column.size > 38 || !scaleFits);
    described.info.type = open ? adVarNumeric : adNumeric;
    described.info.definedSize = open ? 38 : 19;
    described.info.precision = static_cast<std::uint8_t>(open ? 38 : std::min<SQLULEN>(column.size, 254));
    if (!open) described.info.numericScale = static_cast<std::uint8_t>(std::clamp<int>(column.digits, 0, 254));
}

/// As far as the driver states the places of a second.
std::int64_t MomentStep(const DriverColumn& column, const ConnectionText& connection) {
    constexpr std::int64_t kSteps[] = {1'000'000, 100'000, 10'000, 1'000, 100, 10};
    constexpr SQLULEN kMinutes = 16;  // characters of smalldatetime, whose name is datetime too
    if (connection.family == Family::SqlServer && column.size == kMinutes) return 60 * kSteps[0];
    if (connection.family == Family::SqlServer && column.typeName == "datetime") return kThreeHundredth;
    if (column.digits < 0) return 0;
    return column.digits < static_cast<int>(std::size(kSteps)) ? kSteps[column.digits] : 1;
}

void DescribeMoment(const DriverColumn& column, const ConnectionText& connection, OdbcColumn& described) {
    described.form = CellForm::DateTime;
    described.cellBytes = sizeof(SQL_TIMESTAMP_STRUCT);
    described.info.type = adDBTimeStamp;
    described.info.definedSize = 16;
    described.momentStep = MomentStep(column, connection);
    if (connection.family == Family::Other) return;
    described.info.precision = static_cast<std::uint8_t>(std::min<SQLULEN>(column.size, 254));
    described.info.numericScale = static_cast<std::uint8_t>(std::clamp<int>(column.digits, 0, 9));
}

void DescribeContent(const ContentType& type, const DriverColumn& column, OdbcColumn& described) {
    const bool unlimited = column.size == 0 || type.code == type.longCode;
    const bool inPieces = unlimited || column.size > kWidestBound;
    described.info.type = unlimited ? type.longCode : type.code;
    const SQLULEN stated = std::min<SQLULEN>(column.size, static_cast<SQLULEN>(kLongSize));
    described.info.definedSize = column.size == 0 ? kLongSize : static_cast<std::int64_t>(stated);
    if (type.text) {
        described.form = inPieces ? CellForm::LongText : CellForm::Text;
        described.cellBytes = inPieces ? 0 : column.size * kBytesPerCharacter + 1;
    } else {
        described.form = inPieces ? CellForm::LongBytes : CellForm::Bytes;
        described.cellBytes = inPieces ? 0 : column.size;
    }
}

}  // namespace

bool ReadDriverColumn(const StatementHandle& statement, SQLUSMALLINT number, DriverColumn& column) {
    std::array<SQLCHAR, 1024> name{}, typeName{};
    SQLSMALLINT nameLength = 0, typeNameLength = 0, nullable = 0;
    if (!SQL_SUCCEEDED(SQLDescribeCol(statement.Get(), number, name.data(), name.size(), &nameLength, &column.type,
                                      &column.size, &column.digits, &nullable)))
        return false;
    column.name = reinterpret_cast<const char*>(name.data());
    column.nullable = nullable != SQL_NO_NULLS;
    SQLLEN isUnsigned = SQL_FALSE;
    if (SQL_SUCCEEDED(SQLColAttribute(statement.Get(), number, SQL_DESC_UNSIGNED, nullptr, 0, nullptr, &isUnsigned)))
        column.isUnsigned = isUnsigned == SQL_TRUE;
    if (SQL_SUCCEEDED(SQLColAttribute(statement.Get(), number, SQL_DESC_TYPE_NAME, typeName.data(), typeName.size(),
                                      &typeNameLength, nullptr)))
        column.typeName = reinterpret_cast<const char*>(typeName.data());
    return true;
}

OdbcColumn DescribeColumn(const DriverColumn& column, const ConnectionText& connection) {
    OdbcColumn described;
    described.info.name = column.name;
    described.info.nullable = column.nullable;
    for (const FixedType& type : kFixedTypes) {
        if (type.type != column.type) continue;
        described.form = column.isUnsigned && type.type == SQL_BIGINT ? CellForm::UnsignedBig : type.form;
        described.info.type = column.isUnsigned ? type.unsignedCode : type.code;
        described.info.definedSize = type.size;
        described.info.precision = type.precision;
        described.cellBytes = type.cellBytes;
        if (described.form == CellForm::Date) described.momentStep = kMicrosPerDay;
        return described;
    }
    if (column.type == SQL_DECIMAL || column.type == SQL_NUMERIC) {
        DescribeDecimal(column, connection, described);
    } else if (column.type == SQL_TYPE_TIMESTAMP || column.type == SQL_TIMESTAMP) {
        DescribeMoment(column, connection, described);
    } else {
        constexpr ContentType kUnknown{0, true, adVarChar, adLongVarChar};
        const ContentType* content = std::find_if(std::begin(kContentTypes), std::end(kContentTypes),
                                                  [&](const ContentType& type) { return type.type == column.type; });
        DescribeContent(content == std::end(kContentTypes) ? kUnknown : *content, column, described);
    }
    return described;
}

}  // namespace varnel::odbc
