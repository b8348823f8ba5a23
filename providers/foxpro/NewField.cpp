#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "providers/foxpro/NewTable.h"

namespace varnel::foxpro {
namespace {

struct TypeWord {
    char letter;
    std::string_view words[3];
    std::uint8_t length;  ///< 0: the first argument says it
};
constexpr TypeWord kTypeWords[] = {
    {'C', {"C", "CHAR", "CHARACTER"}, 0}, {'V', {"V", "VARCHAR", ""}, 0},  {'Q', {"Q", "VARBINARY", ""}, 0},
    {'N', {"N", "NUM", "NUMERIC"}, 0},    {'F', {"F", "FLOAT", ""}, 0},    {'I', {"I", "INT", "INTEGER"}, 4},
    {'B', {"B", "DOUBLE", ""}, 8},        {'Y', {"Y", "CURRENCY", ""}, 8}, {'D', {"D", "DATE", ""}, 8},
    {'T', {"T", "DATETIME", ""}, 8},      {'L', {"L", "LOGICAL", ""}, 1},  {'M', {"M", "MEMO", ""}, 4},
    {'G', {"G", "GENERAL", ""}, 4},       {'W', {"W", "BLOB", ""}, 4},
};
constexpr int kMaxTextWidth = 254, kMaxNumberWidth = 20, kUsualNumberWidth = 10, kUsualDoubleDecimals = 2;

[[noreturn]] void RefuseWidth(const ColumnDefinition& column, const std::string& why) {
    throw Error(ErrorKind::Syntax, column.name,
                "Field width or number of decimal places is invalid: " + column.name + " " + column.typeWord + why);
}

const TypeWord& WordOf(const ColumnDefinition& column, std::string_view word) {
    for (const TypeWord& row : kTypeWords) {
        const auto isWord = [&](std::string_view name) { return !name.empty() && EqualNoCase(name, word); };
        if (std::any_of(std::begin(row.words), std::end(row.words), isWord)) return row;
    }
    throw Error(ErrorKind::Syntax, column.name,
                "Column '" + column.name + "' has no type that FoxPro tables know: '" + column.typeWord + "'");
}

void SetTextWidth(const ColumnDefinition& column, NewField& field) {
    if (column.typeArguments.empty()) RefuseWidth(column, " needs a width");
    const int width = column.typeArguments[0];
    if (width < 1 || width > kMaxTextWidth) RefuseWidth(column, ": a width is 1 to 254");
    field.length = static_cast<std::uint8_t>(width);
}

void SetNumberWidth(const ColumnDefinition& column, NewField& field) {
    const auto& arguments = column.typeArguments;
    const int width = arguments.empty() ? kUsualNumberWidth : arguments[0];
    const int decimals = arguments.size() < 2 ? 0 : arguments[1];
    if (width < 1 || width > kMaxNumberWidth) RefuseWidth(column, ": a width is 1 to 20");
    if (decimals < 0 || (decimals > 0 && decimals > width - 1))
        RefuseWidth(column, ": so many decimals need more width");
    field.length = static_cast<std::uint8_t>(width);
    field.decimals = static_cast<std::uint8_t>(decimals);
}

/// What follows the type: AUTOINC, NOCPTRANS.
void SetAttribute(const ColumnDefinition& column, std::string_view word, NewField& field) {
    constexpr std::string_view kTexts = "CVM";
    if (EqualNoCase(word, "NOCPTRANS") && kTexts.find(field.type) != std::string_view::npos) {
        field.binary = true;
    } else if (EqualNoCase(word, "AUTOINC") && field.type == 'I') {
        const auto& arguments = column.typeArguments;
        const int step = arguments.size() < 2 ? 1 : arguments[1];
        if (step < 1 || step > 255) RefuseWidth(column, ": a step is 1 to 255");
        field.autoIncrement = true;
        field.nullable = false;
        field.nextValue = arguments.empty() ? 1 : static_cast<std::uint32_t>(arguments[0]);
        field.step = static_cast<std::uint8_t>(step);
    } else {
        throw Error(ErrorKind::Syntax, column.name,
                    "Column '" + column.name + "': '" + std::string(word) + "' does not go with its type");
    }
}

}  // namespace

NewField FieldOfDefinition(const ColumnDefinition& column, std::string name, bool columnsTakeNull) {
    const std::string_view whole = column.typeWord;
    const std::size_t blank = std::min(whole.find(' '), whole.size());
    const TypeWord& word = WordOf(column, whole.substr(0, blank));
    NewField field;
    field.name = std::move(name);
    field.type = word.letter;
    field.length = word.length;
    field.nullable = columnsTakeNull && !column.notNull && !column.primaryKey && !column.unique;
    if (word.letter == 'C' || word.letter == 'V' || word.letter == 'Q') SetTextWidth(column, field);
    if (word.letter == 'N' || word.letter == 'F') SetNumberWidth(column, field);
    if (word.letter == 'Y') field.decimals = 4;
    if (word.letter == 'B') {
        const bool isSaid = !column.typeArguments.empty();
        field.decimals =
            static_cast<std::uint8_t>(isSaid ? std::clamp(column.typeArguments[0], 0, 18) : kUsualDoubleDecimals);
    }
    if (blank < whole.size()) SetAttribute(column, whole.substr(blank + 1), field);
    return field;
}

}  // namespace varnel::foxpro
