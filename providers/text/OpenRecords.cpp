#include "providers/text/OpenRecords.h"

#include <utility>

#include "providers/text/DelimitedRecords.h"
#include "providers/text/FixedRecords.h"

namespace varnel::text {

std::unique_ptr<Records> OpenRecords(std::shared_ptr<const ByteSource> source, const TextFormat& format, int page,
                                     std::size_t bufferBytes) {
    RecordBuffer buffer(Utf8Stream(std::move(source), page), bufferBytes);
    if (format.layout == FileLayout::Delimited) {
        return std::make_unique<DelimitedRecords>(std::move(buffer), format.delimiter, format.qualifier);
    }
    std::vector<std::size_t> widths;
    for (const ColumnSpec& column : format.columns) widths.push_back(column.width);
    return std::make_unique<FixedRecords>(std::move(buffer), std::move(widths));
}

}  // namespace varnel::text
