// The functions that key expressions may call.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <utility>

#include "platform/CodePage.h"
#include "platform/DateTime.h"
#include "platform/Utf8.h"
#include "providers/foxpro/KeyTerm.h"

namespace varnel::foxpro {
namespace {

constexpr std::int64_t kJulianDayZero = 2'415'019;  // of 1899-12-30

using ByteMap = std::array<char, 256>;
/// values: of the arguments, none of them Null. result: to be filled; its text is empty.
using Body = std::function<void(const KeyRecord& record, std::vector<KeyValue>& values, KeyValue& result)>;

class Call : public KeyTerm {
public:
    Call(KeySort sort, KeyTerms arguments, Body body)
        : KeyTerm(sort), arguments_(std::move(arguments)), values_(arguments_.size()), body_(std::move(body)) {}

    void Evaluate(const KeyRecord& record, KeyValue& value) const override {
        value.isNull = false;
        for (std::size_t k = 0; k < arguments_.size(); ++k) {
            arguments_[k]->Evaluate(record, values_[k]);
            value.isNull = value.isNull || values_[k].isNull;
        }
        value.text.clear();
        value.number = 0;
        value.truth = false;
        if (!value.isNull) body_(record, values_, value);
    }

private:
    KeyTerms arguments_;
    mutable std::vector<KeyValue> values_;  // kept for their buffers
    Body body_;
};

/// The byte of the same character in the other case; the byte itself where the page has none.
ByteMap CaseMap(int codePage, bool toUpper) {
    const CodePage page(codePage);
    std::array<char32_t, 256> codes;
    for (std::size_t k = 0; k < 256; ++k) {
        const char byte = static_cast<char>(k);
        std::string utf8;
        std::size_t at = 0;
        codes[k] = page.DecodeSome(utf8, {&byte, 1}) == 1 ? NextCodePoint(utf8, at) : kNoCodePoint;
    }
    ByteMap lower, upper;
    for (std::size_t k = 0; k < 256; ++k) lower[k] = upper[k] = static_cast<char>(k);
    for (std::size_t k = 0; k < 256; ++k) {
        if (codes[k] == kNoCodePoint || FoldCodePoint(codes[k]) == codes[k]) continue;
        const auto other = std::find(codes.begin(), codes.end(), FoldCodePoint(codes[k]));
        if (other == codes.end()) continue;
        lower[k] = static_cast<char>(other - codes.begin());
        upper[static_cast<unsigned char>(lower[k])] = static_cast<char>(k);
    }
    return toUpper ? upper : lower;
}

bool IsSingleByte(int codePage) {
    constexpr std::array<int, 6> kWide = {932, 936, 949, 950, 1200, 65001};
    return std::find(kWide.begin(), kWide.end(), codePage) == kWide.end();
}

Body MapCase(int codePage, bool toUpper) {
    return [map = CaseMap(codePage, toUpper)](const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
        for (const char byte : values[0].text) result.text += map[static_cast<unsigned char>(byte)];
    };
}

Body Trim(bool left, bool right) {
    return [left, right](const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
        std::string& text = values[0].text;
        if (right) text.erase(text.find_last_not_of(' ') + 1);
        if (left) text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
        result.text.assign(text);
    };
}

std::size_t CountOf(const KeyValue& value) {
    return value.number < 1 ? 0 : value.number > 65'535 ? 65'535 : static_cast<std::size_t>(value.number);
}

void TakeLeft(const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
    result.text.assign(values[0].text, 0, CountOf(values[1]));
}

void TakeRight(const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
    const std::string& text = values[0].text;
    const std::size_t count = std::min(CountOf(values[1]), text.size());
    result.text.assign(text, text.size() - count);
}

void TakePart(const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
    const std::size_t start = CountOf(values[1]);
    if (start == 0 || start > values[0].text.size()) return;
    result.text.assign(values[0].text, start - 1, values.size() > 2 ? CountOf(values[2]) : std::string::npos);
}

Body Pad(bool left) {
    return [left](const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
        const std::size_t width = CountOf(values[1]);
        const char fill = values.size() > 2 && !values[2].text.empty() ? values[2].text[0] : ' ';
        result.text.assign(values[0].text, 0, width);
        result.text.insert(left ? 0 : result.text.size(), width - result.text.size(), fill);
    };
}

/// Digits of number, half away from zero, with so many decimals.
std::string FixedDigits(double number, std::size_t decimals) {
    const double scale = std::pow(10.0, static_cast<double>(decimals));
    const double rounded = std::round(number * scale) / scale;
    std::array<char, 400> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), rounded == 0 ? 0.0 : rounded,
                                   std::chars_format::fixed, static_cast<int>(decimals))
                         .ptr;
    return {digits.data(), end};
}

/// STR(number [, width 10 [, decimals 0]]): right-aligned, fewer decimals and then stars when it is too wide.
void WriteNumber(const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
    const std::size_t width = std::min<std::size_t>(values.size() > 1 ? CountOf(values[1]) : 10, 64);
    const std::size_t asked = std::min<std::size_t>(values.size() > 2 ? CountOf(values[2]) : 0, 18);
    for (std::size_t decimals = asked + 1; decimals-- > 0;) {
        result.text = FixedDigits(values[0].number, decimals);
        if (result.text.size() > width) continue;
        result.text.insert(0, width - result.text.size(), ' ');
        return;
    }
    result.text.assign(width, '*');
}

CivilTime CivilOf(double julianDay) {
    const auto day = static_cast<std::int64_t>(std::floor(julianDay)) - kJulianDayZero;
    return ToCivil({static_cast<std::int32_t>(day), 0});
}

void WriteDate(const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
    if (values[0].number < 1) return result.text.assign(8, ' '), void();
    const CivilTime civil = CivilOf(values[0].number);
    result.text = std::to_string(civil.year * 10'000 + civil.month * 100 + civil.day);
    result.text.insert(0, 8 - std::min<std::size_t>(8, result.text.size()), '0');
}

Body DatePart(int CivilTime::*part) {
    return [part](const KeyRecord&, std::vector<KeyValue>& values, KeyValue& result) {
        result.number = values[0].number < 1 ? 0 : CivilOf(values[0].number).*part;
    };
}

void IsDeleted(const KeyRecord& record, std::vector<KeyValue>&, KeyValue& result) {
    result.truth = record.bytes[0] == kDeletedFlag;
}

/// One form of a function. arguments: a letter for each, t text, n number, d date or moment; behind "|" the optional
/// ones.
struct Function {
    const char* name;
    const char* arguments;
    KeySort result;
    Body (*body)(int codePage);
};

const Function kFunctions[] = {
    {"UPPER", "t", KeySort::Text, [](int page) { return MapCase(page, true); }},
    {"LOWER", "t", KeySort::Text, [](int page) { return MapCase(page, false); }},
    {"ALLTRIM", "t", KeySort::Text, [](int) { return Trim(true, true); }},
    {"TRIM", "t", KeySort::Text, [](int) { return Trim(false, true); }},
    {"RTRIM", "t", KeySort::Text, [](int) { return Trim(false, true); }},
    {"LTRIM", "t", KeySort::Text, [](int) { return Trim(true, false); }},
    {"LEFT", "tn", KeySort::Text, [](int) { return Body(TakeLeft); }},
    {"RIGHT", "tn", KeySort::Text, [](int) { return Body(TakeRight); }},
    {"SUBSTR", "tn|n", KeySort::Text, [](int) { return Body(TakePart); }},
    {"PADL", "tn|t", KeySort::Text, [](int) { return Pad(true); }},
    {"PADR", "tn|t", KeySort::Text, [](int) { return Pad(false); }},
    {"STR", "n|nn", KeySort::Text, [](int) { return Body(WriteNumber); }},
    {"DTOS", "d", KeySort::Text, [](int) { return Body(WriteDate); }},
    {"DTOC", "dn", KeySort::Text, [](int) { return Body(WriteDate); }},  // with 1: the form of DTOS
    {"YEAR", "d", KeySort::Number, [](int) { return DatePart(&CivilTime::year); }},
    {"MONTH", "d", KeySort::Number, [](int) { return DatePart(&CivilTime::month); }},
    {"DAY", "d", KeySort::Number, [](int) { return DatePart(&CivilTime::day); }},
    {"DELETED", "", KeySort::Logical, [](int) { return Body(IsDeleted); }}};

bool IsCalled(const std::string& word, std::string_view name) {
    return word == name || (word.size() >= 4 && name.starts_with(word));
}

bool Takes(std::string_view letters, const KeyTerms& arguments) {
    std::size_t given = 0;
    bool optional = false;
    for (const char letter : letters) {
        if (letter == '|') {
            optional = true;
            continue;
        }
        if (given == arguments.size()) return optional;
        const KeyTerm& argument = *arguments[given++];
        const bool fits = letter == 't' ? argument.IsText() : letter == 'n' ? argument.IsNumeric() : argument.IsDay();
        if (!fits) return false;
    }
    return given == arguments.size();
}

}  // namespace

KeyTermPtr FunctionTerm(const std::string& name, KeyTerms arguments, int codePage) {
    for (const Function& function : kFunctions) {
        if (!IsCalled(name, function.name)) continue;
        if (!Takes(function.arguments, arguments)) return nullptr;
        const bool mapsCase = function.name == std::string_view("UPPER") || function.name == std::string_view("LOWER");
        if (mapsCase && !IsSingleByte(codePage)) return nullptr;
        return std::make_unique<Call>(function.result, std::move(arguments), function.body(codePage));
    }
    return nullptr;
}

}  // namespace varnel::foxpro
