#include "platform/AppendGuard.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Utf8.h"

namespace varnel {
namespace {

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUnit(std::string& out, char32_t unit) {
    out += static_cast<char>(unit & 0xFF);
    out += static_cast<char>(unit >> 8);
}

}  // namespace

void AppendUtf8FromUtf16(std::string& out, std::span<const std::uint8_t> utf16) {
    if (utf16.size() % 2 != 0) {
        throw Error(ErrorKind::Conversion, "",
                    "UTF-16 text of " + std::to_string(utf16.size()) + " bytes, an odd length");
    }
    AppendGuard guard(out);
    const auto unitAt = [&](std::size_t at) { return static_cast<char32_t>(utf16[at] | utf16[at + 1] << 8); };
    for (std::size_t at = 0; at < utf16.size(); at += 2) {
        char32_t code = unitAt(at);
        if (IsHighSurrogate(code) && at + 2 < utf16.size() && IsLowSurrogate(unitAt(at + 2))) {
            at += 2;
            code = 0x10000 + ((code - 0xD800) << 10) + (unitAt(at) - 0xDC00);
        } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
            throw Error(ErrorKind::Conversion, "",
                        "UTF-16 text with an unpaired surrogate at byte " + std::to_string(at + 1));
        }
        AppendCodePoint(out, code);
    }
    guard.Keep();
}

void AppendUtf16FromUtf8(std::string& out, std::string_view utf8) {
    AppendGuard guard(out);
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        const char32_t code = NextCodePoint(utf8, at);
        if (code == kNoCodePoint) {
            throw Error(ErrorKind::Conversion, "",
                        "text that is not well-formed UTF-8 at byte " + std::to_string(start + 1));
        }
        if (code < 0x10000) {
            AppendUnit(out, code);
        } else {
            AppendUnit(out, 0xD800 + ((code - 0x10000) >> 10));
            AppendUnit(out, 0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    guard.Keep();
}

}  // namespace varnel
