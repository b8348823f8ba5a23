// Memo and OLE values: stored in their row, as one row of a page that they share, or as a chain of pages.
//
// In the row:  u32 bytes, with bit 31 stored in the row, bit 30 one page, neither a chain
//              u32 pointer to the row of the (first) piece
//              u32 stamp of a chain, the same as at offset 8 of its first page
//              the bytes, when they are stored in the row
// A piece of a chain is the only row of its page: u32 pointer to the next piece, then up to 4,072 bytes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>

#include "ado/types/Value.h"
#include "providers/access/RowPages.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

class LongValueWriter {
public:
    /// file and pages outlive this.
    LongValueWriter(PageFile& file, FilePages& pages) : file_(file), pages_(pages) {}

    /// Stores the value, which is not Null, and returns what the row holds of it; valid until the next call. Throws
    /// Error{Conversion} naming the column for a value that is neither text (memo) nor bytes (OLE), or too long.
    std::span<const std::uint8_t> Store(const Column& column, const Value& value);
    /// Gives back what a row's value occupies outside of the row. Throws Error{Corrupt} for a value that leads to pages
    /// that are not its column's.
    void Free(const Column& column, std::span<const std::uint8_t> stored);
    /// As RowPages::Forget.
    void Forget() { shared_.clear(); }

private:
    void Encode(const Column& column, const Value& value);
    RowPointer StoreChain(const Column& column);
    void FreeChain(const Column& column, RowPointer first);
    RowPages& SharedPages(const Column& column);

    PageFile& file_;
    FilePages& pages_;
    std::unordered_map<std::uint16_t, RowPages> shared_;  ///< by column id
    Value converted_;
    std::string bytes_;          ///< of the value at hand
    std::size_t wordBytes_ = 0;  ///< what decides about its place: its bytes before compression
    std::string stored_;
};

}  // namespace varnel::access
