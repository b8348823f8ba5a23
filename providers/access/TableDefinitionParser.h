// A table's definition out of its pages.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// The definition that begins on page id. names: the code page of Access 97's names; may be null for the others. Throws
/// Error{Corrupt} naming the page.
TableDefinition ReadTableDefinition(PageFile& file, PageNumber id, const CodePage* names);

/// The same from the definition's bytes (the first page, then the bodies of the ones that follow); place: for error
/// texts. The result has no pages.
TableDefinition ParseTableDefinition(std::span<const std::uint8_t> bytes, const Layout& shape, const CodePage* names,
                                     const std::string& place);

}  // namespace varnel::access
