#include "export/Padding.h"

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"

namespace varnel {

namespace {

constexpr int kShortWidth = 7, kDoubleWidth = 17, kMoneyWidth = 21;

int WidthOfTypeName(std::string_view typeName) {
    const std::string upper = AsciiUpper(typeName);
    if (upper == "INTEGER" || typeName == "SMALLINT") return kShortWidth;
    if (upper == "DOUBLE" || upper == "LONG") return kDoubleWidth;
    if (upper == "CURRENCY" || upper == "MONEY") return kMoneyWidth;
    return 0;
}

std::string TextOf(const Value& value, bool raw) {
    if (value.IsNull()) return "";
    return raw ? DefaultText(value) : std::string(TrimBlanks(NumericText(value)));
}

/// The first count characters of a text.
std::string_view FirstCharacters(std::string_view utf8, std::int64_t count) {
    std::size_t at = 0;
    for (; at < utf8.size(); ++at) {
        const bool startsCharacter = (static_cast<unsigned char>(utf8[at]) & 0xC0) != 0x80;
        if (startsCharacter && count-- == 0) break;
    }
    return utf8.substr(0, at);
}

}  // namespace

std::string BlankString(std::int64_t n) {
    return n > 0 ? std::string(static_cast<std::size_t>(n), ' ') : std::string();
}

void AppendCutOrPadded(std::string& out, std::string_view utf8, std::int64_t width) {
    const auto length = static_cast<std::int64_t>(CharacterCount(utf8));
    if (length >= width) {
        out += FirstCharacters(utf8, width < 0 ? 0 : width);
    } else {
        out.append(utf8).append(static_cast<std::size_t>(width - length), ' ');
    }
}

std::string PadNumberByTypeName(const Value& value, std::string_view typeName, bool raw) {
    const int width = WidthOfTypeName(typeName);
    std::string cell;
    if (width > 0) AppendCutOrPadded(cell, TextOf(value, raw), width);
    return cell;
}

int NumberWidth(DataTypeEnum typeCode) {
    switch (typeCode) {
        case adSmallInt:
        case adInteger:
            return kShortWidth;
        case adDouble:
            return kDoubleWidth;
        case adCurrency:
            return kMoneyWidth;
        default:
            return 0;
    }
}

std::string PadNumberByFieldType(const Value& value, DataTypeEnum typeCode, bool raw) {
    const int width = NumberWidth(typeCode);
    if (width == 0) return "";
    const std::string text = TextOf(value, raw);
    const auto length = static_cast<std::int64_t>(CharacterCount(text));
    if (length < width) return BlankString(width - length) + text;
    return std::string(FirstCharacters(text, width));
}

}  // namespace varnel
