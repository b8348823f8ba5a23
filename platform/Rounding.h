// Rounding to whole numbers, ties to the even neighbour, as every conversion of a number to an integer does it.
#pragma once

#include <cstdint>

namespace varnel {

/// The nearest whole number, a tie going to the even one: 2.5 gives 2, 3.5 gives 4, -2.5 gives -2.
double RoundTiesToEven(double number);
/// Rounded as above. Throw Error{Conversion} "Overflow" when the result does not fit (NaN included).
std::int16_t ToInt16(double number);
std::int32_t ToInt32(double number);
std::int64_t ToInt64(double number);

}  // namespace varnel
