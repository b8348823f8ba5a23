#include "providers/text/FixedRecords.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "platform/Utf8.h"

namespace varnel::text {
namespace {

/// Bytes of the first characters of a text; all of them when it has fewer. A faulty byte counts as a character.
std::size_t BytesOf(std::string_view text, std::size_t characters) {
    std::size_t at = 0;
    for (std::size_t k = 0; k < characters && at < text.size(); ++k) {
        if (text[at] == kFaultMark && text.size() - at >= kFaultLength) {
            at += kFaultLength;
        } else {
            NextCodePoint(text, at);
        }
    }
    return at;
}

/// The first CR or LF at or behind from; end when there is none.
const char* FindLineEnd(const ByteScan& scan, const char* from, const char* end) {
    for (const char* block = from; block < end; block += kScanBlock) {
        const std::uint64_t marks = scan.Find(block);
        if (marks != 0) return std::min(block + std::countr_zero(marks), end);
    }
    return end;
}

}  // namespace

FixedRecords::FixedRecords(RecordBuffer buffer, std::vector<std::size_t> widths)
    : Records(std::move(buffer)), widths_(std::move(widths)) {}

bool FixedRecords::Next() {
    std::string_view line;
    while (FindLine(line)) {
        BeginRecord();
        if (!line.empty()) {
            Cut(line);
            return true;
        }
        ++emptyLines_;
        if (keepEmptyLines_) return Add(line.data(), 0, FieldShape::Plain), true;
    }
    return false;
}

/// The next line without its end; false when there is none.
bool FixedRecords::FindLine(std::string_view& line) {
    static const ByteScan scan({'\r', '\n', '\r', '\n'});
    for (;; buffer_.Refill()) {
        const char* const start = buffer_.Start();
        const char* const end = buffer_.End();
        if (start == end && buffer_.AtEnd()) return false;
        const char* const lineEnd = FindLineEnd(scan, start, end);
        const bool isCut = lineEnd == end || (*lineEnd == '\r' && lineEnd + 1 == end);
        if (isCut && !buffer_.AtEnd()) continue;
        line = {start, static_cast<std::size_t>(lineEnd - start)};
        const char* next = lineEnd == end ? end : lineEnd + 1;
        if (lineEnd != end && *lineEnd == '\r' && next != end && *next == '\n') ++next;
        buffer_.StartAt(next);
        return true;
    }
}

void FixedRecords::Cut(std::string_view line) {
    const bool isAscii = AsciiRun(line, 0) == line.size();
    for (const std::size_t width : widths_) {
        const std::size_t bytes = isAscii ? std::min(width, line.size()) : BytesOf(line, width);
        const std::string_view text = line.substr(0, bytes);
        Add(text.data(), text.find_last_not_of(' ') + 1, FieldShape::Plain);
        line.remove_prefix(bytes);
    }
    if (!IsBlank(line)) Add(line.data(), line.size(), FieldShape::Plain);
}

std::string_view FixedRecords::TextOf(const Field& field, std::string& /*scratch*/) const {
    return field.Raw();
}

}  // namespace varnel::text
