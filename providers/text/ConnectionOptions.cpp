#include "providers/text/ConnectionOptions.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "providers/text/FormatWords.h"
#include "providers/text/IniFile.h"

namespace varnel::text {
namespace {

/// Takes the part up to the next semicolon off rest. A semicolon may be the delimiter itself: between parentheses it
/// belongs to the part.
std::string_view TakePart(std::string_view& rest) {
    std::size_t end = 0;
    for (bool inParentheses = false; end < rest.size(); ++end) {
        if (rest[end] == '(') inParentheses = true;
        if (rest[end] == ')') inParentheses = false;
        if (rest[end] == ';' && (!inParentheses || rest.find(')', end) == std::string_view::npos)) break;
    }
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

std::string_view OptionName(std::string_view key) {
    if (EqualNoCase(key, "HDR")) return "ColNameHeader";
    if (EqualNoCase(key, "FMT")) return "Format";
    return key;
}

}  // namespace

TextFormat ReadConnectionOptions(std::string_view extendedProperties) {
    TextFormat format;
    std::string_view rest = extendedProperties;
    while (!rest.empty()) {
        const std::string_view part = TakePart(rest);
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view key = TrimBlanks(part.substr(0, equals));
        const std::string_view value = Unquoted(TrimBlanks(part.substr(equals + 1)));
        SetFormatOption(format, OptionName(key), value, "Extended Properties");
    }
    return format;
}

}  // namespace varnel::text
