// The one-line form of a column mapping:
//   "ID Integer"
//   "Price Numeric(10,2)"
//   "[Ship To] VarWchar(60) -> Destination Text(80)"
// A name with blanks, or one that begins with a bracket, stands in brackets. The target side begins with its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// One side as it was written; what was left out is absent.
struct ColumnSide {
    std::string name, type;
    std::optional<std::int64_t> width, scale;
};

struct ColumnSides {
    ColumnSide source;
    std::optional<ColumnSide> target;
};

/// Throws Error{Syntax} saying what is wrong and how to write it.
ColumnSides ParseShortForm(std::string_view text);

/// The shortest line that reads back as this mapping; nothing when only the long form can say it (a column that is not
/// selected, a source type name of its own, a name with a closing bracket, stored values).
std::optional<std::string> ShortForm(const ColumnMapping& column);

}  // namespace varnel::admin
