#include "providers/text/FormatWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Utf8.h"
#include "providers/text/Utf8Stream.h"

namespace varnel::text {
namespace {

constexpr int kOemPage = 850;  // the Western default

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || code != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
    return number;
}

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view known) { return EqualNoCase(word, known); });
}

/// The first character of a text that is not empty; "" when it is not well-formed.
std::string_view FirstCharacter(std::string_view utf8) {
    std::size_t at = 0;
    return NextCodePoint(utf8, at) == kNoCodePoint ? "" : utf8.substr(0, at);
}

bool SetDelimiter(TextFormat& format, std::string_view delimiter) {
    if (delimiter.empty()) delimiter = ",";
    if (delimiter.find_first_of("\"\r\n") != std::string_view::npos || !IsUtf8(delimiter)) return false;
    format.delimiter = delimiter;
    return true;
}

bool SetLayout(TextFormat& format, std::string_view value) {
    constexpr std::string_view kDelimited = "Delimited";
    if (IsOneOf(value, {"FixedLength", "Fixed"})) {
        format.layout = FileLayout::FixedWidth;
        return true;
    }
    format.layout = FileLayout::Delimited;
    if (IsOneOf(value, {"CSVDelimited", kDelimited})) return SetDelimiter(format, ",");
    if (EqualNoCase(value, "TabDelimited")) return SetDelimiter(format, "\t");
    if (!EqualNoCase(value.substr(0, kDelimited.size()), kDelimited)) return false;
    std::string_view rest = TrimBlanks(value.substr(kDelimited.size()));
    if (rest.size() < 2 || rest.front() != '(' || rest.back() != ')') return false;
    return SetDelimiter(format, rest.substr(1, rest.size() - 2));
}

bool SetHeader(TextFormat& format, std::string_view value) {
    format.hasHeader = IsOneOf(value, {"True", "Yes", "1", "On"});
    return format.hasHeader || IsOneOf(value, {"False", "No", "0", "Off"});
}

bool SetScanRows(TextFormat& format, std::string_view value) {
    const auto number = WholeNumber(value);
    format.maxScanRows = number.value_or(0);
    return number.has_value();
}

bool SetCharacterSet(TextFormat& format, std::string_view value) {
    if (EqualNoCase(value, "ANSI")) return format.codePage = kUnknownPage, true;
    if (EqualNoCase(value, "OEM")) return format.codePage = kOemPage, true;
    if (EqualNoCase(value, "Unicode")) return format.codePage = kUtf16Page, true;
    if (IsOneOf(value, {"UTF-8", "UTF8"})) return format.codePage = kUtf8Page, true;
    const auto number = WholeNumber(value);
    if (!number || *number > 99'999 || !CodePage::IsSupported(static_cast<int>(*number))) return false;
    format.codePage = static_cast<int>(*number);
    return true;
}

/// No value, "none" and two double quotes mean no qualifier. A letter or digit can be none; it stands where a
/// designer had nothing stored, and the default holds.
bool SetQualifier(TextFormat& format, std::string_view value) {
    if (value.empty() || value == "\"\"" || EqualNoCase(value, "none")) return format.qualifier.clear(), true;
    const std::string_view first = FirstCharacter(value);
    const bool isWord = first.size() == 1 && std::string_view("0123456789").find(first) != std::string_view::npos;
    const bool isLetter = first.size() == 1 && ((first[0] | 0x20) >= 'a' && (first[0] | 0x20) <= 'z');
    format.qualifier = isWord || isLetter ? "\"" : first;
    return !first.empty() && first != "\r" && first != "\n";
}

/// A symbol that separates digits: one character, no digit and no sign.
bool SetDecimalSymbol(char& symbol, std::string_view value) {
    if (value.size() != 1 || std::string_view("0123456789+-()eE").find(value[0]) != std::string_view::npos)
        return false;
    symbol = value[0];
    return static_cast<unsigned char>(symbol) < 0x80;
}

bool SetSymbol(std::string& symbol, std::string_view value) {
    symbol = value;
    return IsUtf8(value) && value.find_first_of("0123456789+-()") == std::string_view::npos;
}

bool IsPosition(std::string_view value, std::int64_t last) {
    const auto number = WholeNumber(value);
    return number && *number <= last;
}

struct OptionRule {
    std::string_view name;
    bool (*set)(TextFormat& format, std::string_view value);  // false: the option has no such value
};

constexpr std::array kOptions{
    OptionRule{"Format", SetLayout},
    OptionRule{"ColNameHeader", SetHeader},
    OptionRule{"MaxScanRows", SetScanRows},
    OptionRule{"CharacterSet", SetCharacterSet},
    OptionRule{"TextDelimiter", SetQualifier},
    OptionRule{"DateTimeFormat", [](TextFormat& f, std::string_view v) { return f.datePicture = v, IsUtf8(v); }},
    OptionRule{"DecimalSymbol", [](TextFormat& f, std::string_view v) { return SetDecimalSymbol(f.decimalSymbol, v); }},
    OptionRule{"CurrencySymbol", [](TextFormat& f, std::string_view v) { return SetSymbol(f.currencySymbol, v); }},
    OptionRule{"CurrencyThousandSymbol",
               [](TextFormat& f, std::string_view v) { return SetSymbol(f.currencyThousands, v); }},
    OptionRule{"CurrencyDecimalSymbol",
               [](TextFormat& f, std::string_view v) { return SetDecimalSymbol(f.currencyDecimal, v); }},
    // Read for its faults only: every position is accepted, and the last column may be short in either case.
    OptionRule{"CurrencyPosFormat", [](TextFormat&, std::string_view v) { return IsPosition(v, 3); }},
    OptionRule{"CurrencyNegFormat", [](TextFormat&, std::string_view v) { return IsPosition(v, 15); }},
    OptionRule{"FixedFormat",
               [](TextFormat&, std::string_view v) {
                   return IsOneOf(v, {"RaggedEdge", "TrueFixedLength"});
               }},
};

}  // namespace

Error OptionError(std::string_view file, std::string_view option) {
    return Error(ErrorKind::Syntax, std::string(file),
                 "In the text file specification '" + std::string(file) + "', the '" + std::string(option) +
                     "' option is invalid.");
}

bool SetFormatOption(TextFormat& format, std::string_view option, std::string_view value, std::string_view file) {
    for (const OptionRule& rule : kOptions) {
        if (!EqualNoCase(option, rule.name)) continue;
        if (!rule.set(format, value)) throw OptionError(file, rule.name);
        return true;
    }
    return false;
}

void CheckFormat(const TextFormat& format, std::string_view file) {
    if (format.layout == FileLayout::Delimited) {
        const bool holdsQualifier =
            !format.qualifier.empty() && format.delimiter.find(format.qualifier) != std::string::npos;
        if (holdsQualifier) throw OptionError(file, "TextDelimiter");
        return;
    }
    const auto bare = std::find_if(format.columns.begin(), format.columns.end(),
                                   [](const ColumnSpec& column) { return column.width == 0; });
    if (bare == format.columns.end() && !format.columns.empty()) return;
    const std::string name = format.columns.empty() ? "F1" : bare->name;
    throw Error(ErrorKind::Syntax, std::string(file),
                "In the fixed width specification '" + std::string(file) + "', column '" + name +
                    "' does not specify a width.");
}

}  // namespace varnel::text
