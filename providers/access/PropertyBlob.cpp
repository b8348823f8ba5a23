#include "providers/access/PropertyBlob.h"

#include "platform/CodePage.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {
namespace {

constexpr std::uint16_t kNameList = 0x80, kColumn = 1;
constexpr std::uint8_t kSetByDefinition = 1, kBoolean = 1, kTrue = 0xFF;

void AppendName(std::string& bytes, const std::string& name) {
    std::string utf16;
    AppendUtf16FromUtf8(utf16, name);
    AppendU16(bytes, utf16.size());
    bytes += utf16;
}

void AppendBlock(std::string& blob, std::uint16_t kind, const std::string& body) {
    AppendU32(blob, static_cast<std::uint32_t>(body.size() + 6));
    AppendU16(blob, kind);
    blob += body;
}

}  // namespace

std::string RequiredColumnsBlob(std::span<const std::string> columns) {
    if (columns.empty()) return "";
    std::string blob("MR2\0", 4), names;
    AppendName(names, "Required");
    AppendBlock(blob, kNameList, names);
    for (const std::string& column : columns) {
        std::string name, body;
        AppendName(name, column);
        AppendU32(body, static_cast<std::uint32_t>(name.size() + 4));
        body += name;
        AppendU16(body, 9);  // the entry's length
        AppendU8(body, kSetByDefinition);
        AppendU8(body, kBoolean);
        AppendU16(body, 0);  // the property's place among the names
        AppendU16(body, 1);
        AppendU8(body, kTrue);
        AppendBlock(blob, kColumn, body);
    }
    return blob;
}

}  // namespace varnel::access
