// Records of fields between delimiters.
//   A record ends at CR, LF or CR LF outside qualifiers. A field is qualified when its first character behind optional
//   blanks is the qualifier; inside, a doubled qualifier is one, and line ends are data. Blanks behind the closing
//   qualifier are dropped, other text there is added. A qualifier anywhere else is an ordinary character, and so is
//   one that nothing closes: its field then ends at the next delimiter.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/ByteScan.h"
#include "providers/text/Records.h"

namespace varnel::text {

class DelimitedRecords : public Records {
public:
    /// delimiter: one or more characters. qualifier: one character, or "" for none; no part of the delimiter.
    DelimitedRecords(RecordBuffer buffer, std::string delimiter, std::string qualifier);

    bool Next() override;
    std::string_view TextOf(const Field& field, std::string& scratch) const override;

private:
    enum class Scan { Record, EmptyLine, NeedsMore, End };
    enum class Match { No, Yes, NeedsMore };
    /// A qualified field whose opening qualifier was seen; text behind the closing qualifier begins at tail.
    struct QualifiedPart {
        const char* content = nullptr;
        const char* close = nullptr;
        bool doubled = false;
    };

    /// The places where a delimiter, a qualifier or a line end may begin, one after the other.
    struct Marks {
        const char* block = nullptr;  // the block that bits describes
        std::uint64_t bits = 0;       // places in the block not yet visited

        void Seek(const ByteScan& scan, const char* place) {
            block = place;
            bits = scan.Find(block);
        }
        /// The next place; end when there is none before it.
        const char* Next(const ByteScan& scan, const char* end) {
            while (bits == 0) {
                if (end - block <= static_cast<std::ptrdiff_t>(kScanBlock)) return end;
                block += kScanBlock;
                bits = scan.Find(block);
            }
            const char* at = block + std::countr_zero(bits);
            bits &= bits - 1;
            return at < end ? at : end;
        }
    };

    Scan ScanRecord();
    Scan ScanLastField(const char* fieldStart, const QualifiedPart& part);
    Scan EndRecord(const char* lineEnd, const char* fieldStart, const QualifiedPart& part);
    Match ScanQualified(const char* opening, QualifiedPart& part);
    Match Unclosed(const char* opening, const char* seen);
    void AddField(const char* start, const char* end, const QualifiedPart& part);
    Match TokenAt(const char* place, const std::string& token) const;
    bool IsOpening(const char* fieldStart, const char* place) const;
    bool IsPadding(std::string_view text) const;

    std::string delimiter_, qualifier_;
    std::string_view padding_;  // the characters that may stand around qualifiers
    ByteScan scan_;
    Marks marks_;
    std::optional<std::uint64_t> unclosed_;  // offset of the one qualifier that nothing closes
    std::optional<std::uint64_t> closed_;    // offset of the last qualifier known to be closed beyond the window
};

}  // namespace varnel::text
