// Any bytes as the definition of a table, and as the properties of one. The first byte chooses the version.
#include <cstddef>
#include <cstdint>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/access/ColumnDescription.h"
#include "providers/access/TableDefinitionParser.h"
#include "providers/access/TableProperties.h"

using namespace varnel;
using namespace varnel::access;

namespace {

void ReadProperties(std::span<const std::uint8_t> bytes, const CodePage* names) {
    TableDefinition table;
    for (const char* name : {"Id", "Name", "data"}) table.columns.emplace_back().name = name;
    try {
        ApplyProperties(bytes, names, "fuzz", table);
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 32 * 1024) return 0;  // keep one run short
    static const CodePage western(1252);
    const Layout& shape = data[0] % 2 == 0 ? kJet4Layout : kJet3Layout;
    const CodePage* names = shape.version == Version::Jet3 ? &western : nullptr;
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    try {
        const TableDefinition table = ParseTableDefinition(bytes, shape, names, "fuzz");
        ColumnOrder(table);
        for (const Column& column : table.columns) DescribeColumn(column, shape.version);
    } catch (const Error&) {
    }
    ReadProperties(bytes, names);
    return 0;
}
