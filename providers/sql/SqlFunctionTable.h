// The functions that people write in filters, by name and without case: what a dialect's table of them holds.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel::sql {

using Arguments = std::span<const Value* const>;

/// At most this many arguments reach a function's run; only those that choose take more.
inline constexpr std::size_t kMostArguments = 8;

/// The functions that work out only what they choose have no run; this says which they are.
enum class Chooses : std::uint8_t {
    Nothing,
    ByCondition,  ///< (condition, then, else)
    FirstTrue,    ///< (condition, value, condition, value, … [, otherwise])
    ByPosition,   ///< (number, first, second, …)
    RowNumber     ///< (): the number of the row at hand
};

struct SqlFunction {
    std::string_view name;   ///< lower case
    std::uint8_t least = 0;  ///< arguments
    std::uint8_t most = 0;
    DataTypeEnum result = adVariant;  ///< adVariant: depends on the arguments
    bool takesNull = false;           ///< false: one Null argument makes the result Null
    /// Sets out, which is no argument. Throws Error{Conversion}. Null for those that choose.
    void (*run)(Arguments arguments, Value& out) = nullptr;
    Chooses chooses = Chooses::Nothing;
};

/// The entry of one of these tables; null when there is none. name: any case.
const SqlFunction* FindFunction(std::span<const std::span<const SqlFunction>> tables, std::string_view name);

/// The parts of the Jet dialect's table, one file each.
std::span<const SqlFunction> TextFunctions();
std::span<const SqlFunction> NumberFunctions();
std::span<const SqlFunction> DateFunctions();

}  // namespace varnel::sql
