// How much each character weighs in the order of texts that Access calls General Legacy.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace varnel::access {

enum class WeightKind : std::uint8_t {
    Plain,
    Accented,   ///< also changes the extra section
    LargeKana,  ///< a plain or accented weight that also has a place in the kana section
    SmallKana,
    Combining,  ///< changes the extra byte of the weight before it
    Hidden,     ///< hyphens, apostrophes, controls: only in the hidden section
    Repeat,     ///< weighs what the character before it weighs
    Nothing     ///< adds nothing to a key
};

/// The bytes that one UTF-16 unit adds to a key.
struct TextWeight {
    WeightKind kind = WeightKind::Nothing;
    std::uint8_t inlineLength = 0, extraLength = 0;
    std::uint8_t weights = 0;  ///< letters it stands for
    std::array<std::uint8_t, 4> inlineBytes{};
    std::array<std::uint8_t, 2> extra{};  ///< Combining: the amount to add; Hidden: the code
};

/// Surrogates, and whatever the table does not know, weigh Nothing.
TextWeight WeightOf(char16_t unit);

/// The generated data, in base 64. A run is: u8 kind | inline length << 3 | step << 6; u8 extra length | weights << 2;
/// characters skipped since the run before, and characters in the run, as numbers of 7 bits a byte, lowest first, bit 7
/// while more follow; the inline bytes; the extra bytes. From one character of a run to the next the inline bytes rise
/// by step: one byte as it is, two bytes as hi * 254 + (lo - 2).
extern const char* const kTextKeyData;
extern const std::size_t kTextKeyRuns;

}  // namespace varnel::access
