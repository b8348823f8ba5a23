#include "app/CommandLine.h"

#include <charconv>
#include <limits>

#include "platform/Rounding.h"

namespace varnel {

namespace {

/// The length of the run of digits at the start of text.
std::size_t DigitRun(std::string_view text) {
    const std::size_t end = text.find_first_not_of("0123456789");
    return end == std::string_view::npos ? text.size() : end;
}

bool TakeOneOf(std::string_view& text, std::string_view characters) {
    if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(1);
    return true;
}

bool IsDecimalNumber(std::string_view word) {
    TakeOneOf(word, "+-");
    std::size_t digits = DigitRun(word);
    word.remove_prefix(digits);
    if (TakeOneOf(word, ".")) {
        const std::size_t fraction = DigitRun(word);
        word.remove_prefix(fraction);
        digits += fraction;
    }
    if (digits == 0) return false;
    if (TakeOneOf(word, "eE")) {
        TakeOneOf(word, "+-");
        const std::size_t exponent = DigitRun(word);
        if (exponent == 0) return false;
        word.remove_prefix(exponent);
    }
    return word.empty();
}

}  // namespace

std::vector<std::string> GetCommandLine(std::string_view tail, int MaxArgs) {
    std::vector<std::string> words(static_cast<std::size_t>(MaxArgs) + 1);
    int n = 0;
    bool insideWord = false;
    for (const char character : tail) {
        if (character == ' ' || character == '\t') {
            insideWord = false;
            continue;
        }
        if (!insideWord) {
            if (n == MaxArgs) break;
            ++n;
            insideWord = true;
        }
        words[static_cast<std::size_t>(n)] += character;
    }
    return words;
}

std::optional<std::int16_t> ParseSessionNumber(std::string_view word) {
    if (!IsDecimalNumber(word)) return std::nullopt;
    if (word.front() == '+') word.remove_prefix(1);
    double number = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
    if (parsed.ec != std::errc()) return std::nullopt;
    number = RoundTiesToEven(number);
    using Limits = std::numeric_limits<std::int16_t>;
    if (number < Limits::min() || number > Limits::max()) return std::nullopt;
    return static_cast<std::int16_t>(number);
}

}  // namespace varnel
