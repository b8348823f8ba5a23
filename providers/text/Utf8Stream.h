// Turns the bytes of a text file into UTF-8, block by block, whatever its code page.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "providers/text/ByteSource.h"

namespace varnel::text {

inline constexpr int kUtf8Page = 65001;
inline constexpr int kUtf16Page = 1200;
inline constexpr int kUtf16HighFirstPage = 1201;
inline constexpr int kAnsiPage = 1252;
/// The page is found out: by a byte-order mark; else UTF-8 while the text is well-formed UTF-8, else Windows-1252.
inline constexpr int kUnknownPage = 0;

/// Bytes that one Read must have room for.
inline constexpr std::size_t kLeastRoom = 16;

/// A byte without meaning in its code page is handed on as three bytes that are not well-formed UTF-8: 0xFF and its
/// two halves. (A file that is UTF-8 is handed on as it is, faults included.)
inline constexpr char kFaultMark = '\xFF';
inline constexpr std::size_t kFaultLength = 3;

/// A place in the text. Copies are cheap and go on independently. A byte-order mark at the start is left out.
class Utf8Stream {
public:
    /// page: a code page number or kUnknownPage. 1200 is read high byte first when the byte-order mark says so.
    Utf8Stream(std::shared_ptr<const ByteSource> source, int page);

    /// Puts UTF-8 into a room of at least kLeastRoom bytes; returns how many bytes, 0 only at the end.
    /// Whole characters are not promised. Throws Error{Io}.
    std::size_t Read(std::span<char> into);

    /// The page of the text so far; kUnknownPage while it was ASCII only.
    int Page() const { return page_; }
    /// The text was taken for UTF-8 and is not: it ended early and must be read again as Windows-1252.
    bool IsMisjudged() const { return misjudged_; }

private:
    void SkipByteOrderMark();
    std::size_t ReadAsIs(std::span<char> into);
    std::size_t ReadUndecided(std::span<char> into);
    std::size_t ReadDecoded(std::span<char> into);
    void DecodeBlock(std::size_t length);
    void UsePage(int page);

    std::shared_ptr<const ByteSource> source_;
    std::shared_ptr<const CodePage> decoder_;  // none for text that is UTF-8 or undecided
    int page_ = kUnknownPage;
    bool decided_ = false;  // the page stays as it is
    bool started_ = false;
    bool misjudged_ = false;
    std::uint64_t offset_ = 0;  // in the source, of the first byte not yet read
    std::string decoded_;       // UTF-8 not yet handed out, from decodedAt_ on
    std::size_t decodedAt_ = 0;
};

}  // namespace varnel::text
