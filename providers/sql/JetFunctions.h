// The functions that people write in filters, by name and without case.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel::sql {

using JetArguments = std::span<const Value* const>;

/// At most this many arguments reach a function; only the lazy ones take more.
inline constexpr std::size_t kMostArguments = 8;

struct JetFunction {
    std::string_view name;   ///< lower case
    std::uint8_t least = 0;  ///< arguments
    std::uint8_t most = 0;
    DataTypeEnum result = adVariant;  ///< adVariant: depends on the arguments
    bool takesNull = false;           ///< false: one Null argument makes the result Null
    /// Sets out, which is no argument. Throws Error{Conversion}. Null for the lazy ones: IIf, Switch, Choose.
    void (*run)(JetArguments arguments, Value& out) = nullptr;
};

/// Null when there is no such function.
const JetFunction* FindJetFunction(std::string_view name);

/// The parts of the table, one file each.
std::span<const JetFunction> TextFunctions();
std::span<const JetFunction> NumberFunctions();
std::span<const JetFunction> DateFunctions();

}  // namespace varnel::sql
