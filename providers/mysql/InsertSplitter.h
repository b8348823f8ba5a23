// A multi-row INSERT taken apart at the borders of its rows, so that it can be sent in pieces that a server accepts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::mysql {

/// Views into the statement. Put together as head, rows joined by commas, tail, they are the statement again.
struct InsertParts {
    std::string_view head;               ///< up to and with VALUES
    std::vector<std::string_view> rows;  ///< each with its parentheses
    std::string_view tail;               ///< what follows the last row (ON DUPLICATE KEY …), without a semicolon

    std::size_t SizeAround() const { return head.size() + tail.size() + 1; }
};

/// Reads quotes as a server does without backslash escapes: doubled quotes are the only escape. Nothing when the
/// statement is no INSERT or REPLACE with a VALUES list.
std::optional<InsertParts> SplitInsert(std::string_view statement);

/// The statements of at most mostBytes each that insert the same rows in the same order. Every row must fit by itself:
/// SizeAround() and the row's size within mostBytes.
class InsertPieces {
public:
    InsertPieces(const InsertParts& parts, std::size_t mostBytes) : parts_(parts), mostBytes_(mostBytes) {}
    /// Sets statement to the next piece; false after the last one.
    bool Next(std::string& statement);

private:
    const InsertParts& parts_;
    std::size_t mostBytes_;
    std::size_t nextRow_ = 0;
};

}  // namespace varnel::mysql
