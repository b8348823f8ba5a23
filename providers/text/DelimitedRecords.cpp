#include "providers/text/DelimitedRecords.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace varnel::text {
namespace {

/// What may stand around qualifiers: blanks, and tabs in files that are not delimited by them.
std::string_view PaddingOf(const std::string& delimiter) {
    const bool hasBlank = delimiter.find(' ') != std::string::npos;
    const bool hasTab = delimiter.find('\t') != std::string::npos;
    if (hasBlank) return hasTab ? "" : "\t";
    return hasTab ? " " : " \t";
}

}  // namespace

DelimitedRecords::DelimitedRecords(RecordBuffer buffer, std::string delimiter, std::string qualifier)
    : Records(std::move(buffer)),
      delimiter_(std::move(delimiter)),
      qualifier_(std::move(qualifier)),
      padding_(PaddingOf(delimiter_)),
      scan_({delimiter_[0], qualifier_.empty() ? '\n' : qualifier_[0], '\r', '\n'}) {
    marks_.Seek(scan_, buffer_.Start());
}

bool DelimitedRecords::Next() {
    for (;;) {
        switch (ScanRecord()) {
            case Scan::Record:
                return true;
            case Scan::EmptyLine:
                ++emptyLines_;
                if (!keepEmptyLines_) break;
                Add(buffer_.Start(), 0, FieldShape::Plain);
                return true;
            case Scan::NeedsMore:
                buffer_.Refill();
                marks_.Seek(scan_, buffer_.Start());
                break;
            case Scan::End:
                return false;
        }
    }
}

/// Whether token begins at place.
inline DelimitedRecords::Match DelimitedRecords::TokenAt(const char* place, const std::string& token) const {
    if (token.size() == 1 && place != buffer_.End()) return *place == token[0] ? Match::Yes : Match::No;
    const auto left = static_cast<std::size_t>(buffer_.End() - place);
    const std::size_t length = std::min(left, token.size());
    if (std::memcmp(place, token.data(), length) != 0) return Match::No;
    if (length == token.size()) return Match::Yes;
    return buffer_.AtEnd() ? Match::No : Match::NeedsMore;
}

inline void DelimitedRecords::AddField(const char* start, const char* end, const QualifiedPart& part) {
    if (part.content == nullptr) {
        Add(start, static_cast<std::size_t>(end - start), FieldShape::Plain);
        return;
    }
    const char* tail = part.close + qualifier_.size();
    if (!part.doubled && IsPadding({tail, static_cast<std::size_t>(end - tail)})) {
        Add(part.content, static_cast<std::size_t>(part.close - part.content), FieldShape::Qualified);
    } else {
        Add(part.content, static_cast<std::size_t>(end - part.content), FieldShape::Mixed);
    }
}

DelimitedRecords::Scan DelimitedRecords::ScanRecord() {
    BeginRecord();
    if (buffer_.Start() == buffer_.End()) return buffer_.AtEnd() ? Scan::End : Scan::NeedsMore;
    Marks marks = marks_;  // a copy of its own can stay in registers
    const char* const end = buffer_.End();
    const char* fieldStart = buffer_.Start();
    QualifiedPart part;
    bool mayOpen = !qualifier_.empty();
    for (;;) {
        const char* at = marks.Next(scan_, end);
        if (at == end) return ScanLastField(fieldStart, part);
        if (at < fieldStart) continue;  // within a delimiter or a line end
        const char mark = *at;
        if (mark == delimiter_[0]) {
            const Match match = TokenAt(at, delimiter_);
            if (match == Match::NeedsMore) return Scan::NeedsMore;
            if (match == Match::Yes) {
                AddField(fieldStart, at, part);
                fieldStart = at + delimiter_.size();
                part.content = nullptr;
                mayOpen = !qualifier_.empty();
                continue;
            }
        }
        if (mark == '\r' || mark == '\n') {
            marks_ = marks;
            return EndRecord(at, fieldStart, part);
        }
        if (!mayOpen || mark != qualifier_[0]) continue;
        const Match isQualifier = TokenAt(at, qualifier_);
        if (isQualifier == Match::NeedsMore) return Scan::NeedsMore;
        if (isQualifier == Match::No) continue;
        mayOpen = false;
        if (!IsOpening(fieldStart, at)) continue;
        marks_ = marks;
        if (ScanQualified(at, part) == Match::NeedsMore) return Scan::NeedsMore;
        marks = marks_;
    }
}

/// The window ended within a field: the text's last field when the text ends there too.
DelimitedRecords::Scan DelimitedRecords::ScanLastField(const char* fieldStart, const QualifiedPart& part) {
    if (!buffer_.AtEnd()) return Scan::NeedsMore;
    AddField(fieldStart, buffer_.End(), part);
    buffer_.StartAt(buffer_.End());
    return Scan::Record;
}

DelimitedRecords::Scan DelimitedRecords::EndRecord(const char* lineEnd, const char* fieldStart,
                                                   const QualifiedPart& part) {
    const char* next = lineEnd + 1;
    if (*lineEnd == '\r') {
        if (next == buffer_.End() && !buffer_.AtEnd()) return Scan::NeedsMore;
        if (next != buffer_.End() && *next == '\n') ++next;
    }
    const bool isEmpty = lineEnd == buffer_.Start();
    if (!isEmpty) AddField(fieldStart, lineEnd, part);
    buffer_.StartAt(next);
    return isEmpty ? Scan::EmptyLine : Scan::Record;
}

/// Goes behind the closing qualifier and fills part; leaves part and the place alone when there is none (No).
DelimitedRecords::Match DelimitedRecords::ScanQualified(const char* opening, QualifiedPart& part) {
    if (unclosed_ == buffer_.OffsetOf(opening)) return Match::No;
    const char* const content = opening + qualifier_.size();
    const char* from = content;
    bool doubled = false;
    for (;;) {
        const char* at = marks_.Next(scan_, buffer_.End());
        if (at == buffer_.End()) return Unclosed(opening, std::max(from, at - (qualifier_.size() - 1)));
        if (at < from || *at != qualifier_[0]) continue;
        const Match isQualifier = TokenAt(at, qualifier_);
        if (isQualifier == Match::No) continue;
        const char* next = at + qualifier_.size();
        const Match isDoubled = isQualifier == Match::Yes ? TokenAt(next, qualifier_) : Match::NeedsMore;
        if (isDoubled == Match::NeedsMore) return Unclosed(opening, at);
        if (isDoubled == Match::No) {
            part = {content, at, doubled};
            return Match::Yes;
        }
        doubled = true;
        from = next + qualifier_.size();
    }
}

/// The window shows no closing qualifier. Before it grows for such a field, the text is searched for one: at most one
/// qualifier of a text has none, since every later run of qualifiers then is even and closes what it opens.
/// seen: where the search is to go on.
DelimitedRecords::Match DelimitedRecords::Unclosed(const char* opening, const char* seen) {
    const std::uint64_t offset = buffer_.OffsetOf(opening);
    if (!buffer_.AtEnd()) {
        if (!buffer_.IsFull() || closed_ == offset) return Match::NeedsMore;
        const std::string_view rest(seen, static_cast<std::size_t>(buffer_.End() - seen));
        if (QualifierCloses(rest, buffer_.Stream(), qualifier_)) {
            closed_ = offset;
            return Match::NeedsMore;
        }
    }
    unclosed_ = offset;
    marks_.Seek(scan_, opening + qualifier_.size());
    return Match::No;
}

std::string_view DelimitedRecords::TextOf(const Field& field, std::string& scratch) const {
    const std::string_view raw = field.Raw();
    if (field.shape != FieldShape::Mixed) return raw;
    scratch.clear();
    std::size_t from = 0;
    for (;;) {
        const std::size_t at = raw.find(qualifier_, from);
        if (at == std::string_view::npos) break;  // not so in a Mixed field
        scratch.append(raw.substr(from, at - from));
        from = at + qualifier_.size();
        if (raw.compare(from, qualifier_.size(), qualifier_) != 0) break;
        scratch.append(qualifier_);
        from += qualifier_.size();
    }
    if (!IsPadding(raw.substr(from))) scratch.append(raw.substr(from));
    return scratch;
}

bool DelimitedRecords::IsOpening(const char* fieldStart, const char* place) const {
    return IsPadding({fieldStart, static_cast<std::size_t>(place - fieldStart)});
}

bool DelimitedRecords::IsPadding(std::string_view text) const {
    return text.empty() || text.find_first_not_of(padding_) == std::string_view::npos;
}

}  // namespace varnel::text
