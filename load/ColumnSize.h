// The size behind a column's type word in CREATE TABLE.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "repository/model/SessionModel.h"

namespace varnel {

/// "(width)", "(width,scale)" or "" for column record j. mode "N": by the target definition (DDType, DWidth, DScale);
/// mode "O": by the source column (the mapped SOrgDtype, SWidth, SScale).
/// Throws Error{Misuse} when there is no column record j.
std::string ColumnSizeText(std::int16_t j, std::string_view mode);

/// The same for a column record at hand.
std::string SizeText(const ColumnEntry& column, std::string_view mode);

}  // namespace varnel
