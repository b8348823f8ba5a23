// Memo files: .fpt of FoxPro, .dbt of dBASE III and IV.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "providers/foxpro/DbfHeader.h"

namespace varnel::foxpro {

/// Bytes of a file by their place in it; fewer than asked for only at its end. Throws Error{Io}.
class ByteFile {
public:
    virtual ~ByteFile() = default;
    virtual std::uint64_t Size() const = 0;
    virtual std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const = 0;
};

class MemoReader {
public:
    /// Called with the pieces of one memo from its first byte to its last.
    using Piece = std::function<void(std::string_view)>;

    virtual ~MemoReader() = default;
    /// block: the reference in the record, not 0. Returns false when it leads to no whole memo; pieces may have been
    /// given before that was seen. Throws Error{Io}.
    virtual bool Read(std::uint64_t block, const Piece& piece) const = 0;
};

/// file: outlives the reader. kind: not None.
std::unique_ptr<MemoReader> OpenMemoReader(const ByteFile& file, MemoKind kind);

}  // namespace varnel::foxpro
