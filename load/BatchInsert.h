// A multi-row INSERT under construction: the values of many rows as literals of one statement.
#pragma once

#include <string>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel {

class BatchInsert {
public:
    /// head: "INSERT INTO `t` ( `a`, `b`) VALUES ".
    explicit BatchInsert(std::string head) : text_(std::move(head)), headSize_(text_.size()) {}

    bool Empty() const { return text_.size() == headSize_; }
    void StartRow() { text_ += '('; }
    /// Adds the literal of a source field's value and a comma. Throws Error{Conversion}; the row then lacks the value.
    void AddValue(DataTypeEnum sourceType, const Value& value);
    /// Replaces the comma after the last value by "),".
    void EndRow();
    /// The statement: the comma after the last row is removed, ending is put behind it. Valid until the next change.
    const std::string& Finish(std::string_view ending);
    /// Drops all rows; the buffer keeps its size.
    void Clear() { text_.resize(headSize_); }

private:
    std::string text_;  // head and open batch
    std::size_t headSize_;
};

/// Appends value as a literal, by the source field's type group: dates as '2003-07-15-13-05-09', texts quoted with
/// every ' doubled (the text NULL as the word), numbers in numeric text, Booleans as 1 or 0, anything Null as NULL.
/// Throws Error{Conversion} for a value that its group has no literal for.
void AppendLiteral(std::string& out, DataTypeEnum sourceType, const Value& value);

}  // namespace varnel
