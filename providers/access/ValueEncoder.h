// Values as a row stores them (Jet 4). Memo and OLE values are not stored in the row: see LongValueWriter.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// The longest value that is stored in a row, in bytes.
inline constexpr std::size_t kLongestStoredValue = 512;

class ValueEncoder {
public:
    /// Writes value, which is not Null, as column stores it, and returns its bytes; none for a Boolean. A value of
    /// another kind is converted first. target: at least kLongestStoredValue bytes, whatever is behind the value's own
    /// bytes stays undefined. Throws Error{Conversion} naming the column for a value that the column cannot hold whole.
    std::size_t Encode(const Column& column, const Value& value, std::span<std::uint8_t> target);
    /// True or False, for the column's bit.
    bool EncodeBoolean(const Column& column, const Value& value);

private:
    const Value& AsKind(ValueKind kind, DataTypeEnum type, const Value& value);

    Value converted_;
};

/// A memo's text. inWords: whether it has to be stored as UTF-16; else it is compressed when that is possible and
/// saves bytes.
void AppendMemoText(std::string& bytes, std::string_view utf8, bool inWords);

/// Throws Error{Conversion}: why column does not take value.
[[noreturn]] void RefuseValue(const Column& column, const Value& value, const std::string& why);
/// A value for an error text, at most 40 characters of it.
std::string ShownValue(const Value& value);

}  // namespace varnel::access
