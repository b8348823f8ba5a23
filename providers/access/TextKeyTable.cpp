#include "providers/access/TextKeyTable.h"

#include <algorithm>
#include <string_view>

namespace varnel::access {
namespace {

unsigned SixBits(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 26;
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0') + 52;
    return c == '+' ? 62 : 63;
}

}  // namespace

/// Takes the bytes of a text in base 64 one by one.
class TextWeights::PackedBytes {
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

TextWeights::Run TextWeights::ReadRun(PackedBytes& bytes, char32_t& at) {
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

TextWeights::TextWeights() : runs_(kTextKeyRuns) {
    PackedBytes bytes(kTextKeyData);
    char32_t at = 0;
    for (Run& run : runs_) run = ReadRun(bytes, at);
    for (char32_t unit = 0; unit < direct_.size(); ++unit) direct_[unit] = Search(unit);
}

const TextWeights& TextWeights::Get() {
    static const TextWeights weights;
    return weights;
}

TextWeight TextWeights::Stepped(const Run& run, char32_t unit) {
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

TextWeight TextWeights::Search(char32_t unit) const {
    auto after = std::upper_bound(runs_.begin(), runs_.end(), unit,
                                  [](char32_t wanted, const Run& run) { return wanted < run.first; });
    if (after == runs_.begin()) return {};
    const Run& run = *--after;
    return unit - run.first < run.count ? Stepped(run, unit) : TextWeight{};
}

}  // namespace varnel::access
