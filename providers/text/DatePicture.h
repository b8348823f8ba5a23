// A date picture of Schema.ini (DateTimeFormat=yyyy-mm-dd hh:nn:ss): the one form in which moments then stand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DateTime.h"

namespace varnel::text {

/// Symbols without case: yyyy yy, mmmm mmm mm m, dddd ddd dd d, hh h, nn n, ss s, AM/PM am/pm A/P; m and mm right
/// behind an hour are minutes. Text in double quotes and a character behind a backslash stand for themselves, and so
/// does everything else. A day or month that the picture does not name is the first.
class DatePicture {
public:
    explicit DatePicture(std::string_view picture);

    /// text: trimmed. Numbers may lack their leading zero where something else than a number follows. A picture with
    /// date and time also takes the date alone. False for anything else, and for what is no real moment.
    bool Read(std::string_view text, DateTime& moment) const;

private:
    enum class Symbol : std::uint8_t {
        Literal,
        Year,
        ShortYear,
        MonthName,
        Month,
        DayName,
        Day,
        Hour,
        Minute,
        Second,
        Half
    };
    struct Token {
        Symbol symbol = Symbol::Literal;
        std::size_t length = 0;  // of the symbol in the picture
        std::string literal;
    };
    struct Reading {
        CivilTime civil;
        int half = -1;  // 0 AM, 1 PM, -1 not said
    };

    void AddSymbol(std::string_view run);
    void AddLiteral(char c);
    bool Take(const Token& token, bool digitsFollow, std::string_view& rest, Reading& reading) const;
    static bool IsNumber(const Token& token);
    static bool IsOfDate(const Token& token);
    bool RestIsTime(std::size_t from) const;

    std::vector<Token> tokens_;
    bool hasDate_ = false;
};

}  // namespace varnel::text
