#include "providers/sql/JetFormat.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "ado/types/ConnectionString.h"
#include "ado/types/Decimal.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "providers/sql/ExpressionValues.h"

namespace varnel::sql {
namespace {

constexpr std::string_view kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                        "July",    "August",   "September", "October", "November", "December"};
constexpr std::string_view kWeekdays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

struct NamedPicture {
    std::string_view name, picture;
};
constexpr NamedPicture kDatePictures[] = {{"long date", "dddd, mmmm d, yyyy"}, {"medium date", "dd-mmm-yy"},
                                          {"short date", "m/d/yyyy"},          {"long time", "h:nn:ss AM/PM"},
                                          {"medium time", "hh:nn AM/PM"},      {"short time", "hh:nn"}};
constexpr NamedPicture kNumberPictures[] = {
    {"currency", "$#,##0.00;($#,##0.00)"}, {"fixed", "0.00"}, {"standard", "#,##0.00"}, {"percent", "0.00%"}};

template <std::size_t N>
std::string_view Lookup(const NamedPicture (&pictures)[N], std::string_view name) {
    for (const NamedPicture& one : pictures)
        if (EqualNoCase(one.name, name)) return one.picture;
    return {};
}

void AppendPadded(std::string& out, int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    if (digits.size() < width) out.append(width - digits.size(), '0');
    out += digits;
}

/// Copies a quoted or escaped part at the front of picture to out; false when there is none.
bool TakeLiteral(std::string_view& picture, std::string& out) {
    if (picture.front() == '\\' && picture.size() > 1) {
        out += picture[1];
        picture.remove_prefix(2);
        return true;
    }
    if (picture.front() != '"') return false;
    const std::size_t end = std::min(picture.find('"', 1), picture.size());
    out += picture.substr(1, end - 1);
    picture.remove_prefix(std::min(end + 1, picture.size()));
    return true;
}

struct HalfDayWord {
    std::string_view sign, morning, evening;
};
constexpr HalfDayWord kHalfDays[] = {
    {"AM/PM", "AM", "PM"}, {"am/pm", "am", "pm"}, {"A/P", "A", "P"}, {"a/p", "a", "p"}, {"AMPM", "AM", "PM"}};

const HalfDayWord* HalfDayAt(std::string_view picture) {
    for (const HalfDayWord& word : kHalfDays)
        if (EqualNoCase(picture.substr(0, word.sign.size()), word.sign) &&
            (picture.starts_with(word.sign) || word.sign.size() == 4))
            return &word;
    return nullptr;
}

bool HasHalfDay(std::string_view picture) {
    for (std::size_t i = 0; i < picture.size(); ++i)
        if (HalfDayAt(picture.substr(i)) != nullptr) return true;
    return false;
}

class MomentWriter {
public:
    MomentWriter(DateTime moment, std::string_view picture)
        : civil_(ToCivil(moment)), moment_(moment), rest_(picture), twelve_(HasHalfDay(picture)) {}

    std::string Write() {
        while (!rest_.empty()) {
            if (TakeLiteral(rest_, out_)) continue;
            if (const HalfDayWord* half = HalfDayAt(rest_)) {
                out_ += civil_.hour < 12 ? half->morning : half->evening;
                rest_.remove_prefix(half->sign.size());
                continue;
            }
            const char sign = static_cast<char>(rest_.front() | 32);
            std::size_t count = 1;
            while (count < rest_.size() && (rest_[count] | 32) == sign) ++count;
            if (!WriteSign(sign, count)) out_ += rest_.substr(0, count);
            rest_.remove_prefix(count);
        }
        return std::move(out_);
    }

private:
    bool WriteSign(char sign, std::size_t count) {
        const bool minutes = sign == 'n' || (sign == 'm' && count <= 2 && afterHour_);
        const int hour = twelve_ ? (civil_.hour + 11) % 12 + 1 : civil_.hour;
        const int weekday = ((moment_.days - 1) % 7 + 7) % 7;
        if (minutes)
            AppendPadded(out_, civil_.minute, count);
        else if (sign == 'm')
            WriteName(civil_.month, count, kMonths[civil_.month - 1]);
        else if (sign == 'd')
            WriteName(civil_.day, count, kWeekdays[weekday]);
        else if (sign == 'h')
            AppendPadded(out_, hour, count);
        else if (sign == 's')
            AppendPadded(out_, civil_.second, count);
        else if (sign == 'y' && count == 2)
            AppendPadded(out_, civil_.year % 100, 2);
        else if (sign == 'y' && count >= 3)
            AppendPadded(out_, civil_.year, 1);
        else if (sign == 'q')
            AppendPadded(out_, (civil_.month - 1) / 3 + 1, 1);
        else if (sign == 'w')
            AppendPadded(out_, weekday + 1, 1);
        else
            return false;
        afterHour_ = sign == 'h';
        return true;
    }

    void WriteName(int number, std::size_t count, std::string_view name) {
        if (count <= 2)
            AppendPadded(out_, number, count);
        else
            out_ += count == 3 ? name.substr(0, 3) : name;
    }

    CivilTime civil_;
    DateTime moment_;
    std::string_view rest_;
    bool twelve_;
    bool afterHour_ = false;
    std::string out_;
};

std::vector<std::string_view> Sections(std::string_view picture) {
    std::vector<std::string_view> sections;
    std::size_t from = 0;
    bool quoted = false;
    for (std::size_t i = 0; i <= picture.size(); ++i) {
        if (i < picture.size() && picture[i] == '"') quoted = !quoted;
        if (i < picture.size() && picture[i] == '\\') ++i;
        if (i < picture.size() && (picture[i] != ';' || quoted)) continue;
        sections.push_back(picture.substr(from, std::min(i, picture.size()) - from));
        from = i + 1;
    }
    return sections;
}

/// How a number section is laid out.
struct NumberLayout {
    int wholeZeros = 0, places = 0, placeZeros = 0, percents = 0;
    bool grouped = false, hasDigits = false;
};

NumberLayout ReadLayout(std::string_view section) {
    NumberLayout layout;
    bool afterPoint = false;
    std::string ignored;
    while (!section.empty()) {
        if (TakeLiteral(section, ignored)) continue;
        const char c = section.front();
        section.remove_prefix(1);
        if (c == '.') afterPoint = true;
        if (c == ',') layout.grouped = layout.grouped || (layout.hasDigits && !afterPoint);
        if (c == '%') ++layout.percents;
        if (c != '0' && c != '#') continue;
        layout.hasDigits = true;
        if (afterPoint) {
            ++layout.places;
            if (c == '0') layout.placeZeros = layout.places;
        } else if (c == '0' || layout.wholeZeros > 0) {
            ++layout.wholeZeros;
        }
    }
    return layout;
}

/// The digits of a number that is not negative, rounded to the layout.
std::string NumberDigits(double number, const NumberLayout& layout) {
    char buffer[400];
    for (int i = 0; i < layout.percents; ++i) number *= 100;
    std::string text;
    if (number < 1e20 && number > 1e-20) {
        AppendDecimalText(text, RoundedToScale(DecimalFromDouble(number), layout.places));
    } else {
        std::snprintf(buffer, sizeof buffer, "%.*f", 0, number);
        text = buffer;
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string whole = text.substr(0, point), places = text.substr(std::min(point + 1, text.size()));
    if (whole == "0") whole.clear();
    if (static_cast<int>(whole.size()) < layout.wholeZeros)
        whole.insert(0, static_cast<std::size_t>(layout.wholeZeros) - whole.size(), '0');
    if (layout.grouped)
        for (int at = static_cast<int>(whole.size()) - 3; at > 0; at -= 3)
            whole.insert(static_cast<std::size_t>(at), ",");
    while (static_cast<int>(places.size()) < layout.placeZeros) places += '0';
    return places.empty() && layout.places == 0 ? whole : whole + "." + places;
}

std::string FormatSection(double number, std::string_view section) {
    const NumberLayout layout = ReadLayout(section);
    std::string out;
    bool digitsWritten = false;
    while (!section.empty()) {
        if (TakeLiteral(section, out)) continue;
        const char c = section.front();
        section.remove_prefix(1);
        const bool digitSign = c == '0' || c == '#' || c == '.' || c == ',';
        if (!digitSign)
            out += c;
        else if (!std::exchange(digitsWritten, true))
            out += NumberDigits(number, layout);
    }
    return out;
}

}  // namespace

std::string FormatMoment(DateTime moment, std::string_view picture) {
    return MomentWriter(moment, picture).Write();
}

std::string FormatNumber(double number, std::string_view picture) {
    const std::vector<std::string_view> sections = Sections(picture);
    const bool negative = number < 0;
    const double size = std::fabs(number);
    if (negative && sections.size() > 1 && !sections[1].empty()) return FormatSection(size, sections[1]);
    if (number == 0 && sections.size() > 2 && !sections[2].empty()) return FormatSection(0, sections[2]);
    const std::string text = FormatSection(size, sections[0]);
    return negative ? "-" + text : text;
}

std::string FormatValue(const Value& value, std::string_view picture) {
    if (EqualNoCase(picture, "general date")) return GeneralDate(MomentOf(value));
    if (EqualNoCase(picture, "general number")) return DefaultText(value);
    if (const auto dates = Lookup(kDatePictures, picture); !dates.empty()) return FormatMoment(MomentOf(value), dates);
    if (const auto numbers = Lookup(kNumberPictures, picture); !numbers.empty())
        return FormatNumber(NumberOf(value), numbers);
    if (EqualNoCase(picture, "yes/no")) return NumberOf(value) != 0 ? "Yes" : "No";
    if (EqualNoCase(picture, "true/false")) return NumberOf(value) != 0 ? "True" : "False";
    if (EqualNoCase(picture, "on/off")) return NumberOf(value) != 0 ? "On" : "Off";
    std::string scratch;
    const std::string_view text = TextOf(value, scratch);
    if (picture.empty() || picture == "@") return std::string(text);
    if (picture == "<") return FoldCase(text);
    const bool numberPicture = picture.find_first_of("0#") != std::string_view::npos;
    if (value.Kind() == ValueKind::Text) {
        const auto number = ParseDouble(text);
        if (numberPicture) return number ? FormatNumber(*number, picture) : std::string(text);
        const auto moment = ParseDateTime(text);
        return moment ? FormatMoment(*moment, picture) : std::string(text);
    }
    if (numberPicture) return FormatNumber(NumberOf(value), picture);
    return FormatMoment(MomentOf(value), picture);
}

}  // namespace varnel::sql
