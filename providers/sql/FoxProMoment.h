// Dates and date-times as the FoxPro dialect writes them.
#pragma once

#include <optional>
#include <string_view>

#include "platform/DateTime.h"

namespace varnel::sql {

struct WrittenMoment {
    DateTime moment;
    bool withTime = false;
};

/// The inside of {…}: ^2003-01-31 (- / or . between the parts) with an optional time behind a blank or comma,
/// 01/31/2003 in the American order, or an ODBC escape: d '2003-01-31', ts '2003-01-31 14:30:00', t '14:30:00'.
/// Nothing when it names no moment.
std::optional<WrittenMoment> ReadFoxProMoment(std::string_view inside);

/// True for {}, {//}, {/:}, {^} and the like.
bool IsEmptyMoment(std::string_view inside);

}  // namespace varnel::sql
