// One parameter of a command.
#pragma once

#include <string>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Provider.h"
#include "ado/types/Value.h"

namespace varnel {

/// 255 in Precision and NumericScale means not stated. Size is in characters or bytes, as Field::DefinedSize.
struct Parameter {
    std::string Name;  ///< the column that it fills, for error texts; may be empty
    ParameterDirectionEnum Direction = adParamInput;
    DataTypeEnum Type = adVarWChar;
    std::int64_t Size = 0;
    std::uint8_t NumericScale = kNotStated;
    std::uint8_t Precision = kNotStated;
    varnel::Value Value;
};

}  // namespace varnel
