#include "providers/text/ColLine.h"

#include <array>
#include <charconv>

#include "ado/types/ConnectionString.h"
#include "providers/text/IniFile.h"

namespace varnel::text {
namespace {

constexpr std::string_view kBlank = " \t";
constexpr std::size_t kWidest = 100'000'000;  // characters

struct TypeWord {
    std::string_view word;
    DataTypeEnum type;
};
constexpr std::array kTypeWords{
    TypeWord{"Bit", adBoolean},           TypeWord{"Byte", adUnsignedTinyInt}, TypeWord{"Short", adSmallInt},
    TypeWord{"Integer", adSmallInt},      TypeWord{"Long", adInteger},         TypeWord{"Currency", adCurrency},
    TypeWord{"Single", adSingle},         TypeWord{"Double", adDouble},        TypeWord{"Float", adDouble},
    TypeWord{"Decimal", adNumeric},       TypeWord{"DateTime", adDate},        TypeWord{"Date", adDate},
    TypeWord{"Text", adVarWChar},         TypeWord{"Char", adVarWChar},        TypeWord{"Memo", adLongVarWChar},
    TypeWord{"LongChar", adLongVarWChar},
};

DataTypeEnum TypeOf(std::string_view word) {
    for (const TypeWord& known : kTypeWords) {
        if (EqualNoCase(known.word, word)) return known.type;
    }
    return adEmpty;
}

void SkipBlanks(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlank), rest.size()));
}

/// The next word, without the blanks before it; "" at the end.
std::string_view TakeWord(std::string_view& rest) {
    SkipBlanks(rest);
    const std::string_view word = rest.substr(0, rest.find_first_of(kBlank));
    rest.remove_prefix(word.size());
    return word;
}

/// A name in double quotes (a quote in it is doubled), or one word.
bool TakeName(std::string_view& rest, std::string& name) {
    SkipBlanks(rest);
    name.clear();
    if (!rest.starts_with('"')) return !(name = TakeWord(rest)).empty();
    for (std::size_t at = 1; at < rest.size(); ++at) {
        if (rest[at] == '"') {
            const bool isDoubled = at + 1 < rest.size() && rest[at + 1] == '"';
            if (!isDoubled) {
                rest.remove_prefix(at + 1);
                return !name.empty();
            }
            ++at;
        }
        name += rest[at];
    }
    return false;
}

/// The words of a date picture, up to the width.
std::string TakePicture(std::string_view& rest) {
    SkipBlanks(rest);
    const std::string_view all = rest;
    std::string_view behind = rest;
    for (std::string_view word = TakeWord(behind); !word.empty(); word = TakeWord(behind)) {
        if (EqualNoCase(word, "Width")) break;
        rest = behind;
    }
    return std::string(Unquoted(all.substr(0, all.size() - rest.size())));
}

bool TakeWidth(std::string_view& rest, std::size_t& width) {
    const std::string_view word = TakeWord(rest);
    if (word.empty()) return true;
    const std::string_view digits = TakeWord(rest);
    const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), width);
    const bool isNumber = !digits.empty() && code == std::errc() && end == digits.data() + digits.size();
    SkipBlanks(rest);
    return EqualNoCase(word, "Width") && isNumber && width >= 1 && width <= kWidest && rest.empty();
}

bool ReadParts(std::string_view rest, ColumnSpec& column) {
    column = {};
    if (!TakeName(rest, column.name)) return false;
    std::string_view behindType = rest;
    column.type = TypeOf(TakeWord(behindType));
    if (column.type != adEmpty) rest = behindType;
    if (column.type == adDate) column.datePicture = TakePicture(rest);
    return TakeWidth(rest, column.width);
}

}  // namespace

std::string_view TypeWordOf(DataTypeEnum type) {
    for (const TypeWord& known : kTypeWords) {
        if (known.type == type) return known.word;
    }
    return "Text";
}

bool ReadColLine(std::string_view value, ColumnSpec& column) {
    const std::string_view inner = Unquoted(value);
    if (inner.size() == value.size()) return ReadParts(value, column);
    // A value quoted as a whole loses the quotes first; what is then no column line is a quoted name alone.
    return ReadParts(inner, column) || ReadParts(value, column);
}

}  // namespace varnel::text
