#include "providers/sql/FoxProMoment.h"

#include <charconv>
#include <string>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"

namespace varnel::sql {
namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n,";
    const std::size_t from = text.find_first_not_of(kBlanks);
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

/// A time of day alone; "14" and "2 PM" are hours.
std::optional<std::int64_t> ReadTime(std::string_view text) {
    if (text.empty()) return 0;
    std::string full(text);
    if (full.find(':') == std::string::npos)
        full.insert(std::min(full.find_first_not_of("0123456789"), full.size()), ":00");
    const std::optional<DateTime> time = ParseDateTime(full);
    if (!time || time->days != 0) return std::nullopt;
    return time->micros;
}

/// A number of one to four digits with what separates it from the next; moves text behind both.
bool TakePart(std::string_view& text, int& number) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto digits = static_cast<std::size_t>(read.ptr - text.data());
    if (read.ec != std::errc() || digits > 4) return false;
    text.remove_prefix(digits);
    const bool separator = !text.empty() && (text[0] == '-' || text[0] == '/' || text[0] == '.');
    if (separator) text.remove_prefix(1);
    return true;
}

std::optional<WrittenMoment> ReadStrict(std::string_view text) {
    CivilTime civil;
    if (!TakePart(text, civil.year) || !TakePart(text, civil.month) || !TakePart(text, civil.day)) return std::nullopt;
    if (civil.year < 100 || !IsRealCivil(civil)) return std::nullopt;
    const std::string_view rest = Trimmed(text);
    const std::optional<std::int64_t> time = ReadTime(rest);
    if (!time) return std::nullopt;
    return WrittenMoment{{FromCivil(civil).days, *time}, !rest.empty()};
}

/// word 'text': the text, or nothing when it is no such escape.
std::optional<std::string_view> Escaped(std::string_view inside, std::string_view word) {
    if (inside.size() < word.size() || !EqualNoCase(inside.substr(0, word.size()), word)) return std::nullopt;
    const std::string_view rest = Trimmed(inside.substr(word.size()));
    const bool quoted = rest.size() >= 2 && (rest[0] == '\'' || rest[0] == '"') && rest.back() == rest[0];
    if (!quoted) return std::nullopt;
    return rest.substr(1, rest.size() - 2);
}

std::optional<WrittenMoment> ReadLoose(std::string_view text) {
    const std::optional<DateTime> moment = ParseDateTime(text);
    if (!moment) return std::nullopt;
    return WrittenMoment{*moment, text.find(':') != std::string_view::npos};
}

}  // namespace

bool IsEmptyMoment(std::string_view inside) {
    return inside.find_first_not_of(" \t^/:-.,") == std::string_view::npos;
}

std::optional<WrittenMoment> ReadFoxProMoment(std::string_view inside) {
    const std::string_view text = Trimmed(inside);
    if (!text.empty() && text[0] == '^') return ReadStrict(Trimmed(text.substr(1)));
    for (const std::string_view word : {"ts", "d", "t"})
        if (const auto escaped = Escaped(text, word)) return ReadLoose(*escaped);
    return ReadLoose(text);
}

}  // namespace varnel::sql
