#include "providers/access/TextKeyTable.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace varnel::access {
namespace {

constexpr std::size_t kDirect = 0x250;  // the Latin characters are looked up by position

struct Run {
    char32_t first = 0;
    char32_t count = 0;
    unsigned step = 0;
    TextWeight weight;
};

unsigned SixBits(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 26;
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0') + 52;
    return c == '+' ? 62 : 63;
}

/// Takes the bytes of a text in base 64 one by one.
class PackedBytes {
public:
    explicit PackedBytes(std::string_view text) : text_(text) {}

    std::uint8_t Next() {
        while (bits_ < 8) {
            held_ = held_ << 6 | (at_ < text_.size() ? SixBits(text_[at_++]) : 0);
            bits_ += 6;
        }
        bits_ -= 8;
        return static_cast<std::uint8_t>(held_ >> bits_);
    }

    unsigned NextNumber() {
        unsigned number = 0;
        for (unsigned shift = 0;; shift += 7) {
            const unsigned byte = Next();
            number |= (byte & 0x7F) << shift;
            if (byte < 0x80) return number;
        }
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
    unsigned held_ = 0, bits_ = 0;
};

Run NextRun(PackedBytes& bytes, char32_t& at) {
    Run run;
    const unsigned shape = bytes.Next(), sizes = bytes.Next();
    run.weight.kind = static_cast<WeightKind>(shape & 7);
    run.weight.inlineLength = (shape >> 3) & 7;
    run.step = shape >> 6;
    run.weight.extraLength = sizes & 3;
    run.weight.weights = static_cast<std::uint8_t>(sizes >> 2);
    run.first = at + bytes.NextNumber();
    run.count = bytes.NextNumber();
    for (std::size_t k = 0; k < run.weight.inlineLength; ++k) run.weight.inlineBytes[k] = bytes.Next();
    for (std::size_t k = 0; k < run.weight.extraLength; ++k) run.weight.extra[k] = bytes.Next();
    at = run.first + run.count;
    return run;
}

std::vector<Run> ReadRuns() {
    PackedBytes bytes(kTextKeyData);
    char32_t at = 0;
    std::vector<Run> runs(kTextKeyRuns);
    for (Run& run : runs) run = NextRun(bytes, at);
    return runs;
}

TextWeight Stepped(const Run& run, char32_t unit) {
    TextWeight weight = run.weight;
    const unsigned rise = run.step * (unit - run.first);
    if (rise == 0) return weight;
    auto& bytes = weight.inlineBytes;
    if (weight.inlineLength == 2) {
        const unsigned number = bytes[0] * 254u + bytes[1] - 2 + rise;
        bytes[0] = static_cast<std::uint8_t>(number / 254);
        bytes[1] = static_cast<std::uint8_t>(number % 254 + 2);
    } else {
        bytes[0] = static_cast<std::uint8_t>(bytes[0] + rise);
    }
    return weight;
}

TextWeight Search(const std::vector<Run>& runs, char32_t unit) {
    auto after = std::upper_bound(runs.begin(), runs.end(), unit,
                                  [](char32_t wanted, const Run& run) { return wanted < run.first; });
    if (after == runs.begin()) return {};
    const Run& run = *--after;
    return unit - run.first < run.count ? Stepped(run, unit) : TextWeight{};
}

struct Weights {
    std::vector<Run> runs = ReadRuns();
    std::array<TextWeight, kDirect> direct{};
    Weights() {
        for (char32_t unit = 0; unit < kDirect; ++unit) direct[unit] = Search(runs, unit);
    }
};

}  // namespace

TextWeight WeightOf(char16_t unit) {
    static const Weights weights;
    return unit < kDirect ? weights.direct[unit] : Search(weights.runs, unit);
}

}  // namespace varnel::access
