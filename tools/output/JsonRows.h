// Rows of a query as JSON on standard output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/Recordset.h"
#include "tools/output/RowOutput.h"

namespace varnel::admin {

/// text as a JSON string in quotes; bytes that are no UTF-8 become the replacement character.
std::string JsonText(std::string_view text);
/// One JSON value: Null null, numbers with all their digits (currency and decimals too), Booleans true or false,
/// moments as ISO dates in quotes ("2026-11-18 16:23:05"), bytes as upper-case hexadecimal digits, texts and GUIDs in
/// quotes. A floating-point number that is none (infinite) is its text in quotes.
void AppendJson(std::string& out, const Value& value);
/// Names that can be keys of one object: a second "a" is "a_2", a column without a name "column_3" by its place.
std::vector<std::string> JsonKeys(const std::vector<std::string>& columns);
/// An array with one object a line, streamed row by row. Throws Error, among others when standard output cannot be
/// written; the array is then left open, so that no reader takes it for whole.
void WriteJsonRows(Recordset& rows, RowProgress& progress);

}  // namespace varnel::admin
