#include "tools/sessionfile/ColumnShortForm.h"

#include <charconv>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "tools/sessionfile/ColumnTypes.h"

namespace varnel::admin {
namespace {

constexpr std::string_view kArrow = "->";

[[noreturn]] void Refuse(const std::string& what) {
    throw Error(ErrorKind::Syntax, "",
                what + "; write a column as \"Name Type(width,scale) -> TargetName TargetType\"");
}

void SkipBlanks(std::string_view& rest) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
}

std::string TakeName(std::string_view& rest) {
    SkipBlanks(rest);
    const bool bracketed = !rest.empty() && rest.front() == '[';
    if (bracketed) rest.remove_prefix(1);
    const std::size_t end = rest.find(bracketed ? ']' : ' ');
    if (bracketed && end == std::string_view::npos) Refuse("a [ without its ]");
    std::string name(rest.substr(0, end));
    rest.remove_prefix(std::min(rest.size(), name.size() + (bracketed ? 1 : 0)));
    if (name.empty() || name == kArrow) Refuse("a column without a name");
    return name;
}

std::int64_t NumberOf(std::string_view text) {
    text = TrimBlanks(text);
    std::int64_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size())
        Refuse("\"" + std::string(text) + "\" is no width or scale");
    return number;
}

void TakeSizes(std::string_view inside, ColumnSide& side) {
    const std::size_t comma = inside.find(',');
    side.width = NumberOf(inside.substr(0, comma));
    if (comma != std::string_view::npos) side.scale = NumberOf(inside.substr(comma + 1));
}

// rest: what follows the name, up to the arrow or the end: "Type", "Type(width)", "Type(width,scale)" or nothing.
void TakeType(std::string_view rest, ColumnSide& side) {
    rest = TrimBlanks(rest);
    const std::size_t open = rest.find('(');
    side.type = TrimBlanks(rest.substr(0, open));
    if (open == std::string_view::npos) return;
    if (rest.back() != ')') Refuse("a ( without its ) at the end");
    TakeSizes(rest.substr(open + 1, rest.size() - open - 2), side);
}

std::optional<std::string> WrittenName(const std::string& name) {
    if (name.find(']') != std::string::npos || name.empty()) return std::nullopt;
    const bool plain = name.find(' ') == std::string::npos && name.front() != '[' && name != kArrow;
    return plain ? name : "[" + name + "]";
}

std::string Sizes(std::int32_t width, std::int16_t scale) {
    return "(" + std::to_string(width) + (scale == 0 ? "" : "," + std::to_string(scale)) + ")";
}

}  // namespace

ColumnSides ParseShortForm(std::string_view text) {
    ColumnSides sides;
    std::string_view rest = text;
    sides.source.name = TakeName(rest);
    const std::size_t arrow = rest.find(kArrow);
    TakeType(rest.substr(0, arrow), sides.source);
    if (arrow == std::string_view::npos) return sides;
    rest.remove_prefix(arrow + kArrow.size());
    sides.target.emplace();
    sides.target->name = TakeName(rest);
    TakeType(rest, *sides.target);
    return sides;
}

std::optional<std::string> ShortForm(const ColumnMapping& column) {
    if (!column.stored.empty()) return std::nullopt;
    const auto source = WrittenName(column.source), target = WrittenName(column.target);
    if (!source || !target || !column.selected || StoredTypeName(column.type) != column.type) return std::nullopt;
    if (column.sourceTypeName != AsciiUpper(column.type)) return std::nullopt;
    if (column.targetType.find_first_of("()>") != std::string::npos) return std::nullopt;
    std::string line = *source + " " + column.type;
    const bool usual = !NeedsWidth(column.type) && column.width == UsualWidth(column.type) && column.scale == 0;
    if (!usual) line += Sizes(column.width, column.scale);
    const bool sameSize = column.targetWidth == column.width && column.targetScale == column.scale;
    if (sameSize && column.targetType.empty() && column.target == column.source) return line;
    line += " -> " + *target;
    if (!column.targetType.empty()) line += " " + column.targetType;
    if (sameSize) return line;
    if (column.targetType.empty()) return std::nullopt;
    return line + Sizes(column.targetWidth, column.targetScale);
}

}  // namespace varnel::admin
