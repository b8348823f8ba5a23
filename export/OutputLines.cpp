#include "export/OutputLines.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"

namespace varnel {

namespace {

constexpr std::size_t kBufferBytes = 256 * 1024;
constexpr int kUtf8 = 65001, kWindowsLatin = 1252;

bool IsAscii(std::string_view text) {
    std::uint64_t bits = 0;
    std::size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, 8);
        bits |= word;
    }
    for (; at < text.size(); ++at) bits |= static_cast<unsigned char>(text[at]);
    return (bits & 0x8080808080808080U) == 0;
}

}  // namespace

OutputLines::OutputLines(int codePage) {
    if (codePage != kUtf8) codePage_.emplace(codePage);
    buffer_.reserve(kBufferBytes + kBufferBytes / 8);
}

void OutputLines::Open(const std::string& storedPath) {
    buffer_.clear();
    lineStart_ = 0;
    file_ = OutputFile(storedPath, OutputFile::Mode::Truncate);
}

void OutputLines::EncodeFrom(std::size_t from) {
    const std::string_view text = std::string_view(buffer_).substr(from);
    if (IsAscii(text)) return;
    encoded_.clear();
    try {
        codePage_->Encode(encoded_, text);
    } catch (const Error& error) {
        throw Error(error.kind, error.where,
                    std::string(error.what()) + "; CharacterSet=65001 in the Extended Properties of the target " +
                        "connection string writes the file in UTF-8");
    }
    buffer_.resize(from);
    buffer_ += encoded_;
}

void OutputLines::EndLine() {
    if (!file_.IsOpen()) {
        DropLine();
        throw Error(ErrorKind::Misuse, "", "Bad file name or number");
    }
    buffer_ += "\r\n";
    lineStart_ = buffer_.size();
    if (buffer_.size() < kBufferBytes) return;
    file_.Drain(buffer_);
    lineStart_ = 0;
}

void OutputLines::Close() {
    DropLine();
    OutputFile closing = std::move(file_);
    closing.Drain(buffer_);
    closing.Close();
}

void OutputLines::CloseQuietly() noexcept {
    try {
        Close();
    } catch (const Error&) {
        buffer_.clear();
    }
}

int ExportCodePage(const std::string& targetConnection) {
    const ConnectionString outer(targetConnection);
    std::string word = outer.Get({"CharacterSet"});
    const auto extended = outer.Find({"Extended Properties"});
    if (word.empty() && extended && extended->find('=') != std::string::npos) {
        for (std::string_view rest = *extended; !rest.empty();) {
            const std::size_t end = std::min(rest.find(';'), rest.size());
            const std::string_view pair = TrimBlanks(rest.substr(0, end));
            const std::size_t equals = pair.find('=');
            if (equals != std::string_view::npos && EqualNoCase(TrimBlanks(pair.substr(0, equals)), "CharacterSet")) {
                word = TrimBlanks(pair.substr(equals + 1));
            }
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    if (word.empty() || EqualNoCase(word, "ANSI")) return kWindowsLatin;
    if (EqualNoCase(word, "UTF-8") || EqualNoCase(word, "utf8")) return kUtf8;
    int number = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
    if (parsed.ec == std::errc() && parsed.ptr == word.data() + word.size()) return number;
    throw Error(
        ErrorKind::Syntax, "CharacterSet",
        "The code page '" + word + "' of the target connection string is unknown; write a number, 1252 or 65001");
}

}  // namespace varnel
