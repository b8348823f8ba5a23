#include "tools/sessionfile/TomlText.h"

#include <algorithm>

namespace varnel::admin {
namespace {

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string Escaped(char c) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    if (c == '"' || c == '\\') return std::string("\\") + c;
    if (c == '\t') return "\\t";
    if (!IsControl(c)) return std::string(1, c);
    return std::string("\\u00") + kHex[static_cast<unsigned char>(c) >> 4] + kHex[c & 15];
}

}  // namespace

std::string Quoted(std::string_view text) {
    bool needsEscapes = false, hasSpecials = false;
    for (const char c : text) {
        needsEscapes = needsEscapes || c == '\'' || IsControl(c);
        hasSpecials = hasSpecials || c == '\\' || c == '"';
    }
    if (hasSpecials && !needsEscapes) return "'" + std::string(text) + "'";
    std::string quoted = "\"";
    for (const char c : text) quoted += Escaped(c);
    return quoted + "\"";
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(line.begin(), line.end(), IsControl, ' ');
    return line;
}

}  // namespace varnel::admin
