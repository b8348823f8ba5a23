// A check's report as text for a terminal.
#pragma once

#include <string>

#include "tools/check/Finding.h"

namespace varnel::admin {

std::string ReportText(const CheckReport& report);
/// The same as data: session, tables, findings, counts; two blanks a level.
std::string ReportJson(const CheckReport& report);

}  // namespace varnel::admin
