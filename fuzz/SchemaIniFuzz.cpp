// Any bytes as Schema.ini: read in full or refused, and what is read is a format that records can be opened with.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Error.h"
#include "providers/text/ConnectionOptions.h"
#include "providers/text/OpenRecords.h"
#include "providers/text/SchemaIni.h"

using namespace varnel::text;

namespace {

void UseFormat(const TextFormat& format) {
    const auto source = std::make_shared<MemorySource>("a,\"b\";c|d\t'e'\r\n12 3\n");
    const auto records = OpenRecords(source, format, kUtf8Page, 16);
    while (records->Next()) {
    }
    format.Signature();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 16 * 1024) return 0;  // keep one run short
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        const SchemaIni schema(bytes);
        UseFormat(schema.FormatOf("t.csv", TextFormat()));
        // The whole as one section, so that no name has to be hit upon.
        UseFormat(SchemaIni("[t.csv]\n" + std::string(bytes)).FormatOf("T.CSV", TextFormat()));
    } catch (const varnel::Error&) {  // refusing is right; a crash or another exception is not
    }
    try {
        TextFormat format = ReadConnectionOptions(bytes);
        if (format.layout == FileLayout::Delimited) UseFormat(format);
    } catch (const varnel::Error&) {
    }
    return 0;
}
