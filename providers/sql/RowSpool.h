// Rows kept aside in a temporary file without a name: written once from first to last, then read in that order.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "ado/types/Value.h"

namespace varnel::sql {

class RowSpool {
public:
    /// Throws Error{Io} when no temporary file can be made.
    RowSpool();

    /// Throws Error{Io} when the temporary folder is full. Not after Rewind.
    void Add(std::span<const Value> row);
    /// Ends writing and stands before the first row. Throws Error{Io}.
    void Rewind();
    /// Fills row with the next one and returns true, or returns false after the last. Throws Error{Io}.
    bool Next(std::span<Value> row);

private:
    struct CloseFile {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void Put(const void* bytes, std::size_t count);
    void Get(void* bytes, std::size_t count);
    void PutValue(const Value& value);
    void GetValue(Value& value);
    void GetBytes(std::string& buffer);

    std::unique_ptr<std::FILE, CloseFile> file_;
    std::uint64_t written_ = 0;
    std::uint64_t read_ = 0;
};

}  // namespace varnel::sql
