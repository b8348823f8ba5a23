// The output file of one table: lines collected in one large buffer and written in large pieces.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel {

class OutputLines {
public:
    /// codePage: the file's code page number; 65001 writes UTF-8. Throws Error{NotSupported} for an unknown one.
    explicit OutputLines(int codePage);

    /// Creates or truncates the file at a stored path. Throws Error{Io}.
    void Open(const std::string& storedPath);

    /// Adds what build appends to its argument, a UTF-8 text, to the line in the file's code page.
    /// Throws what build throws, and Error{Conversion} naming the first character that has no place in the code page
    /// and the remedy; the line is then unchanged.
    template <class Build>
    void Add(Build&& build) {
        const std::size_t from = buffer_.size();
        try {
            build(buffer_);
            if (codePage_) EncodeFrom(from);
        } catch (const Error&) {
            buffer_.resize(from);
            throw;
        }
    }
    void AddText(std::string_view utf8) {
        Add([&](std::string& out) { out += utf8; });
    }
    /// Drops the line's cells so far.
    void DropLine() { buffer_.resize(lineStart_); }
    /// Ends the line with CR LF. A full buffer goes to the file: a failure to write it is raised, and what was not
    /// written is tried again with the next line. Throws Error{Io}, also when the file is not open.
    void EndLine();
    /// Writes what is left and closes. Throws Error{Io} when something of it is lost; the file is closed all the same.
    void Close();
    /// The same when nothing can be said about a loss any more.
    void CloseQuietly() noexcept;

private:
    void EncodeFrom(std::size_t from);

    std::optional<CodePage> codePage_;
    OutputFile file_;
    std::string buffer_;  // ended lines and the line at hand
    std::size_t lineStart_ = 0;
    std::string encoded_;
};

/// The code page of a session's text files: CharacterSet in the Extended Properties of its target connection string
/// (a code page number, or UTF-8), else 1252. Throws Error{Syntax} naming a value that is no code page.
int ExportCodePage(const std::string& targetConnection);

}  // namespace varnel
