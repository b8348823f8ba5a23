// The command line: a session number and, optionally, the word "showoutput".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnel {

/// Splits a command tail at blanks and tabs; quotation marks mean nothing. Returns MaxArgs + 1 texts: element 0 is
/// always empty, 1 to n are the words found, the rest is empty; words beyond MaxArgs are ignored.
std::vector<std::string> GetCommandLine(std::string_view tail, int MaxArgs = 10);

/// The session number that a word stands for: optional sign, digits, optional fraction, optional exponent, rounded to
/// the nearest whole number, ties to even. Nothing for any other word, and for a number outside 16 bits.
std::optional<std::int16_t> ParseSessionNumber(std::string_view word);

}  // namespace varnel
