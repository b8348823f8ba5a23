// The words with which Schema.ini and connection strings describe a text file. Words compare without case.
#pragma once

#include <string>
#include <string_view>

#include "platform/Error.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

/// "In the text file specification 'orders.csv', the 'Format' option is invalid."
Error OptionError(std::string_view file, std::string_view option);

/// Sets one option of format. Returns false for an option that says nothing about reading, or that is not known.
/// option: a key of Schema.ini other than Col lines. value: without the quotes that may enclose it.
/// file: for the error text. Throws Error{Syntax} (OptionError) for a value that the option does not have.
bool SetFormatOption(TextFormat& format, std::string_view option, std::string_view value, std::string_view file);

/// What fits together only as a whole. Throws Error{Syntax}: a delimiter that holds the qualifier, a fixed layout in
/// which a column has no width.
void CheckFormat(const TextFormat& format, std::string_view file);

}  // namespace varnel::text
