// The looks that this process has taken at files, so that the count of a file's rows and the rows themselves need one
// look together.
#pragma once

#include <memory>
#include <string>

#include "platform/InputFile.h"
#include "providers/text/FileLook.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

/// The look at a file in its present state: the one that was taken before, while the file's state and the format are
/// the same, else a new one. storedPath: names the file, and its end names it in error texts. Throws as LookAtFile.
std::shared_ptr<const FileLook> LookOf(const std::string& storedPath, const std::string& fileName,
                                       const TextFormat& format, std::size_t bufferBytes);

}  // namespace varnel::text
