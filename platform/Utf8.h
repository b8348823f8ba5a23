// One code point at a time out of, and into, UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace varnel {

/// What NextCodePoint returns for a byte that begins no well-formed character.
inline constexpr char32_t kNoCodePoint = 0xFFFFFFFF;

/// The code point that begins at byte at, which is moved behind it; kNoCodePoint, and one byte on, when no well-formed
/// character begins there. at must be below utf8.size().
char32_t NextCodePoint(std::string_view utf8, std::size_t& at);
/// codePoint must be below 0x110000.
void AppendCodePoint(std::string& out, char32_t codePoint);
/// Bytes from at on that are ASCII.
std::size_t AsciiRun(std::string_view bytes, std::size_t at);
/// Bytes from the start of a text up to the first byte that begins no well-formed character; all of them when the
/// text is well-formed UTF-8.
std::size_t WellFormedLength(std::string_view bytes);
/// "U+03BB".
std::string CodePointName(char32_t codePoint);
/// Simple case mapping of one code point, the same in every locale.
char32_t FoldCodePoint(char32_t codePoint);

}  // namespace varnel
