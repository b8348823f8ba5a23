#include "providers/text/CellRule.h"

#include <algorithm>
#include <array>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Utf8.h"
#include "providers/text/CellCurrency.h"
#include "providers/text/CellDate.h"
#include "providers/text/CellNumber.h"

namespace varnel::text {
namespace {

CellFault ReadText(const CellRule& rule, std::string_view text, Value& value) {
    const bool isAscii = AsciiRun(text, 0) == text.size();
    if (!isAscii && !IsUtf8(text)) return CellFault::NotText;
    if (rule.longest > 0 && text.size() > rule.longest && CharacterCount(text) > rule.longest)
        return CellFault::TooLong;
    value.SetText(text);
    return CellFault::None;
}

CellFault ReadBoolean(std::string_view text, Value& value) {
    constexpr std::array<std::string_view, 5> kTrue = {"True", "Yes", "On", "1", "-1"};
    constexpr std::array<std::string_view, 4> kFalse = {"False", "No", "Off", "0"};
    const auto isWord = [&](std::string_view word) { return EqualNoCase(word, text); };
    const bool isTrue = std::any_of(kTrue.begin(), kTrue.end(), isWord);
    if (!isTrue && std::none_of(kFalse.begin(), kFalse.end(), isWord)) return CellFault::TypeMismatch;
    value.SetBoolean(isTrue);
    return CellFault::None;
}

CellFault ReadWhole(std::string_view text, char decimalSymbol, std::int64_t lowest, std::int64_t highest,
                    Value& value) {
    NumberShape shape;
    std::int64_t number = 0;
    if (!ScanNumber(text, decimalSymbol, shape)) return CellFault::TypeMismatch;
    if (!WholeOf(shape, number) || number < lowest || number > highest) return CellFault::Overflow;
    value.SetInteger(number);
    return CellFault::None;
}

CellFault ReadDouble(std::string_view text, char decimalSymbol, Value& value) {
    NumberShape shape;
    double number = 0;
    if (!ScanNumber(text, decimalSymbol, shape)) return CellFault::TypeMismatch;
    if (!DoubleOf(shape, text, decimalSymbol, number)) return CellFault::Overflow;
    value.SetDouble(number);
    return CellFault::None;
}

CellFault ReadSingle(std::string_view text, char decimalSymbol, Value& value) {
    NumberShape shape;
    float number = 0;
    if (!ScanNumber(text, decimalSymbol, shape)) return CellFault::TypeMismatch;
    if (!SingleOf(text, decimalSymbol, number)) return CellFault::Overflow;
    value.SetSingle(number);
    return CellFault::None;
}

CellFault ReadDecimal(std::string_view text, char decimalSymbol, Value& value) {
    NumberShape shape;
    if (!ScanNumber(text, decimalSymbol, shape)) return CellFault::TypeMismatch;
    if (shape.digits > kMaxDecimalDigits || shape.exponent < -kMaxDecimalDigits || shape.exponent > kMaxDecimalDigits) {
        return CellFault::Overflow;
    }
    // ParseDecimal refuses what has more digits than it holds; such a number has been refused above.
    std::string plain(text);
    std::replace(plain.begin(), plain.end(), decimalSymbol, '.');
    Decimal number;
    if (shape.digits + std::max(shape.exponent, 0) > kMaxDecimalDigits) return CellFault::Overflow;
    if (!ParseDecimal(plain, number)) return CellFault::TypeMismatch;
    value.SetDecimal(number);
    return CellFault::None;
}

CellFault ReadCurrency(std::string_view text, const TextFormat& format, Value& value) {
    CurrencyShape shape;
    if (!ScanCurrency(text, format, shape)) return CellFault::TypeMismatch;
    value.SetCurrency(shape.scaled);
    return CellFault::None;
}

CellFault ReadMoment(const CellRule& rule, std::string_view text, Value& value) {
    DateShape shape;
    DateTime moment;
    const bool isMoment = rule.picture ? rule.picture->Read(text, moment)
                                       : ScanDate(text, shape) && MomentOf(shape, rule.dayFirst, moment);
    if (!isMoment) return CellFault::TypeMismatch;
    value.SetDateTime(moment);
    return CellFault::None;
}

/// text: trimmed, not empty, of a column that does not hold texts.
CellFault ReadTyped(const CellRule& rule, const TextFormat& format, std::string_view text, Value& value) {
    switch (rule.type) {
        case adInteger:
            return ReadWhole(text, format.decimalSymbol, INT32_MIN, INT32_MAX, value);
        case adDouble:
            return ReadDouble(text, format.decimalSymbol, value);
        case adCurrency:
            return ReadCurrency(text, format, value);
        case adDate:
            return ReadMoment(rule, text, value);
        case adBoolean:
            return ReadBoolean(text, value);
        case adUnsignedTinyInt:
            return ReadWhole(text, format.decimalSymbol, 0, UINT8_MAX, value);
        case adSmallInt:
            return ReadWhole(text, format.decimalSymbol, INT16_MIN, INT16_MAX, value);
        case adSingle:
            return ReadSingle(text, format.decimalSymbol, value);
        case adNumeric:
            return ReadDecimal(text, format.decimalSymbol, value);
        default:
            return CellFault::TypeMismatch;
    }
}

}  // namespace

std::string_view FaultWords(CellFault fault) {
    switch (fault) {
        case CellFault::Overflow:
            return "Overflow";
        case CellFault::TooLong:
            return "The field is too small to accept the amount of data you attempted to add";
        case CellFault::NotText:
            return "Bytes that have no meaning in the file's code page";
        default:
            return "Type mismatch";
    }
}

std::string_view TrimmedCell(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

CellFault ReadCell(const CellRule& rule, const TextFormat& format, std::string_view text, bool isQualified,
                   Value& value) {
    value.SetNull();
    if (rule.type == adVarWChar || rule.type == adLongVarWChar) {
        return text.empty() && !isQualified ? CellFault::None : ReadText(rule, text, value);
    }
    const std::string_view trimmed = TrimmedCell(text);
    return trimmed.empty() ? CellFault::None : ReadTyped(rule, format, trimmed, value);
}

}  // namespace varnel::text
