// The records of a text and their fields, as stretches of UTF-8 that are not yet values.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/text/RecordBuffer.h"

namespace varnel::text {

enum class FieldShape : std::uint8_t {
    Plain,      ///< the text stands as it is
    Qualified,  ///< the text stands between qualifiers, which are left out
    Mixed       ///< from behind the opening qualifier on, with doubled qualifiers or text behind the closing one
};

/// A field of the record at hand. A field that is not there is Plain and empty.
struct Field {
    const char* data = nullptr;
    std::size_t size = 0;
    FieldShape shape = FieldShape::Plain;
    std::string_view Raw() const { return {data, size}; }
};

/// A forward read of records. Fields stay good until the next call of Next.
class Records {
public:
    explicit Records(RecordBuffer buffer) : buffer_(std::move(buffer)) {}
    virtual ~Records() = default;

    /// Goes to the next record; false after the last one. Throws Error{Io}.
    virtual bool Next() = 0;
    /// What the field says, unescaped into scratch where its shape asks for it.
    virtual std::string_view TextOf(const Field& field, std::string& scratch) const = 0;

    std::span<const Field> Fields() const { return {fields_.data(), stored_}; }
    /// How many fields the record has, those beyond the limit included.
    std::size_t FieldCount() const { return count_; }
    /// True when a field at position usual or beyond holds something other than blanks.
    bool HasSurplus() const { return surplus_; }
    /// Lines of no characters that were passed over so far.
    std::int64_t EmptyLines() const { return emptyLines_; }
    const Utf8Stream& Stream() const { return buffer_.Stream(); }

    /// kept: fields beyond so many are counted but not kept. usual: how many a record may have.
    void LimitFields(std::size_t kept, std::size_t usual) {
        kept_ = kept;
        usual_ = usual;
    }
    /// Delivers an empty line as a record of one empty field: what it is in a file of one column.
    void KeepEmptyLines() { keepEmptyLines_ = true; }

protected:
    void BeginRecord() {
        stored_ = count_ = 0;
        surplus_ = false;
    }
    void Add(const char* data, std::size_t size, FieldShape shape) {
        const std::size_t position = count_++;
        if (position >= usual_) surplus_ = surplus_ || !IsBlank({data, size});
        if (position >= kept_) return;
        if (stored_ == fields_.size()) fields_.resize(stored_ * 2 + 16);
        fields_[stored_++] = {data, size, shape};
    }
    static bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

    RecordBuffer buffer_;
    bool keepEmptyLines_ = false;
    std::int64_t emptyLines_ = 0;

private:
    std::vector<Field> fields_;
    std::size_t stored_ = 0, count_ = 0;
    std::size_t kept_ = SIZE_MAX, usual_ = SIZE_MAX;
    bool surplus_ = false;
};

}  // namespace varnel::text
