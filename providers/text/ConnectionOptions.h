// What a connection string says about the text files of its folder.
#pragma once

#include <string_view>

#include "providers/text/TextFormat.h"

namespace varnel::text {

/// Reads Extended Properties ("text;HDR=Yes;FMT=Delimited(;);CharacterSet=65001;MaxScanRows=0") over the defaults.
/// HDR, FMT, and every key of Schema.ini but Col lines count; anything else is passed over.
/// Throws Error{Syntax} for a value that an option does not have.
TextFormat ReadConnectionOptions(std::string_view extendedProperties);

}  // namespace varnel::text
