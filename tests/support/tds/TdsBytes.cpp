#include "tests/support/tds/TdsBytes.h"

#include <span>

#include "platform/CodePage.h"

namespace varnel::tds {

std::string ToUtf16(std::string_view utf8) {
    std::string utf16;
    AppendUtf16FromUtf8(utf16, utf8);
    return utf16;
}

std::string FromUtf16(std::string_view utf16) {
    std::string utf8;
    AppendUtf8FromUtf16(utf8, std::span(reinterpret_cast<const std::uint8_t*>(utf16.data()), utf16.size()));
    return utf8;
}

void Writer::Text(std::string_view utf8, int lengthBytes) {
    const std::string utf16 = ToUtf16(utf8);
    Number(utf16.size() / 2, lengthBytes);
    Raw(utf16);
}

std::string Reader::Text(std::size_t characters) {
    return FromUtf16(Raw(2 * characters));
}

}  // namespace varnel::tds
