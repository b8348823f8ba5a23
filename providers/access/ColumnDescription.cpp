#include "providers/access/ColumnDescription.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::int64_t kMemoSize = 536'870'910, kOleSize = 1'073'741'823;
constexpr std::int64_t kNumericSize = 19;

struct TypeFacts {
    ColumnType type;
    DataTypeEnum adoType;
    std::int64_t size;
    std::uint8_t precision;
};
/// The types whose size does not depend on the column.
constexpr TypeFacts kTypes[] = {
    {ColumnType::Boolean, adBoolean, 2, kNotStated},
    {ColumnType::Byte, adUnsignedTinyInt, 1, 3},
    {ColumnType::Integer, adSmallInt, 2, 5},
    {ColumnType::Long, adInteger, 4, 10},
    {ColumnType::Currency, adCurrency, 8, 19},
    {ColumnType::Single, adSingle, 4, 7},
    {ColumnType::Double, adDouble, 8, 15},
    {ColumnType::Date, adDate, 8, kNotStated},
    {ColumnType::Ole, adLongVarBinary, kOleSize, kNotStated},
    {ColumnType::Memo, adLongVarWChar, kMemoSize, kNotStated},
    {ColumnType::Guid, adGUID, 16, kNotStated},
    {ColumnType::Numeric, adNumeric, kNumericSize, 0},
    {ColumnType::Complex, adInteger, 4, 10},
    {ColumnType::BigInt, adBigInt, 8, 19},
    {ColumnType::ExtendedDate, adDate, 8, kNotStated},
};

}  // namespace

std::vector<std::size_t> ColumnOrder(const TableDefinition& table) {
    std::vector<std::size_t> order(table.columns.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return table.columns[a].ordinal < table.columns[b].ordinal; });
    return order;
}

ColumnInfo DescribeColumn(const Column& column, Version version) {
    ColumnInfo info;
    info.name = column.name;
    info.nullable = !column.required;
    if (column.type == ColumnType::Text) {
        info.type = column.IsFixed() ? adWChar : adVarWChar;
        info.definedSize = version == Version::Jet3 ? column.length : column.length / 2;
        return info;
    }
    if (column.type == ColumnType::Binary || column.type == ColumnType::FixedBlob) {
        info.type = column.IsFixed() ? adBinary : adVarBinary;
        info.definedSize = column.length;
        return info;
    }
    const auto found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                    [&](const TypeFacts& facts) { return facts.type == column.type; });
    if (found == std::end(kTypes))
        throw Error(ErrorKind::NotSupported, column.name,
                    "The column '" + column.name + "' is of type " + std::to_string(static_cast<int>(column.type)) +
                        ", which this program does not know.");
    info.type = found->adoType;
    info.definedSize = found->size;
    info.precision = found->precision;
    if (column.type == ColumnType::Numeric) info.precision = column.precision, info.numericScale = column.scale;
    return info;
}

std::string TypeWordOf(const Column& column) {
    switch (column.type) {
        case ColumnType::Boolean:
            return "YesNo";
        case ColumnType::Byte:
            return "Byte";
        case ColumnType::Integer:
            return "Short";
        case ColumnType::Long:
            return column.IsAutonumber() ? "Counter" : "Long";
        case ColumnType::Complex:
            return "Long";
        case ColumnType::Currency:
            return "Currency";
        case ColumnType::Single:
            return "Single";
        case ColumnType::Double:
            return "Double";
        case ColumnType::Date:
        case ColumnType::ExtendedDate:
            return "DateTime";
        case ColumnType::Binary:
        case ColumnType::FixedBlob:
            return "Binary";
        case ColumnType::Text:
            return "Text";
        case ColumnType::Ole:
            return "OleObject";
        case ColumnType::Memo:
            return "Memo";
        case ColumnType::Guid:
            return "Guid";
        case ColumnType::Numeric:
            return "Decimal";
        case ColumnType::BigInt:
            return "BigInt";
    }
    return "";
}

}  // namespace varnel::access
