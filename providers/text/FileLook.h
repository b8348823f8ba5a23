// One look at a whole text file: its code page, its columns and their types, and how many records it has.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/text/ByteSource.h"
#include "providers/text/CellRule.h"
#include "providers/text/ColumnNames.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

struct FileLook {
    int codePage = 0;
    std::int64_t records = 0;     ///< without the header line
    std::size_t usualFields = 0;  ///< what a record has beyond these and is not blank is a fault
    std::vector<ColumnInfo> columns;
    std::vector<CellRule> rules;  ///< one per column
    ColumnNames names;
};

/// Reads all of the file once. format: sound (CheckFormat). fileName: for the error text.
/// Throws Error{Corrupt} for a file without a header line and without records, and Error{Io}.
FileLook LookAtFile(const std::shared_ptr<const ByteSource>& source, const TextFormat& format,
                    std::string_view fileName, std::size_t bufferBytes);

}  // namespace varnel::text
