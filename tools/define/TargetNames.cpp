#include "tools/define/TargetNames.h"

#include <algorithm>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Utf8.h"

namespace varnel::admin {
namespace {

/// What the names of one kind of target may be.
struct NameRules {
    std::string_view kind;
    bool isBare;                        ///< letters, digits and underscores, a letter first; else anything but refused
    std::string_view refused;           ///< characters
    std::string_view refusedInTables;   ///< further ones
    std::size_t mostTable, mostColumn;  ///< characters
    bool upperCase = false;
};
constexpr NameRules kRules[] = {
    {"ACCESS", false, ".!`[]\"", "", 64, 64},     {"FOXPRO DIR", true, "", "", 60, 10},
    {"FOXPRO DBC", true, "", "", 60, 60},         {"ORACLE", true, "", "", 30, 30, true},
    {"MSSQL", false, "[]", "", 128, 128},         {"MySQL", false, "`", "./\\", 64, 64},
    {"TEXT", false, "", "/\\:*?\"<>|", 200, 200},
};

const NameRules& RulesOf(std::string_view kind) {
    const auto* found =
        std::find_if(std::begin(kRules), std::end(kRules), [&](const NameRules& rules) { return rules.kind == kind; });
    return found == std::end(kRules) ? kRules[0] : *found;
}

bool IsLetter(char32_t c) {
    return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z');
}

bool IsBorne(const NameRules& rules, NameOf what, char32_t c) {
    if (rules.isBare) return IsLetter(c) || (c >= U'0' && c <= U'9') || c == U'_';
    const bool isAscii = c < 0x80;
    const bool isBeyondServer = c > 0xFFFF;  // MySQL's names have no such characters
    if (c < 0x20 || c == 0x7F || c == kNoCodePoint || (isBeyondServer && rules.kind == "MySQL")) return false;
    if (!isAscii) return true;
    const bool isRefused = rules.refused.find(static_cast<char>(c)) != std::string_view::npos;
    const bool isRefusedHere = rules.refusedInTables.find(static_cast<char>(c)) != std::string_view::npos;
    return !isRefused && (what == NameOf::Column || !isRefusedHere);
}

std::string OfBorneCharacters(const NameRules& rules, NameOf what, std::string_view wanted) {
    std::string name;
    for (std::size_t at = 0; at < wanted.size();) {
        const char32_t c = NextCodePoint(wanted, at);
        AppendCodePoint(name, IsBorne(rules, what, c) ? c : U'_');
    }
    return name;
}

std::string FirstCharacters(std::string_view name, std::size_t most) {
    std::size_t at = 0;
    for (std::size_t characters = 0; at < name.size() && characters < most; ++characters) NextCodePoint(name, at);
    return std::string(TrimBlanks(name.substr(0, at)));
}

/// wanted as the rules have it, but perhaps given already.
std::string Fitted(const NameRules& rules, std::string_view wanted, NameOf what, std::size_t most) {
    std::string name = FirstCharacters(OfBorneCharacters(rules, what, TrimBlanks(wanted)), most);
    if (rules.upperCase) name = AsciiUpper(name);
    const bool startsWell = !name.empty() && (!rules.isBare || IsLetter(static_cast<unsigned char>(name.front())));
    if (!startsWell) name = FirstCharacters((what == NameOf::Table ? "T" : "C") + name, most);
    if (IsToBeAvoided(rules.kind, name)) name = FirstCharacters(name, most - 1) + "_";
    return name;
}

}  // namespace

TargetNames::TargetNames(std::string_view kind, NameOf what) : kind_(RulesOf(kind).kind), what_(what) {}

std::string TargetNames::Take(std::string_view wanted) {
    const NameRules& rules = RulesOf(kind_);
    const std::size_t most = what_ == NameOf::Table ? rules.mostTable : rules.mostColumn;
    const std::string fitted = Fitted(rules, wanted, what_, most);
    std::string name = fitted;
    for (int number = 2; !taken_.insert(FoldCase(name)).second; ++number) {
        const std::string digits = std::to_string(number);
        name = FirstCharacters(fitted, most - digits.size()) + digits;
    }
    return name;
}

}  // namespace varnel::admin
