// The bytes of a text file, wherever they lie. Reading names its place, so several readers share one source.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/InputFile.h"

namespace varnel::text {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Reads bytes from offset on; returns how many, fewer than asked for only at the end. Throws Error{Io}.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<char> into) const = 0;
};

class FileSource : public ByteSource {
public:
    explicit FileSource(InputFile file) : file_(std::move(file)) {}
    std::size_t ReadAt(std::uint64_t offset, std::span<char> into) const override { return file_.ReadAt(offset, into); }

private:
    InputFile file_;
};

class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::string bytes) : bytes_(std::move(bytes)) {}
    std::size_t ReadAt(std::uint64_t offset, std::span<char> into) const override {
        if (offset >= bytes_.size()) return 0;
        const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
        std::memcpy(into.data(), bytes_.data() + offset, count);
        return count;
    }

private:
    std::string bytes_;
};

}  // namespace varnel::text
