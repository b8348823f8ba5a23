#include "providers/text/DatePicture.h"

#include <algorithm>
#include <array>

#include "ado/types/ConnectionString.h"
#include "providers/text/CellDate.h"

namespace varnel::text {
namespace {

constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return Lower(c) >= 'a' && Lower(c) <= 'z';
}

/// The characters at the start that equal the first one, without case.
std::string_view FirstRun(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && Lower(text[length]) == Lower(text[0])) ++length;
    return text.substr(0, length);
}

std::string_view TakeLetters(std::string_view& rest) {
    std::size_t length = 0;
    while (length < rest.size() && IsLetter(rest[length])) ++length;
    const std::string_view letters = rest.substr(0, length);
    rest.remove_prefix(length);
    return letters;
}

bool TakeDigits(std::string_view& rest, std::size_t least, std::size_t most, int& number) {
    std::size_t length = 0;
    number = 0;
    while (length < most && length < rest.size() && IsDigit(rest[length])) {
        number = number * 10 + (rest[length++] - '0');
    }
    rest.remove_prefix(length);
    return length >= least;
}

bool IsWeekday(std::string_view name) {
    return std::any_of(kWeekdays.begin(), kWeekdays.end(), [&](std::string_view day) {
        return EqualNoCase(name, day) || EqualNoCase(name, day.substr(0, 3));
    });
}

}  // namespace

DatePicture::DatePicture(std::string_view picture) {
    constexpr std::array<std::string_view, 2> kHalves = {"am/pm", "a/p"};
    std::string_view rest = picture;
    while (!rest.empty()) {
        const auto half = std::find_if(kHalves.begin(), kHalves.end(), [&](std::string_view word) {
            return EqualNoCase(rest.substr(0, word.size()), word);
        });
        std::size_t taken = 1;
        if (half != kHalves.end()) {
            tokens_.push_back({Symbol::Half, half->size(), ""});
            taken = half->size();
        } else if (std::string_view("ymdhns").find(Lower(rest[0])) != std::string_view::npos) {
            taken = FirstRun(rest).size();
            AddSymbol(rest.substr(0, taken));
        } else if (rest[0] == '"') {
            const std::size_t close = std::min(rest.find('"', 1), rest.size());
            for (const char c : rest.substr(1, close - 1)) AddLiteral(c);
            taken = std::min(close + 1, rest.size());
        } else {
            if (rest[0] == '\\' && rest.size() > 1) rest.remove_prefix(1);
            AddLiteral(rest[0]);
        }
        rest.remove_prefix(taken);
    }
    hasDate_ = std::any_of(tokens_.begin(), tokens_.end(), IsOfDate);
}

void DatePicture::AddLiteral(char c) {
    if (tokens_.empty() || tokens_.back().symbol != Symbol::Literal) tokens_.push_back({Symbol::Literal, 0, ""});
    tokens_.back().literal += c;
}

void DatePicture::AddSymbol(std::string_view run) {
    const auto lastSymbol = std::find_if(tokens_.rbegin(), tokens_.rend(),
                                         [](const Token& token) { return token.symbol != Symbol::Literal; });
    const bool isBehindHour = lastSymbol != tokens_.rend() && lastSymbol->symbol == Symbol::Hour;
    Symbol symbol = Symbol::Second;
    switch (Lower(run[0])) {
        case 'y':
            symbol = run.size() <= 2 ? Symbol::ShortYear : Symbol::Year;
            break;
        case 'm':
            symbol = run.size() > 2 ? Symbol::MonthName : isBehindHour ? Symbol::Minute : Symbol::Month;
            break;
        case 'd':
            symbol = run.size() > 2 ? Symbol::DayName : Symbol::Day;
            break;
        case 'h':
            symbol = Symbol::Hour;
            break;
        case 'n':
            symbol = Symbol::Minute;
            break;
        default:
            break;
    }
    tokens_.push_back({symbol, run.size(), ""});
}

bool DatePicture::IsNumber(const Token& token) {
    return token.symbol != Symbol::Literal && token.symbol != Symbol::MonthName && token.symbol != Symbol::DayName &&
           token.symbol != Symbol::Half;
}

bool DatePicture::IsOfDate(const Token& token) {
    return token.symbol >= Symbol::Year && token.symbol <= Symbol::Day;
}

bool DatePicture::RestIsTime(std::size_t from) const {
    const auto middle = tokens_.begin() + static_cast<std::ptrdiff_t>(from);
    return std::any_of(tokens_.begin(), middle, IsOfDate) && std::none_of(middle, tokens_.end(), IsOfDate);
}

/// Takes what token stands for off rest. digitsFollow: a number follows at once, so this one has all its digits.
bool DatePicture::Take(const Token& token, bool digitsFollow, std::string_view& rest, Reading& reading) const {
    CivilTime& civil = reading.civil;
    const std::size_t least = digitsFollow && token.length > 1 ? 2 : 1;
    switch (token.symbol) {
        case Symbol::Literal:
            if (!rest.starts_with(token.literal)) return false;
            rest.remove_prefix(token.literal.size());
            return true;
        case Symbol::Year:
            return TakeDigits(rest, 4, 4, civil.year);
        case Symbol::ShortYear:
            if (!TakeDigits(rest, 2, 2, civil.year)) return false;
            civil.year = FullYear(civil.year);
            return true;
        case Symbol::MonthName:
            civil.month = MonthOf(TakeLetters(rest));
            return civil.month > 0;
        case Symbol::Month:
            return TakeDigits(rest, least, 2, civil.month);
        case Symbol::DayName:
            return IsWeekday(TakeLetters(rest));
        case Symbol::Day:
            return TakeDigits(rest, least, 2, civil.day);
        case Symbol::Hour:
            return TakeDigits(rest, least, 2, civil.hour);
        case Symbol::Minute:
            return TakeDigits(rest, least, 2, civil.minute);
        case Symbol::Second:
            return TakeDigits(rest, least, 2, civil.second);
        case Symbol::Half: {
            const std::string_view half = TakeLetters(rest);
            reading.half = EqualNoCase(half, "PM") || EqualNoCase(half, "P") ? 1 : 0;
            return reading.half == 1 || EqualNoCase(half, "AM") || EqualNoCase(half, "A");
        }
    }
    return false;
}

bool DatePicture::Read(std::string_view text, DateTime& moment) const {
    Reading reading;
    if (hasDate_) reading.civil.month = reading.civil.day = 1;
    std::string_view rest = text;
    std::size_t k = 0;
    for (; k < tokens_.size() && !(rest.empty() && RestIsTime(k)); ++k) {
        const bool digitsFollow = k + 1 < tokens_.size() && IsNumber(tokens_[k + 1]);
        if (!Take(tokens_[k], digitsFollow, rest, reading)) return false;
    }
    if (!rest.empty() || tokens_.empty()) return false;
    if (reading.half >= 0) {
        if (reading.civil.hour < 1 || reading.civil.hour > 12) return false;
        reading.civil.hour = reading.civil.hour % 12 + 12 * reading.half;
    }
    return MomentOfCivil(reading.civil, moment);
}

}  // namespace varnel::text
