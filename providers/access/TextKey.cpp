#include "providers/access/TextKey.h"

#include <algorithm>
#include <array>

#include "platform/Utf8.h"
#include "providers/access/TextKeyTable.h"

// A key is
//   7F, inline bytes, 01, extra bytes
//   when kana or hidden characters exist: 01 01
//   with kana: their sizes, FF 02 80 FF 80
//   with hidden characters: FF if kana exist, 01, four bytes for each
//   00
// and descending all of it inverted, followed by 00.

namespace varnel::access {
namespace {

constexpr std::uint8_t kNoAccent = 2;  // the extra byte of a weight without an accent
constexpr std::size_t kMostWeights = 3, kMostExtra = kTextKeyUnits * kMostWeights + 2;
constexpr std::string_view kKanaEnd = "\xFF\x02\x80\xFF\x80";

class TextKeyMaker {
public:
    explicit TextKeyMaker(std::string& key) : key_(key) {}

    void Add(char16_t unit) {
        const TextWeight weight = WeightOf(unit);
        switch (weight.kind) {
            case WeightKind::Plain:
                AddInline(weight);
                break;
            case WeightKind::Accented:
                AddExtra(weight), AddInline(weight);
                break;
            case WeightKind::LargeKana:
            case WeightKind::SmallKana:
                AddKana(weight);
                break;
            case WeightKind::Combining:
                Combine(weight.extra[0]);
                break;
            case WeightKind::Hidden:
                AddHidden(weight.extra[0]);
                break;
            case WeightKind::Repeat:
                AddRepeat(weight);
                break;
            case WeightKind::Nothing:
                break;
        }
    }

    void Finish() {
        key_.push_back(1);
        while (extraCount_ > 0 && extra_[extraCount_ - 1] <= kNoAccent) --extraCount_;
        key_.append(extra_.begin(), extra_.begin() + extraCount_);
        const bool hasKana = kanaCount_ > 0;
        if (hasKana || hiddenCount_ > 0) key_.append("\x01\x01");
        if (hasKana) AppendKana();
        if (hiddenCount_ > 0) {
            if (hasKana) key_.push_back('\xFF');
            key_.push_back(1);
            key_.append(hidden_.begin(), hidden_.begin() + hiddenCount_);
        }
        key_.push_back(0);
    }

private:
    void AddInline(const TextWeight& weight) {
        lastInline_ = weight;
        key_.append(weight.inlineBytes.begin(), weight.inlineBytes.begin() + weight.inlineLength);
        position_ += weight.weights;
    }

    /// An extra byte that a combining character put before the first weight has no place in the count.
    void FillExtra(std::size_t position) {
        while (extraCount_ - uncounted_ < position) extra_[extraCount_++] = kNoAccent;
    }

    void AddExtra(const TextWeight& weight) {
        FillExtra(position_);
        for (std::size_t k = 0; k < weight.weights; ++k) {
            extra_[extraCount_++] = k < weight.extraLength ? weight.extra[k] : kNoAccent;
        }
    }

    void AddKana(TextWeight weight) {
        weight.weights = 1;
        if (weight.extraLength > 0) AddExtra(weight);
        AddInline(weight);
        kana_[kanaCount_++] = weight.kind == WeightKind::LargeKana ? 3 : 2;
    }

    void Combine(std::uint8_t amount) {
        FillExtra(position_);
        if (extraCount_ > 0) {
            extra_[extraCount_ - 1] = static_cast<std::uint8_t>(extra_[extraCount_ - 1] + amount);
        } else {
            extra_[extraCount_++] = amount;
            uncounted_ = 1;
        }
    }

    void AddHidden(std::uint8_t code) {
        const std::size_t place = 0x8000 | (7 + 4 * position_);
        for (const std::size_t byte : {place >> 8, place & 0xFF, std::size_t{6}, std::size_t{code}}) {
            hidden_[hiddenCount_++] = static_cast<std::uint8_t>(byte);
        }
    }

    void AddRepeat(const TextWeight& alone) {
        TextWeight again = position_ == 0 ? alone : lastInline_;
        again.weights = 1;
        AddInline(again);
    }

    /// Three sizes to a byte, without the large ones at the end.
    void AppendKana() {
        while (kanaCount_ > 0 && kana_[kanaCount_ - 1] == 3) --kanaCount_;
        for (std::size_t k = 0; k < kanaCount_; k += 3) {
            const auto size = [&](std::size_t at) { return at < kanaCount_ ? unsigned{kana_[at]} : 0U; };
            key_.push_back(static_cast<char>(0x80 + size(k) * 16 + size(k + 1) * 4 + size(k + 2)));
        }
        key_.append(kKanaEnd);
    }

    std::string& key_;
    std::size_t position_ = 0;  // weights so far
    TextWeight lastInline_;
    std::size_t extraCount_ = 0, uncounted_ = 0, hiddenCount_ = 0, kanaCount_ = 0;
    std::array<std::uint8_t, kMostExtra> extra_;
    std::array<std::uint8_t, kTextKeyUnits * 4> hidden_;
    std::array<std::uint8_t, kTextKeyUnits> kana_;
};

/// The first units of a text; returns how many.
std::size_t FirstUnits(std::array<char16_t, kTextKeyUnits>& units, std::string_view utf8) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < utf8.size() && count < units.size();) {
        const auto byte = static_cast<unsigned char>(utf8[at]);
        if (byte < 0x80) {
            units[count++] = byte, ++at;
            continue;
        }
        const char32_t codePoint = NextCodePoint(utf8, at);
        if (codePoint < 0x10000) {
            units[count++] = static_cast<char16_t>(codePoint);
        } else {  // a surrogate pair weighs nothing but counts two
            for (int k = 0; k < 2 && count < units.size(); ++k) units[count++] = 0xD800;
        }
    }
    return count;
}

constexpr std::array<std::uint16_t, 6> kLikeEnglish = {1025, 1026, 1032, 1037, 1043, 1049};
constexpr std::uint16_t kPrimaryLanguage = 0x3FF, kEnglish = 0x09;

}  // namespace

void AppendTextKey(std::string& key, std::string_view utf8, bool ascending) {
    std::array<char16_t, kTextKeyUnits> units;
    const std::size_t count = FirstUnits(units, utf8);
    AppendTextKey(key, std::span<const char16_t>(units.data(), count), ascending);
}

void AppendTextKey(std::string& key, std::span<const char16_t> units, bool ascending) {
    units = units.first(std::min(units.size(), kTextKeyUnits));
    while (!units.empty() && units.back() == u' ') units = units.first(units.size() - 1);
    const std::size_t start = key.size();
    key.push_back('\x7F');
    TextKeyMaker maker(key);
    for (const char16_t unit : units) maker.Add(unit);
    maker.Finish();
    if (ascending) return;
    for (std::size_t k = start; k < key.size(); ++k) key[k] = static_cast<char>(~key[k]);
    key.push_back('\0');
}

bool CanBuildTextKeys(const SortOrder& order) {
    if (order.sortId != 0 || order.sortVersion != 0) return false;
    return (order.language & kPrimaryLanguage) == kEnglish ||
           std::find(kLikeEnglish.begin(), kLikeEnglish.end(), order.language) != kLikeEnglish.end();
}

std::string SortOrderName(const SortOrder& order) {
    std::string name = std::to_string(order.language);
    if (order.sortId != 0) name += ", order " + std::to_string(order.sortId);
    if (order.sortVersion != 0) name += ", version " + std::to_string(order.sortVersion);
    return name;
}

}  // namespace varnel::access
