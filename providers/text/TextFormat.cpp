#include "providers/text/TextFormat.h"

#include <string_view>

namespace varnel::text {
namespace {

/// Length first, so that no text can look like the end of another.
void AppendPart(std::string& out, std::string_view part) {
    out += std::to_string(part.size());
    out += ':';
    out += part;
}

}  // namespace

std::string TextFormat::Signature() const {
    std::string line;
    for (const std::int64_t number :
         {static_cast<std::int64_t>(layout), static_cast<std::int64_t>(hasHeader), maxScanRows,
          static_cast<std::int64_t>(codePage), static_cast<std::int64_t>(decimalSymbol),
          static_cast<std::int64_t>(currencyDecimal), static_cast<std::int64_t>(columns.size())}) {
        AppendPart(line, std::to_string(number));
    }
    for (const std::string& part : {delimiter, qualifier, datePicture, currencySymbol, currencyThousands}) {
        AppendPart(line, part);
    }
    for (const ColumnSpec& column : columns) {
        AppendPart(line, column.name);
        AppendPart(line, std::to_string(static_cast<int>(column.type)));
        AppendPart(line, std::to_string(column.width));
        AppendPart(line, column.datePicture);
    }
    return line;
}

}  // namespace varnel::text
