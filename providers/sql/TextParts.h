// Parts of texts, counted in characters: what the text functions of the dialects share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/types/Value.h"
#include "providers/sql/ExpressionValues.h"

namespace varnel::sql {

/// No function makes a longer text than this, so that a filter cannot ask for all memory.
constexpr std::int64_t kLongestText = 16 * 1024 * 1024;

/// An argument as text, kept as long as it is needed.
class Text {
public:
    explicit Text(const Value& value) : view_(TextOf(value, scratch_)) {}
    std::string_view operator*() const { return view_; }

private:
    std::string scratch_;
    std::string_view view_;
};

/// The byte offset of the character at position count (from 0), or the end.
std::size_t OffsetOf(std::string_view text, std::int64_t count);

/// Without the blanks (code 32 only) at one end.
std::string_view WithoutLeft(std::string_view text);
std::string_view WithoutRight(std::string_view text);

/// The character of a byte of code page 1252.
std::string WesternCharacter(char byte);

/// Letters of the Latin, Greek and Cyrillic alphabets in upper case; as many characters as before.
std::string UpperCase(std::string_view text);

}  // namespace varnel::sql
