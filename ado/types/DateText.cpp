#include <array>

#include "ado/types/ValueText.h"

namespace varnel {
namespace {

constexpr const char* kMonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// A text built up on the stack and appended in one go.
class Line {
public:
    void Put(char c) { text_[size_++] = c; }
    void Put(const char* text) {
        while (*text != 0) Put(*text++);
    }
    /// number with at least digits digits, zeros in front.
    void PutNumber(int number, int digits) {
        std::array<char, 12> reversed;
        int count = 0;
        for (; number > 0 || count < digits; number /= 10) {
            reversed[static_cast<std::size_t>(count++)] = static_cast<char>('0' + number % 10);
        }
        while (count > 0) Put(reversed[static_cast<std::size_t>(--count)]);
    }
    std::string_view Text() const { return {text_.data(), size_}; }

private:
    std::array<char, 48> text_;
    std::size_t size_ = 0;
};

void PutShortDate(Line& line, const CivilTime& civil) {
    line.PutNumber(civil.month, 1);
    line.Put('/');
    line.PutNumber(civil.day, 1);
    line.Put('/');
    line.PutNumber(civil.year, 1);
}

void PutTwelveHours(Line& line, const CivilTime& civil, int hourDigits) {
    line.PutNumber(civil.hour % 12 == 0 ? 12 : civil.hour % 12, hourDigits);
    line.Put(':');
    line.PutNumber(civil.minute, 2);
    line.Put(':');
    line.PutNumber(civil.second, 2);
    line.Put(civil.hour < 12 ? " AM" : " PM");
}

void PutIsoDate(Line& line, const CivilTime& civil) {
    line.PutNumber(civil.year, 4);
    line.Put('-');
    line.PutNumber(civil.month, 2);
    line.Put('-');
    line.PutNumber(civil.day, 2);
}

void PutTime(Line& line, const CivilTime& civil, char separator) {
    line.PutNumber(civil.hour, 2);
    line.Put(separator);
    line.PutNumber(civil.minute, 2);
    line.Put(separator);
    line.PutNumber(civil.second, 2);
}

DateTime RoundedToTheSecond(DateTime moment) {
    moment.micros = (moment.micros + kMicrosPerSecond / 2) / kMicrosPerSecond * kMicrosPerSecond;
    if (moment.micros >= kMicrosPerDay) moment = {moment.days + 1, 0};
    return moment;
}

}  // namespace

void AppendGeneralDate(std::string& out, DateTime moment) {
    moment = RoundedToTheSecond(moment);
    const CivilTime civil = ToCivil(moment);
    Line line;
    if (moment.days != 0) PutShortDate(line, civil);
    if (moment.days != 0 && moment.micros != 0) line.Put(' ');
    if (moment.days == 0 || moment.micros != 0) PutTwelveHours(line, civil, 1);
    out.append(line.Text());
}

std::string GeneralDate(DateTime moment) {
    std::string text;
    AppendGeneralDate(text, moment);
    return text;
}

std::string ShortDate(DateTime moment) {
    Line line;
    PutShortDate(line, ToCivil(moment));
    return std::string(line.Text());
}

std::string TwelveHourTime(DateTime moment) {
    Line line;
    PutTwelveHours(line, ToCivil(moment), 2);
    return std::string(line.Text());
}

void AppendDashedDateTime(std::string& out, DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    Line line;
    PutIsoDate(line, civil);
    line.Put('-');
    PutTime(line, civil, '-');
    out.append(line.Text());
}

void AppendIsoDate(std::string& out, DateTime moment) {
    Line line;
    PutIsoDate(line, ToCivil(moment));
    out.append(line.Text());
}

void AppendIsoDateTime(std::string& out, DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    Line line;
    PutIsoDate(line, civil);
    line.Put(' ');
    PutTime(line, civil, ':');
    if (civil.micros != 0) {
        int digits = 6;
        int fraction = civil.micros;
        for (; fraction % 10 == 0; fraction /= 10) --digits;
        line.Put('.');
        line.PutNumber(fraction, digits);
    }
    out.append(line.Text());
}

std::string FileStamp(DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    Line line;
    line.PutNumber(civil.day, 2);
    line.Put('_');
    line.Put(kMonthNames[civil.month - 1]);
    line.Put('_');
    line.PutNumber(civil.year % 100, 2);
    line.Put('_');
    line.PutNumber(civil.hour, 2);
    line.Put('_');
    line.PutNumber(civil.minute, 1);
    line.Put('_');
    line.PutNumber(civil.second, 2);
    return std::string(line.Text());
}

}  // namespace varnel
