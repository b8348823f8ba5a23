// The texts of Jet 4 and ACE into UTF-8, whole or in pieces that may be cut anywhere.
//
// UTF-16, low byte first. A value that begins with FF FE is compressed: each byte is a character of U+0001 to U+00FF;
// a byte 0 switches to UTF-16 pairs, the next byte 0 at the beginning of a pair back.
#pragma once

#include <cstdint>
#include <string>

#include "providers/access/StoredBytes.h"

namespace varnel::access {

class UnicodeText {
public:
    /// out: what is decoded is appended to it.
    explicit UnicodeText(std::string& out) : out_(out) {}

    Fault Feed(Bytes piece);
    /// After the last piece: a text that ends in the middle of a character has a fault.
    Fault Finish();

private:
    enum class Mode : std::uint8_t { Start, Plain, Compressed, PairsInCompressed };

    Fault TakeByte(std::uint8_t byte);
    Fault TakeUnit(std::uint16_t unit);
    std::size_t TakeCompressedRun(Bytes bytes);
    std::size_t TakeAsciiPairs(Bytes bytes);

    std::string& out_;
    Mode mode_ = Mode::Start;
    bool hasLow_ = false;  ///< the first byte of a pair has come
    std::uint8_t low_ = 0;
    std::uint16_t high_ = 0;  ///< a high surrogate that waits for its low one
};

/// A text that is all there.
Fault AppendUnicodeText(Bytes stored, std::string& out);

}  // namespace varnel::access
