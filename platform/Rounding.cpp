#include "platform/Rounding.h"

#include <cmath>
#include <limits>

#include "platform/Error.h"

namespace varnel {
namespace {

/// Both ends of a signed type's range are powers of two and thus exact as doubles; NaN fails both comparisons.
template <class Whole>
Whole Fitting(double number) {
    constexpr double kLow = static_cast<double>(std::numeric_limits<Whole>::min());
    const double rounded = RoundTiesToEven(number);
    if (!(rounded >= kLow && rounded < -kLow)) throw Error(ErrorKind::Conversion, "", "Overflow");
    return static_cast<Whole>(rounded);
}

}  // namespace

double RoundTiesToEven(double number) {
    double rounded = std::round(number);  // ties away from zero, whatever the rounding mode is
    if (std::fabs(rounded - number) == 0.5 && std::fmod(rounded, 2.0) != 0) rounded -= std::copysign(1.0, number);
    return rounded;
}

std::int16_t ToInt16(double number) {
    return Fitting<std::int16_t>(number);
}
std::int32_t ToInt32(double number) {
    return Fitting<std::int32_t>(number);
}
std::int64_t ToInt64(double number) {
    return Fitting<std::int64_t>(number);
}

}  // namespace varnel
