// Opens the records of a text in the layout that its format names.
#pragma once

#include <memory>

#include "providers/text/ByteSource.h"
#include "providers/text/Records.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

/// page: the code page, or kUnknownPage. bufferBytes: of the window to begin with. The header line comes first.
std::unique_ptr<Records> OpenRecords(std::shared_ptr<const ByteSource> source, const TextFormat& format, int page,
                                     std::size_t bufferBytes);

}  // namespace varnel::text
