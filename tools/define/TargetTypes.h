// Which column of a target holds a source's column: the load engine's own mapping of types, except where that type
// would lose something that another one of the same database keeps.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/types/Column.h"

namespace varnel::admin {

struct TargetType {
    std::string word;  ///< for CREATE TABLE, sizes in it where the load engine writes none behind it
    std::int32_t width = 0;
    std::int16_t scale = 0;
    std::string loss;  ///< what of the source's values the target cannot hold; "" when it holds them all
};

/// The type's name as session files have it; types that they have no name for become the next larger one.
std::string SessionTypeName(DataTypeEnum type);
/// Characters of texts, bytes of binaries, digits of numbers, as session files have them; 0 for what has no size.
std::int32_t SessionWidth(const ColumnInfo& source);
std::int16_t SessionScale(const ColumnInfo& source);

/// kind: of the target, as on the command line. sourceKind: tells how many letters a narrow text may hold.
TargetType ProposeType(const ColumnInfo& source, std::string_view sourceKind, std::string_view kind);

}  // namespace varnel::admin
