// The text forms of values and moments. They are the same on every machine: United States dates, decimal point,
// English names, whatever the locale. The Append… forms add to a buffer and allocate nothing else.
#pragma once

#include <string>
#include <string_view>

#include "ado/types/Value.h"

namespace varnel {

/// Default text: a number as its decimal text without a leading blank (floating point: the shortest digits that read
/// back as the same number, plain from 1E-5 up to below 1E15, else like 1E+15 or 1.5E-07; singles with single digits),
/// a moment as general date, a Boolean as True or False, a text as itself, a GUID in braces and upper case, bytes as
/// upper-case hexadecimal digits. Throws Error{Conversion} "Invalid use of Null" for Null; a Failure raises its text.
void AppendDefaultText(std::string& out, const Value& value);
std::string DefaultText(const Value& value);

/// Numeric text: a number as its default text with one blank in front when it is not negative (" 0.5", "-7"); a moment
/// as general date and a Boolean as True or False, without a blank; a text that reads as a number as that number's
/// numeric text. Throws Error{Conversion}: "Type mismatch" for any other text, bytes or GUID; Null as above.
void AppendNumericText(std::string& out, const Value& value);
std::string NumericText(const Value& value);

/// "11/18/2026 4:23:05 PM"; the date alone at midnight; the time alone on day 0. Rounded to the nearest second.
void AppendGeneralDate(std::string& out, DateTime moment);
std::string GeneralDate(DateTime moment);
/// "11/18/2026"
std::string ShortDate(DateTime moment);
/// "04:23:05 PM": two-digit hours of the 12-hour clock.
std::string TwelveHourTime(DateTime moment);
/// "2003-07-15-13-05-09": the form of moments in a multi-row insert. A fraction of a second is cut off.
void AppendDashedDateTime(std::string& out, DateTime moment);
/// "2003-07-15"
void AppendIsoDate(std::string& out, DateTime moment);
/// "2003-07-15 13:05:09", with a point and up to six digits when there is a fraction of a second.
void AppendIsoDateTime(std::string& out, DateTime moment);
/// "18_Nov_26_16_5_09": the time stamp in the name of a loaded file.
std::string FileStamp(DateTime moment);

/// "{0123ABCD-…}": braces, upper case.
void AppendGuidText(std::string& out, const GuidBytes& guid);
/// Accepts with and without braces, any case. Returns false when text is no GUID.
bool ParseGuid(std::string_view text, GuidBytes& guid);

}  // namespace varnel
