// Any bytes as a row of any columns. The first byte chooses the version, the second the number of columns; each column
// has six bytes; the rest is the row.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/access/CellDecoder.h"
#include "tests/providers_access/MemoryPageFile.h"

using namespace varnel;
using namespace varnel::access;

namespace {

constexpr std::size_t kChoice = 2, kColumnBytes = 6;

Column ColumnOf(const std::uint8_t* bytes) {
    Column column;
    column.type = static_cast<ColumnType>(bytes[0] % 0x16);
    column.flags = bytes[1];
    column.moreFlags = (bytes[1] & 0x80) != 0 ? 0xC0 : 0;
    column.id = bytes[2];
    column.fixedOffset = column.variableNumber = bytes[3];
    column.length = static_cast<std::uint16_t>(bytes[4] * 2);
    column.scale = bytes[5];
    return column;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kChoice || size > 4 * 1024) return 0;  // keep one run short
    static const CodePage western(1252);
    const Layout& shape = data[0] % 2 == 0 ? kJet4Layout : kJet3Layout;
    const std::size_t columns = data[1] % 16;
    if (size < kChoice + columns * kColumnBytes) return 0;
    const std::uint8_t* const rowStart = data + kChoice + columns * kColumnBytes;
    // A buffer of exactly the row's bytes: a read behind them is seen.
    const std::vector<std::uint8_t> row(rowStart, data + size);
    MemoryPageFile file({}, shape, "fuzz");
    const auto pages = file.Freeze({});
    CellDecoder decoder(file, *pages, shape.version == Version::Jet3 ? &western : nullptr);
    RowView view(shape.version);
    Value value;
    if (view.Attach(row) != nullptr) return 0;
    for (std::size_t k = 0; k < columns; ++k)
        decoder.Decode(PlanCell(ColumnOf(data + kChoice + k * kColumnBytes)), view, value);
    return 0;
}
