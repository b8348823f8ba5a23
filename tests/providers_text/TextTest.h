// What is read out of a folder of text files, in a form that a table of cases can hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"
#include "providers/tablefile/TableFile.h"
#include "providers/text/RecordBuffer.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::text {

/// A table as text. A value: its default text; texts in quotes; ~ for Null; !words for a failure. Rows are joined by a
/// line feed, values by a bar.
struct Shown {
    std::string names;  ///< joined by a bar
    std::string types;  ///< codes joined by a bar
    std::string rows;
    std::int64_t count = 0;  ///< as CountRows says
};

std::string ShownValue(const Value& value);
std::string ShownRows(TableFile& table);
/// Opens a table of the folder and reads all of it.
Shown ReadTable(const TempFolder& folder, const std::string& table, const std::string& options = "",
                std::size_t bufferBytes = kBufferBytes);
/// Reads a file of these bytes with windows of several sizes, which must make no difference, and with a count that
/// must be the number of rows. schema: the lines of the file's section of Schema.ini; "" for none.
Shown ReadText(std::string_view bytes, const std::string& schema = "", const std::string& options = "");

}  // namespace varnel::text
