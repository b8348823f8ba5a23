#include "tools/check/TypeTraits.h"

namespace varnel::admin {
namespace {

struct WholeType {
    DataTypeEnum type;
    int digits;
    const char* range;
};
constexpr WholeType kWholes[] = {
    {adTinyInt, 3, "-128 to 127"},
    {adUnsignedTinyInt, 3, "0 to 255"},
    {adSmallInt, 5, "-32768 to 32767"},
    {adUnsignedSmallInt, 5, "0 to 65535"},
    {adInteger, 10, "-2147483648 to 2147483647"},
    {adUnsignedInt, 10, "0 to 4294967295"},
    {adBigInt, 19, "-9223372036854775808 to 9223372036854775807"},
    {adUnsignedBigInt, 20, "0 to 18446744073709551615"},
};

const WholeType* WholeOf(DataTypeEnum type) {
    for (const WholeType& whole : kWholes)
        if (whole.type == type) return &whole;
    return nullptr;
}

}  // namespace

TypeSort SortOf(DataTypeEnum type) {
    if (IsText(type)) return TypeSort::Text;
    if (WholeOf(type) != nullptr) return TypeSort::Whole;
    switch (type) {
        case adCurrency:
        case adDecimal:
        case adNumeric:
        case adVarNumeric:
            return TypeSort::Exact;
        case adSingle:
        case adDouble:
            return TypeSort::Float;
        case adDate:
        case adDBDate:
        case adDBTime:
        case adDBTimeStamp:
            return TypeSort::Moment;
        case adBoolean:
            return TypeSort::Boolean;
        case adBinary:
        case adVarBinary:
        case adLongVarBinary:
            return TypeSort::Bytes;
        case adGUID:
            return TypeSort::Guid;
        default:
            return TypeSort::Other;
    }
}

DigitRange DigitsOf(const ColumnInfo& column, bool pointTakesPlace) {
    constexpr int kCurrencyDigits = 15, kCurrencyPlaces = 4, kFloatDigits = 309;
    if (const WholeType* whole = WholeOf(column.type)) return {whole->digits, 0, false};
    if (column.type == adCurrency) return {kCurrencyDigits, kCurrencyPlaces, false};
    if (SortOf(column.type) == TypeSort::Float) return {kFloatDigits, -1, false};
    if (column.precision == kNotStated || column.precision == 0) return {kFloatDigits, -1, true};
    const int places = column.numericScale == kNotStated ? 0 : column.numericScale;
    return {column.precision - places - (pointTakesPlace && places > 0 ? 1 : 0), places, false};
}

std::string RangeText(DataTypeEnum type) {
    const WholeType* whole = WholeOf(type);
    return whole == nullptr ? "" : whole->range;
}

std::int64_t TextLengthOf(const ColumnInfo& column) {
    constexpr std::int64_t kSingle = 14, kDouble = 24, kMoment = 22, kBoolean = 5, kGuid = 38;
    switch (SortOf(column.type)) {
        case TypeSort::Float:
            return column.type == adSingle ? kSingle : kDouble;
        case TypeSort::Moment:
            return column.type == adDBDate ? 10 : kMoment;
        case TypeSort::Boolean:
            return kBoolean;
        case TypeSort::Guid:
            return kGuid;
        case TypeSort::Whole:
            return DigitsOf(column).before + 1;
        case TypeSort::Exact: {
            const DigitRange digits = DigitsOf(column);
            return digits.isOpen ? 0 : digits.before + digits.places + 2;
        }
        default:
            return 0;
    }
}

std::string TypeText(const ColumnInfo& column) {
    constexpr std::int64_t kMemo = 1'000'000;
    const std::string size = std::to_string(column.definedSize);
    switch (SortOf(column.type)) {
        case TypeSort::Text:
            return column.definedSize >= kMemo ? "long text" : "text of " + size + " characters";
        case TypeSort::Bytes:
            return column.definedSize >= kMemo ? "long binary" : "binary of " + size + " bytes";
        case TypeSort::Exact: {
            if (column.type == adCurrency) return "Currency";
            const DigitRange digits = DigitsOf(column);
            if (digits.isOpen) return "number of any size";
            return "number of " + std::to_string(digits.before + digits.places) + " digits, " +
                   std::to_string(digits.places) + " of them after the point";
        }
        case TypeSort::Moment:
            if (column.type == adDBDate) return "date without time";
            return column.type == adDBTime ? "time of day" : "date and time";
        default:
            return DesignerTypeName(column.type);
    }
}

}  // namespace varnel::admin
