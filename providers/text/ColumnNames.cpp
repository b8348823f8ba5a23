#include "providers/text/ColumnNames.h"

#include <unordered_set>

#include "platform/CodePage.h"
#include "platform/Utf8.h"

namespace varnel::text {
namespace {

constexpr std::size_t kOldNameCharacters = 64;

std::string PositionName(std::size_t position) {
    return "F" + std::to_string(position + 1);
}

char Reportable(char c) {
    switch (c) {
        case '.':
            return '#';
        case '[':
            return '(';
        case ']':
            return ')';
        case '!':
        case '`':
            return '_';
        default:
            return static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '_' : c;
    }
}

std::string Reportable(std::string_view headerText) {
    const std::size_t first = headerText.find_first_not_of(" \t");
    if (first == std::string_view::npos) return "";
    std::string name(headerText.substr(first, headerText.find_last_not_of(" \t") - first + 1));
    for (char& c : name) c = Reportable(c);
    return name;
}

std::string FirstCharacters(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (std::size_t k = 0; k < count && at < text.size(); ++k) NextCodePoint(text, at);
    return std::string(text.substr(0, at));
}

}  // namespace

std::vector<std::string> ReportedNames(std::span<const std::string> headerTexts) {
    std::vector<std::string> names;
    std::unordered_set<std::string> asWritten, given;
    for (std::size_t k = 0; k < headerTexts.size(); ++k) {
        names.push_back(Reportable(headerTexts[k]));
        if (names[k].empty()) names[k] = PositionName(k);
        asWritten.insert(FoldCase(names[k]));
    }
    std::unordered_map<std::string, std::size_t> lastNumber;  // by folded name
    for (std::string& name : names) {
        const std::string folded = FoldCase(name);
        if (given.insert(folded).second) continue;
        std::size_t& number = lastNumber[folded];
        std::string candidate;
        do {
            candidate = folded + std::to_string(++number);
        } while (asWritten.contains(candidate) || !given.insert(candidate).second);
        name += std::to_string(number);
    }
    return names;
}

ColumnNames::ColumnNames(std::span<const std::string> reported, std::span<const std::string> headerTexts) : ways_(4) {
    for (std::size_t k = 0; k < reported.size(); ++k) {
        ways_[0].emplace(FoldCase(reported[k]), k);
        if (k < headerTexts.size()) ways_[1].emplace(FoldCase(headerTexts[k]), k);
        ways_[2].emplace(FoldCase(PositionName(k)), k);
        ways_[3].emplace(FoldCase(FirstCharacters(reported[k], kOldNameCharacters)), k);
    }
}

std::optional<std::size_t> ColumnNames::Find(std::string_view name) const {
    const std::string folded = FoldCase(name);
    for (const Positions& positions : ways_) {
        const auto found = positions.find(folded);
        if (found != positions.end()) return found->second;
    }
    return std::nullopt;
}

}  // namespace varnel::text
