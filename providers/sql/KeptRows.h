// Rows put aside between choosing and changing them: in memory up to a limit, beyond it in a temporary file.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "ado/types/Value.h"
#include "providers/sql/RowSpool.h"

namespace varnel::sql {

class KeptRows {
public:
    /// width: values per row. memoryLimit: bytes, roughly.
    explicit KeptRows(std::size_t width, std::size_t memoryLimit = std::size_t{4} << 20)
        : width_(width), memoryLimit_(memoryLimit) {}

    /// Throws Error{Io} when the temporary folder is full. Not after Rewind.
    void Add(std::span<const Value> row);
    /// Ends adding and stands before the first row. Throws Error{Io}.
    void Rewind();
    /// Fills row with the next one and returns true, or returns false after the last. Throws Error{Io}.
    bool Next(std::span<Value> row);
    bool InMemory() const { return !spool_; }

private:
    std::size_t width_;
    std::size_t memoryLimit_;
    std::size_t memoryUsed_ = 0;
    std::vector<Value> values_;  ///< row after row
    std::size_t read_ = 0;
    std::unique_ptr<RowSpool> spool_;  ///< the rows after those in memory
};

}  // namespace varnel::sql
