// Bytes kept aside in a temporary file without a name.
#pragma once

#include <cstdio>
#include <memory>

#include "providers/foxpro/MemoReader.h"

namespace varnel::foxpro {

class KeptCopy : public ByteFile {
public:
    /// Throws Error{Io} when no temporary file can be made.
    KeptCopy();
    /// Throws Error{Io} when the temporary folder is full.
    void Add(std::span<const std::uint8_t> bytes);
    std::uint64_t Size() const override { return size_; }
    std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const override;

private:
    struct CloseFile {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::uint64_t size_ = 0;
};

}  // namespace varnel::foxpro
