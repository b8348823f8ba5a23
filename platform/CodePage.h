// Text between UTF-8, which the program uses throughout, and the code pages of files and databases.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace varnel {

/// True when bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool IsUtf8(std::string_view bytes);
/// Characters (code points) of a well-formed UTF-8 text.
std::size_t CharacterCount(std::string_view utf8);
/// Simple case mapping of one text, for comparisons without case ("STRASSE" and "straße" stay different).
std::string FoldCase(std::string_view utf8);
void AppendFoldedCase(std::string& out, std::string_view utf8);

// What these append to is as before when they throw.

/// UTF-16, low byte first, to UTF-8. Throws Error{Conversion} on an odd length or an unpaired surrogate.
void AppendUtf8FromUtf16(std::string& out, std::span<const std::uint8_t> utf16);
/// UTF-8 to UTF-16, low byte first. Throws Error{Conversion} when utf8 is not well-formed.
void AppendUtf16FromUtf8(std::string& out, std::string_view utf8);

/// One code page by its Windows number (1252, 437, 850, 932, 65001, 1200 for UTF-16 ...). Used by one thread at a time.
class CodePage {
public:
    /// Throws Error{NotSupported} naming the number when the system cannot convert it.
    explicit CodePage(int number);
    /// True when CodePage(number) would not throw.
    static bool IsSupported(int number);
    ~CodePage();
    CodePage(CodePage&&) noexcept;
    CodePage& operator=(CodePage&&) noexcept;

    int Number() const;
    /// Appends bytes, read in this code page, as UTF-8. Throws Error{Conversion} naming the first byte without meaning.
    void Decode(std::string& utf8Out, std::string_view bytes) const;
    /// Appends the longest part from the start of bytes that can be read, as UTF-8, and returns its length in bytes.
    /// What follows it has no meaning, or is a character whose end is missing.
    std::size_t DecodeSome(std::string& utf8Out, std::string_view bytes) const;
    /// Appends a UTF-8 text in this code page. Throws Error{Conversion} naming the first character without a place.
    void Encode(std::string& bytesOut, std::string_view utf8) const;

private:
    struct Tables;
    std::unique_ptr<Tables> tables_;
};

}  // namespace varnel
