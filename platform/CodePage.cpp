#include "platform/CodePage.h"

#include <iconv.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>
#include <vector>

#include "platform/AppendGuard.h"
#include "platform/Error.h"
#include "platform/Utf8.h"

namespace varnel {
namespace {

enum class PageKind { Utf8, Utf16Low, Utf16High, SingleByte, MultiByte };

/// An open conversion of the C library.
class Converter {
public:
    Converter() = default;
    Converter(const std::string& to, const std::string& from) : handle_(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (IsOpen()) iconv_close(handle_);
    }
    Converter(Converter&& other) noexcept : handle_(std::exchange(other.handle_, kClosed)) {}
    Converter& operator=(Converter&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    bool IsOpen() const { return handle_ != kClosed; }

    /// Appends bytes converted, from the initial state on; returns how many bytes of the input were converted.
    std::size_t Append(std::string& out, std::string_view bytes) const {
        char* input = const_cast<char*>(bytes.data());  // iconv takes, but does not write, a char*
        std::size_t left = bytes.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        for (bool more = true; more;) {
            std::array<char, 1024> block;
            char* output = block.data();
            std::size_t room = block.size();
            const bool stopped = iconv(handle_, &input, &left, &output, &room) == static_cast<std::size_t>(-1);
            more = stopped && errno == E2BIG;
            out.append(block.data(), block.size() - room);
        }
        AppendHeldBack(out);
        return bytes.size() - left;
    }

private:
    /// A page with combining marks (1255, 1258) keeps a letter back until it has seen the next byte.
    void AppendHeldBack(std::string& out) const {
        std::array<char, 16> block;
        char* output = block.data();
        std::size_t room = block.size();
        iconv(handle_, nullptr, nullptr, &output, &room);
        out.append(block.data(), block.size() - room);
    }

    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the C library marks a converter that could not be opened
    static inline const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);
    iconv_t handle_ = kClosed;
};

bool IsSingleByteNumber(int number) {
    return (number >= 1250 && number <= 1258) || number == 437 || number == 850 || number == 852 || number == 866 ||
           number == 737 || number == 857 || number == 860 || number == 861 || number == 863 || number == 865 ||
           number == 10000 || number == 10007 || number == 10029 || number == 874 || number == 20866 || (number >= 28591 && number <= 28606);
}

bool IsMultiByteNumber(int number) {
    return number == 932 || number == 936 || number == 949 || number == 950;
}

/// The C library's name of a Windows code page.
std::string SystemName(int number) {
    if (number == 20866) return "KOI8-R";
    if (number == 932) return "WINDOWS-31J";
    if (number == 10000) return "MACINTOSH";
    if (number == 10007) return "MAC-CYRILLIC";
    if (number == 10029) return "MAC-CENTRALEUROPE";
    if (number >= 28591 && number <= 28606) return "ISO-8859-" + std::to_string(number - 28590);
    return "CP" + std::to_string(number);
}

std::string HexByte(char byte) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned char>(byte));
    return text;
}

[[noreturn]] void ThrowNoMeaning(std::string_view bytes, std::size_t at, int page) {
    throw Error(ErrorKind::Conversion, "",
                "byte " + HexByte(bytes[at]) + " at position " + std::to_string(at + 1) +
                    " has no meaning in code page " + std::to_string(page));
}

[[noreturn]] void ThrowNoPlace(std::string_view utf8, std::size_t at, int page) {
    const std::size_t start = at;
    const char32_t code = NextCodePoint(utf8, at);
    if (code == kNoCodePoint) {
        throw Error(ErrorKind::Conversion, "",
                    "text that is not well-formed UTF-8 at byte " + std::to_string(start + 1));
    }
    throw Error(ErrorKind::Conversion, "",
                "the character '" + std::string(utf8.substr(start, at - start)) + "' (" + CodePointName(code) +
                    ") has no place in code page " + std::to_string(page));
}

void SwapByteOrder(std::string& text, std::size_t from) {
    for (std::size_t at = from; at + 1 < text.size(); at += 2) std::swap(text[at], text[at + 1]);
}

/// Appends UTF-16 as UTF-8 up to the first unit that is no character; returns how many bytes were taken.
std::size_t AppendSomeUtf16(std::string& out, std::string_view bytes, bool highFirst) {
    const auto unitAt = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]), second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(highFirst ? first << 8 | second : second << 8 | first);
    };
    std::size_t at = 0;
    while (at + 1 < bytes.size()) {
        char32_t code = unitAt(at);
        std::size_t length = 2;
        if (code >= 0xD800 && code <= 0xDFFF) {
            const char32_t low = code <= 0xDBFF && at + 3 < bytes.size() ? unitAt(at + 2) : 0;
            if (low < 0xDC00 || low > 0xDFFF) break;
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            length = 4;
        }
        AppendCodePoint(out, code);
        at += length;
    }
    return at;
}

std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

struct CodePage::Tables {
    int number = 0;
    PageKind kind = PageKind::Utf8;
    /// Single-byte pages: the code point of each byte, kNoCodePoint where there is none; and the bytes above 0x7F
    /// sorted by code point.
    std::array<char32_t, 256> codePoints{};
    std::vector<std::pair<char32_t, char>> highBytes;
    Converter decoder, encoder;

    void Decode(std::string& out, std::string_view bytes) const;
    void Encode(std::string& out, std::string_view utf8) const;
    void FillSingleByte(const Converter& toUtf8);
    std::size_t DecodeSingleByte(std::string& out, std::string_view bytes) const;
    void EncodeSingleByte(std::string& out, std::string_view utf8) const;
};

void CodePage::Tables::FillSingleByte(const Converter& toUtf8) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        codePoints[byte] = byte;
        if (byte < 0x80) continue;
        const char character = static_cast<char>(byte);
        std::string utf8;
        std::size_t at = 0;
        const bool known = toUtf8.Append(utf8, {&character, 1}) == 1 && !utf8.empty();
        codePoints[byte] = known ? NextCodePoint(utf8, at) : kNoCodePoint;
        if (known) highBytes.emplace_back(codePoints[byte], character);
    }
    std::sort(highBytes.begin(), highBytes.end());
}

std::size_t CodePage::Tables::DecodeSingleByte(std::string& out, std::string_view bytes) const {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t run = AsciiRun(bytes, at);
        out.append(bytes.substr(at, run));
        at += run;
        if (at == bytes.size()) break;
        const char32_t code = codePoints[static_cast<unsigned char>(bytes[at])];
        if (code == kNoCodePoint) break;
        AppendCodePoint(out, code);
        ++at;
    }
    return at;
}

void CodePage::Tables::EncodeSingleByte(std::string& out, std::string_view utf8) const {
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t run = AsciiRun(utf8, at);
        out.append(utf8.substr(at, run));
        at += run;
        if (at == utf8.size()) break;
        const std::size_t start = at;
        const char32_t code = NextCodePoint(utf8, at);
        const auto found = std::lower_bound(highBytes.begin(), highBytes.end(), code,
                                            [](const auto& entry, char32_t wanted) { return entry.first < wanted; });
        if (found == highBytes.end() || found->first != code) ThrowNoPlace(utf8, start, number);
        out += found->second;
    }
}

void CodePage::Tables::Decode(std::string& out, std::string_view bytes) const {
    switch (kind) {
        case PageKind::Utf8:
            if (!IsUtf8(bytes)) ThrowNoMeaning(bytes, WellFormedLength(bytes), number);
            out.append(bytes);
            return;
        case PageKind::Utf16Low:
            AppendUtf8FromUtf16(out, AsBytes(bytes));
            return;
        case PageKind::Utf16High: {
            std::string swapped(bytes);
            SwapByteOrder(swapped, 0);
            AppendUtf8FromUtf16(out, AsBytes(swapped));
            return;
        }
        case PageKind::SingleByte:
        case PageKind::MultiByte: {
            const bool isSingle = kind == PageKind::SingleByte;
            const std::size_t done = isSingle ? DecodeSingleByte(out, bytes) : decoder.Append(out, bytes);
            if (done != bytes.size()) ThrowNoMeaning(bytes, done, number);
            return;
        }
    }
}

void CodePage::Tables::Encode(std::string& out, std::string_view utf8) const {
    switch (kind) {
        case PageKind::Utf8:
            for (std::size_t at = 0; (at += AsciiRun(utf8, at)) < utf8.size();) {
                const std::size_t start = at;
                if (NextCodePoint(utf8, at) == kNoCodePoint) ThrowNoPlace(utf8, start, number);
            }
            out.append(utf8);
            return;
        case PageKind::Utf16Low:
        case PageKind::Utf16High: {
            const std::size_t start = out.size();
            AppendUtf16FromUtf8(out, utf8);
            if (kind == PageKind::Utf16High) SwapByteOrder(out, start);
            return;
        }
        case PageKind::SingleByte:
            EncodeSingleByte(out, utf8);
            return;
        case PageKind::MultiByte: {
            const std::size_t done = encoder.Append(out, utf8);
            if (done != utf8.size()) ThrowNoPlace(utf8, done, number);
            return;
        }
    }
}

CodePage::CodePage(int number) : tables_(std::make_unique<Tables>()) {
    tables_->number = number;
    if (number == 65001) return;
    if (number == 1200 || number == 1201) {
        tables_->kind = number == 1200 ? PageKind::Utf16Low : PageKind::Utf16High;
        return;
    }
    const bool single = IsSingleByteNumber(number);
    if (single || IsMultiByteNumber(number)) {
        tables_->kind = single ? PageKind::SingleByte : PageKind::MultiByte;
        tables_->decoder = Converter("UTF-8", SystemName(number));
        if (!single) tables_->encoder = Converter(SystemName(number), "UTF-8");
    }
    if (!tables_->decoder.IsOpen() || (!single && !tables_->encoder.IsOpen())) {
        throw Error(ErrorKind::NotSupported, "", "Code page " + std::to_string(number) + " is not supported");
    }
    if (single) tables_->FillSingleByte(tables_->decoder);
}

CodePage::~CodePage() = default;
CodePage::CodePage(CodePage&&) noexcept = default;
CodePage& CodePage::operator=(CodePage&&) noexcept = default;

bool CodePage::IsSupported(int number) {
    return number == 65001 || number == 1200 || number == 1201 || IsSingleByteNumber(number) ||
           IsMultiByteNumber(number);
}

int CodePage::Number() const {
    return tables_->number;
}

void CodePage::Decode(std::string& utf8Out, std::string_view bytes) const {
    AppendGuard guard(utf8Out);
    tables_->Decode(utf8Out, bytes);
    guard.Keep();
}

std::size_t CodePage::DecodeSome(std::string& utf8Out, std::string_view bytes) const {
    switch (tables_->kind) {
        case PageKind::Utf8: {
            const std::size_t done = WellFormedLength(bytes);
            utf8Out.append(bytes.substr(0, done));
            return done;
        }
        case PageKind::Utf16Low:
        case PageKind::Utf16High:
            return AppendSomeUtf16(utf8Out, bytes, tables_->kind == PageKind::Utf16High);
        case PageKind::SingleByte:
            return tables_->DecodeSingleByte(utf8Out, bytes);
        case PageKind::MultiByte:
            return tables_->decoder.Append(utf8Out, bytes);
    }
    return 0;
}

void CodePage::Encode(std::string& bytesOut, std::string_view utf8) const {
    AppendGuard guard(bytesOut);
    tables_->Encode(bytesOut, utf8);
    guard.Keep();
}

}  // namespace varnel
