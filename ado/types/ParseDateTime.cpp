#include <array>
#include <optional>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"

namespace varnel {
namespace {

constexpr std::string_view kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                            "July",    "August",   "September", "October", "November", "December"};
constexpr int kMicroDigits = 6;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// A run of digits: its value and how many they were.
struct DigitRun {
    int value = 0;
    std::size_t digits = 0;
};

bool TakeChar(std::string_view& rest, char wanted) {
    if (rest.empty() || rest.front() != wanted) return false;
    rest.remove_prefix(1);
    return true;
}

/// Takes one to four digits.
bool TakeDigits(std::string_view& rest, DigitRun& run) {
    run = {};
    for (; run.digits < rest.size() && IsDigit(rest[run.digits]); ++run.digits) {
        if (run.digits == 4) return false;
        run.value = run.value * 10 + (rest[run.digits] - '0');
    }
    rest.remove_prefix(run.digits);
    return run.digits > 0;
}

/// Takes an English month name, whole or its first three letters.
bool TakeMonthName(std::string_view& rest, int& month) {
    std::size_t letters = 0;
    while (letters < rest.size() && IsLetter(rest[letters])) ++letters;
    const std::string_view word = rest.substr(0, letters);
    for (int k = 0; k < 12; ++k) {
        if (EqualNoCase(word, kMonthNames[k]) || EqualNoCase(word, kMonthNames[k].substr(0, 3))) {
            month = k + 1;
            rest.remove_prefix(letters);
            return true;
        }
    }
    return false;
}

int FullYear(const DigitRun& year) {
    if (year.digits > 2) return year.value;
    return year.value < 30 ? 2000 + year.value : 1900 + year.value;
}

/// "2026-11-18", "11/18/2026", "18-Nov-2026", with - or / between the parts.
bool TakeDate(std::string_view& rest, CivilTime& civil) {
    DigitRun first, second, third;
    if (!TakeDigits(rest, first) || rest.empty()) return false;
    const char separator = rest.front();
    if ((separator != '-' && separator != '/') || !TakeChar(rest, separator)) return false;
    int namedMonth = 0;
    if (!TakeMonthName(rest, namedMonth) && !TakeDigits(rest, second)) return false;
    if (!TakeChar(rest, separator) || !TakeDigits(rest, third)) return false;
    if (namedMonth != 0) {
        civil.year = FullYear(third), civil.month = namedMonth, civil.day = first.value;
    } else if (first.digits == 4) {
        civil.year = first.value, civil.month = second.value, civil.day = third.value;
    } else {
        const bool dayFirst = first.value > 12;
        civil.year = FullYear(third);
        civil.month = dayFirst ? second.value : first.value;
        civil.day = dayFirst ? first.value : second.value;
    }
    return true;
}

/// The digits behind a second's point; what a microsecond does not hold must be zero.
bool TakeFraction(std::string_view& rest, int& micros) {
    int digits = 0;
    micros = 0;
    for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1), ++digits) {
        if (digits < kMicroDigits) {
            micros = micros * 10 + (rest.front() - '0');
        } else if (rest.front() != '0') {
            return false;
        }
    }
    for (int k = digits; k < kMicroDigits; ++k) micros *= 10;
    return digits > 0;
}

/// Takes AM or PM, with or without a blank before it, and turns the hour into one of the 24.
bool TakeHalfOfDay(std::string_view& rest, int& hour) {
    rest = TrimBlanks(rest);
    if (rest.empty()) return true;
    const bool afternoon = EqualNoCase(rest, "PM");
    if ((!afternoon && !EqualNoCase(rest, "AM")) || hour < 1 || hour > 12) return false;
    hour = hour % 12 + (afternoon ? 12 : 0);
    rest = {};
    return true;
}

/// "16:23", "16:23:05.25", "4:23:05 PM", up to the end of the text.
bool TakeTime(std::string_view& rest, CivilTime& civil) {
    DigitRun hour, minute, second;
    if (!TakeDigits(rest, hour) || !TakeChar(rest, ':') || !TakeDigits(rest, minute)) return false;
    if (TakeChar(rest, ':')) {
        if (!TakeDigits(rest, second)) return false;
        if (TakeChar(rest, '.') && !TakeFraction(rest, civil.micros)) return false;
    }
    if (hour.digits > 2 || minute.digits > 2 || second.digits > 2) return false;
    civil.hour = hour.value, civil.minute = minute.value, civil.second = second.value;
    return TakeHalfOfDay(rest, civil.hour) && rest.empty();
}

int TwoDigits(std::string_view text, std::size_t at) {
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

/// "YYYY-MM-DD HH:MM:SS" and the like, each character where it belongs; the fraction is left in rest.
bool TakeFixedForm(std::string_view text, CivilTime& civil, std::string_view& rest) {
    constexpr std::string_view kForm = "0000-00-00 00:00:00";
    if (text.size() < kForm.size()) return false;
    for (std::size_t k = 0; k < kForm.size(); ++k) {
        const bool fits = kForm[k] == '0' ? IsDigit(text[k]) : text[k] == kForm[k] || (k == 10 && text[k] == 'T');
        if (!fits) return false;
    }
    civil.year = TwoDigits(text, 0) * 100 + TwoDigits(text, 2);
    civil.month = TwoDigits(text, 5), civil.day = TwoDigits(text, 8);
    civil.hour = TwoDigits(text, 11), civil.minute = TwoDigits(text, 14), civil.second = TwoDigits(text, 17);
    rest = text.substr(kForm.size());
    return true;
}

std::optional<DateTime> RealMoment(const CivilTime& civil) {
    if (!IsRealCivil(civil)) return std::nullopt;
    return FromCivil(civil);
}

}  // namespace

std::optional<DateTime> ParseDateTime(std::string_view text) {
    text = TrimBlanks(text);
    CivilTime civil;
    std::string_view rest;
    if (TakeFixedForm(text, civil, rest)) {
        if (rest.empty() || (TakeChar(rest, '.') && TakeFraction(rest, civil.micros) && rest.empty())) {
            return RealMoment(civil);
        }
        civil = {};
    }
    rest = text;
    if (TakeDate(rest, civil)) {
        if (rest.empty()) return RealMoment(civil);
        if (rest.front() != ' ' && rest.front() != 'T') return std::nullopt;
        rest = TrimBlanks(rest.substr(1));
    } else {
        rest = text;
        civil = {};
    }
    return TakeTime(rest, civil) ? RealMoment(civil) : std::nullopt;
}

}  // namespace varnel
