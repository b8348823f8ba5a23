// How an open record set describes one column.
#pragma once

#include <cstdint>
#include <string>

#include "ado/types/DataTypeEnum.h"

namespace varnel {

/// "Does not apply" in Precision and NumericScale, as ADO reports it.
inline constexpr std::uint8_t kNotStated = 255;

/// One column as an open record set describes it.
struct ColumnInfo {
    std::string name;
    DataTypeEnum type = adEmpty;
    std::int64_t definedSize = 0;  ///< characters of texts, bytes of everything else
    std::uint8_t precision = kNotStated;
    std::uint8_t numericScale = kNotStated;
    bool nullable = true;
};

}  // namespace varnel
