// How a text file is laid out: what Schema.ini, the connection string and the defaults together say about it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ado/types/DataTypeEnum.h"

namespace varnel::text {

enum class FileLayout : std::uint8_t { Delimited, FixedWidth };

/// One column as a Col line describes it.
struct ColumnSpec {
    std::string name;
    DataTypeEnum type = adEmpty;  ///< adEmpty: to be found out from the values
    std::size_t width = 0;        ///< characters; 0: not stated
    std::string datePicture;      ///< of this column alone; "": the file's
};

struct TextFormat {
    FileLayout layout = FileLayout::Delimited;
    std::string delimiter = ",";
    std::string qualifier = "\"";  ///< one character; "" for none
    bool hasHeader = true;
    std::int64_t maxScanRows = 25;  ///< 0: all. Types are found from all rows whatever it says
    int codePage = 0;               ///< 0: to be found out
    std::string datePicture;        ///< "": the usual forms
    char decimalSymbol = '.';
    std::string currencySymbol = "$";
    std::string currencyThousands = ",";
    char currencyDecimal = '.';
    std::vector<ColumnSpec> columns;  ///< empty: named by the header line or by number

    /// All of it in one line, different for different formats.
    std::string Signature() const;
};

}  // namespace varnel::text
