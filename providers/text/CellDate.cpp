#include "providers/text/CellDate.h"

#include <array>

#include "ado/types/ConnectionString.h"

namespace varnel::text {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr int kFirstYear = 100;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

/// One of up to three parts of a date.
struct Part {
    int number = 0;
    std::size_t length = 0;  // characters
    bool isName = false;     // of a month
};

/// Reads a text from left to right.
class Reader {
public:
    explicit Reader(std::string_view rest) : rest_(rest) {}

    bool AtEnd() const { return rest_.empty(); }
    char Peek() const { return rest_.empty() ? '\0' : rest_[0]; }
    bool Take(char c) {
        if (Peek() != c || rest_.empty()) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// A number of at most longest digits.
    bool TakeNumber(Part& part, std::size_t longest) {
        part = {};
        while (part.length < rest_.size() && IsDigit(rest_[part.length])) {
            if (part.length == longest) return false;
            part.number = part.number * 10 + (rest_[part.length++] - '0');
        }
        rest_.remove_prefix(part.length);
        return part.length > 0;
    }
    std::string_view TakeLetters() {
        std::size_t length = 0;
        while (length < rest_.size() && IsLetter(rest_[length])) ++length;
        const std::string_view letters = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return letters;
    }
    /// A number or a month's name.
    bool TakePart(Part& part) {
        if (!IsLetter(Peek())) return TakeNumber(part, 4);
        const int month = MonthOf(TakeLetters());
        part = {month, 0, true};
        return month > 0;
    }

private:
    std::string_view rest_;
};

bool IsShort(const Part& part) {
    return !part.isName && part.length <= 2;
}

/// A year of two or four digits.
bool SetYear(const Part& part, DateShape& shape) {
    if (part.isName || (part.length != 2 && part.length != 4)) return false;
    shape.year = part.length == 2 ? FullYear(part.number) : part.number;
    return true;
}

/// The fraction of a second: digits beyond a microsecond are cut off.
bool TakeFraction(Reader& reader, std::int64_t& micros) {
    std::int64_t unit = kMicrosPerSecond / 10;
    if (!IsDigit(reader.Peek())) return false;
    for (; IsDigit(reader.Peek()); unit /= 10) {
        micros += (reader.Peek() - '0') * unit;
        reader.Take(reader.Peek());
    }
    return true;
}

/// AM or PM behind a time, if any; false for other letters.
bool TakeHalf(Reader& reader, int& hour) {
    reader.Take(' ');
    const std::string_view half = reader.TakeLetters();
    if (half.empty()) return true;
    const bool isPm = EqualNoCase(half, "PM");
    if ((!isPm && !EqualNoCase(half, "AM")) || hour < 1 || hour > 12) return false;
    hour = hour % 12 + (isPm ? 12 : 0);
    return true;
}

/// h:mm, h:mm:ss or h:mm:ss.f, with or without AM or PM, up to the end. hour: already read.
bool TakeTimeBehindHour(Reader& reader, const Part& hourPart, DateShape& shape) {
    Part minute, second;
    if (!IsShort(hourPart) || !reader.Take(':') || !reader.TakeNumber(minute, 2) || minute.length != 2) return false;
    std::int64_t micros = 0;
    if (reader.Take(':')) {
        if (!reader.TakeNumber(second, 2) || second.length != 2) return false;
        if (reader.Take('.') && !TakeFraction(reader, micros)) return false;
    }
    int hour = hourPart.number;
    if (!TakeHalf(reader, hour) || !reader.AtEnd()) return false;
    if (hour > 23 || minute.number > 59 || second.number > 59) return false;
    shape.micros = (hour * 3600 + minute.number * 60 + second.number) * kMicrosPerSecond + micros;
    return true;
}

/// The end of a text, or a time behind a blank or T.
bool TakeTime(Reader& reader, DateShape& shape) {
    if (reader.AtEnd()) return true;
    Part hour;
    return (reader.Take(' ') || reader.Take('T')) && reader.TakeNumber(hour, 2) &&
           TakeTimeBehindHour(reader, hour, shape);
}

/// Month name, day and year: "Nov 18, 2026".
bool TakeLongDate(Reader& reader, const Part& month, DateShape& shape) {
    Part day, year;
    if (!reader.TakeNumber(day, 2) || !reader.Take(',') || !reader.Take(' ') || !reader.TakeNumber(year, 4)) {
        return false;
    }
    shape.first = month.number;
    shape.second = day.number;
    return SetYear(year, shape);
}

/// Tells year, month and day apart by their forms.
bool Arrange(const Part& a, const Part& b, const Part& c, DateShape& shape) {
    if (a.length == 4 && !a.isName && IsShort(c)) {  // 2026-11-18, 2026-Nov-18
        shape.first = b.number;
        shape.second = c.number;
        return (b.isName || IsShort(b)) && SetYear(a, shape);
    }
    if (a.isName == b.isName && (a.isName || !IsShort(a) || !IsShort(b))) return false;
    if ((!a.isName && !IsShort(a)) || (!b.isName && !IsShort(b))) return false;
    shape.isOpen = !a.isName && !b.isName;
    shape.first = b.isName ? b.number : a.number;
    shape.second = b.isName ? a.number : b.number;
    return SetYear(c, shape);
}

}  // namespace

int MonthOf(std::string_view name) {
    for (std::size_t k = 0; k < kMonths.size(); ++k) {
        if (EqualNoCase(name, kMonths[k]) || EqualNoCase(name, kMonths[k].substr(0, 3))) return static_cast<int>(k + 1);
    }
    return 0;
}

int FullYear(int twoDigits) {
    constexpr int kLastOfThisCentury = 29;
    return twoDigits + (twoDigits <= kLastOfThisCentury ? 2000 : 1900);
}

bool ScanDate(std::string_view text, DateShape& shape) {
    shape = {};
    Reader reader(text);
    Part a, b, c;
    if (!reader.TakePart(a)) return false;
    const char separator = reader.Peek();
    if (separator == ':') return TakeTimeBehindHour(reader, a, shape);
    if (separator == ' ' && a.isName) {
        return reader.Take(' ') && TakeLongDate(reader, a, shape) && TakeTime(reader, shape);
    }
    if (separator != '-' && separator != '/' && separator != '.') return false;
    return reader.Take(separator) && reader.TakePart(b) && reader.Take(separator) && reader.TakePart(c) &&
           Arrange(a, b, c, shape) && TakeTime(reader, shape);
}

bool MomentOfCivil(const CivilTime& civil, DateTime& moment) {
    if (civil.year < kFirstYear || !IsRealCivil(civil)) return false;
    moment = FromCivil(civil);
    return true;
}

bool MomentOf(const DateShape& shape, bool dayFirst, DateTime& moment) {
    CivilTime civil;
    civil.year = shape.year;
    civil.month = shape.isOpen && dayFirst ? shape.second : shape.first;
    civil.day = shape.isOpen && dayFirst ? shape.first : shape.second;
    if (!MomentOfCivil(civil, moment)) return false;
    moment.micros = shape.micros;
    return true;
}

}  // namespace varnel::text
