// The default text of plain numbers, appended to a buffer.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

void AppendIntegerText(std::string& out, std::int64_t number);
/// scaled: the value times 10,000. No trailing zeros behind the point.
void AppendCurrencyText(std::string& out, std::int64_t scaled);
/// The shortest digits that read back as the same number: plain from 1E-5 up to below 1E15, else one digit, point,
/// digits, E, sign and at least two digits of exponent.
void AppendDoubleText(std::string& out, double number);
void AppendSingleText(std::string& out, float number);

}  // namespace varnel
