#include "export/CellRules.h"

#include <algorithm>
#include <initializer_list>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "export/Padding.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel {

namespace {

constexpr std::int64_t kDateWidth = 10, kTimeStampWidth = 22, kVarNumericWidth = 40, kBooleanWidth = 5;
/// No cell is padded beyond this; a memo's defined size is half a billion characters.
constexpr std::int64_t kMaxCellWidth = 1'000'000;

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::int64_t Characters(std::string_view utf8) {
    return static_cast<std::int64_t>(CharacterCount(utf8));
}

void AppendBlanks(std::string& out, std::int64_t count) {
    if (count <= 0) return;
    if (count > kMaxCellWidth) {
        throw Error(ErrorKind::Conversion, "",
                    "A cell of " + std::to_string(count) +
                        " characters does not fit into a fixed-width line; choose the delimited format or de-select "
                        "the long columns");
    }
    out.append(static_cast<std::size_t>(count), ' ');
}

void PadRight(std::string& out, std::size_t from, std::int64_t width) {
    AppendBlanks(out, width - Characters(std::string_view(out).substr(from)));
}

/// The width of a Null cell, and of the padding of a date.
std::int64_t FixedWidth(const CellRule& rule) {
    switch (rule.group) {
        case CellGroup::Date:
            return kDateWidth;
        case CellGroup::TimeStamp:
            return kTimeStampWidth;
        case CellGroup::Number:
            return NumberWidth(rule.type);
        case CellGroup::VarNumeric:
            return kVarNumericWidth;
        case CellGroup::Boolean:
            return kBooleanWidth;
        default:
            return rule.definedSize;
    }
}

/// The numeric text without its leading blank.
void AppendTrimmedNumeric(std::string& out, const Value& value) {
    if (value.Kind() == ValueKind::Text) {
        out += TrimBlanks(NumericText(value));
    } else {
        const std::size_t from = out.size();
        AppendNumericText(out, value);
        if (out[from] == ' ') out.erase(from, 1);
    }
}

/// Trimmed numeric text and the blanks that its default text leaves of width, on the side that the rule wants.
void AppendAligned(std::string& out, const CellRule& rule, const Value& value, std::int64_t width) {
    const std::int64_t blanks = width - Characters(DefaultText(value));
    if (rule.leftAligned) {
        AppendTrimmedNumeric(out, value);
        AppendBlanks(out, blanks);
    } else {
        AppendBlanks(out, blanks);
        AppendTrimmedNumeric(out, value);
    }
}

void AppendNumericCell(std::string& out, const CellRule& rule, const Value& value) {
    if (Characters(DefaultText(value)) > rule.definedSize) {
        AppendBlanks(out, rule.definedSize);
    } else {
        AppendAligned(out, rule, value, rule.definedSize);
    }
}

/// Numeric text with its leading blank; a currency field that stands left takes 20 characters.
void AppendOtherCell(std::string& out, const CellRule& rule, const Value& value) {
    constexpr std::int64_t kLeftCurrencyWidth = 20;
    const std::string text = NumericText(value);
    const std::int64_t width = rule.leftAligned && rule.type == adCurrency ? kLeftCurrencyWidth : rule.definedSize;
    if (rule.leftAligned) {
        out += text;
        AppendBlanks(out, width - Characters(text));
    } else {
        AppendBlanks(out, width - Characters(text));
        out += text;
    }
}

void AppendFilledCell(std::string& out, const CellRule& rule, const Value& value) {
    const std::size_t from = out.size();
    switch (rule.group) {
        case CellGroup::Text:
            AppendDefaultText(out, value);
            return PadRight(out, from, rule.definedSize);
        case CellGroup::Date:
        case CellGroup::TimeStamp:
            AppendNumericText(out, value);
            return PadRight(out, from, FixedWidth(rule));
        case CellGroup::Number:
            out += PadNumberByFieldType(value, rule.type, false);
            return;
        case CellGroup::Numeric:
            return AppendNumericCell(out, rule, value);
        case CellGroup::VarNumeric:
            return AppendAligned(out, rule, value, kVarNumericWidth);
        case CellGroup::Boolean:
            out += ToBoolean(value) ? "True " : "False";
            return;
        case CellGroup::Other:
            return AppendOtherCell(out, rule, value);
    }
}

}  // namespace

CellGroup GroupOfType(DataTypeEnum type) {
    switch (type) {
        case adChar:
        case adWChar:
        case adVarChar:
        case adLongVarChar:
        case adVarWChar:
        case adLongVarWChar:
            return CellGroup::Text;
        case adDate:
        case adDBDate:
        case adDBTime:
            return CellGroup::Date;
        case adDBTimeStamp:
            return CellGroup::TimeStamp;
        case adSmallInt:
        case adInteger:
        case adDouble:
        case adCurrency:
            return CellGroup::Number;
        case adNumeric:
            return CellGroup::Numeric;
        case adVarNumeric:
            return CellGroup::VarNumeric;
        case adBoolean:
            return CellGroup::Boolean;
        default:
            return CellGroup::Other;
    }
}

CellGroup GroupOfTypeName(std::string_view typeName) {
    if (IsOneOf(typeName, {"Char", "VarWchar", "129", "200", "201", "203", "202", "130"})) return CellGroup::Text;
    if (IsOneOf(typeName, {"Date", "7", "133", "134"})) return CellGroup::Date;
    if (typeName == "135") return CellGroup::TimeStamp;
    if (IsOneOf(typeName, {"Integer", "2", "3", "5", "6"})) return CellGroup::Number;
    if (typeName == "131") return CellGroup::Numeric;
    if (typeName == "139") return CellGroup::VarNumeric;
    if (typeName == "11") return CellGroup::Boolean;
    return CellGroup::Other;
}

void AppendDelimitedCell(std::string& out, const CellRule& rule, const Value& value, std::string_view qualifier) {
    if (value.IsNull()) return;
    if (rule.group != CellGroup::Text) return AppendDefaultText(out, value);
    out += qualifier;
    if (value.Kind() == ValueKind::Text) {
        out += TrimBlanks(value.AsText());
    } else {
        AppendDefaultText(out, value);
    }
    out += qualifier;
}

void AppendFixedCell(std::string& out, const CellRule& rule, const Value& value) {
    if (!value.IsNull()) return AppendFilledCell(out, rule, value);
    if (rule.group == CellGroup::Boolean) {
        out += "False";
    } else {
        AppendBlanks(out, FixedWidth(rule));
    }
}

void AppendFailedFixedCell(std::string& out, const CellRule& rule) {
    if (FixedWidth(rule) <= kMaxCellWidth) AppendBlanks(out, FixedWidth(rule));
}

void AppendHeaderCell(std::string& out, const ColumnEntry& column, bool delimited) {
    const std::string type = AsciiUpper(column.DDType);
    if (delimited) {
        out += column.DCName;
    } else if (IsOneOf(type, {"DATE", "DATETIME", "SHORTDATE", "TIMESTAMP"})) {
        AppendCutOrPadded(out, column.DCName, kDateWidth);
    } else if (IsOneOf(type, {"SMALLINT", "INTEGER", "DOUBLE", "CURRENCY", "LONG", "MONEY", "MEDIUMINT", "LONGINT"})) {
        out += PadNumberByTypeName(Value::OfText(column.DCName), column.DDType, true);
    } else if (type == "BOOLEAN" || type == "BIT") {
        AppendCutOrPadded(out, column.DCName, kBooleanWidth);
    } else {
        AppendCutOrPadded(out, column.DCName, column.DWidth);
    }
}

}  // namespace varnel
