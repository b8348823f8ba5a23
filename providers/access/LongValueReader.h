// Memos and OLE objects, whose bytes lie in the row, on a page that they share, or on a chain of pages of their own.
//
// The cell:  u32 number of bytes (bits 0-29), 0x80000000 inline, 0x40000000 one page, neither: chain
//            u32 row pointer of the (first) piece
//            u32 stamp of a chain: equal to the u32 at offset 8 of its first page (not in Access 97)
//            the bytes, when inline
// A piece of a chain begins with the row pointer of the next one, none at the end.
#pragma once

#include "providers/access/DataPage.h"
#include "providers/access/PageFile.h"

namespace varnel::access {

class LongValueReader {
public:
    /// pages: where pages are read from; both must outlive this.
    LongValueReader(PageFile& file, PageFile::Snapshot& pages) : file_(file), pages_(pages) {}

    /// Hands the value's bytes to take, piece by piece; take(Bytes) returns a Fault.
    template <class Take>
    Fault Read(Bytes cell, Take&& take) {
        Pieces pieces;
        if (const Fault fault = Begin(cell, pieces)) return fault;
        while (pieces.left > 0) {
            Bytes piece;
            Fault fault = Next(pieces, piece);
            if (fault == nullptr) fault = take(piece);
            if (fault != nullptr) return fault;
        }
        return nullptr;
    }

private:
    /// A value on the way.
    struct Pieces {
        enum class Storage : std::uint8_t { Inline, OnePage, Chain } storage = Storage::Inline;
        std::size_t left = 0;  ///< bytes not yet delivered
        Bytes inlineBytes;
        RowPointer next;
        std::uint32_t stamp = 0;
        bool first = true;
        // A chain that leads back into itself meets the page noted last, which is renewed after 1, 2, 4 ... pieces.
        PageNumber noted = 0;
        std::size_t piecesUntilNote = 1, noteDistance = 1;
    };

    static Fault Begin(Bytes cell, Pieces& pieces);
    Fault Next(Pieces& pieces, Bytes& piece);
    Fault NextOfChain(Pieces& pieces, Bytes& piece);
    Fault Fetch(RowPointer at, Bytes& row);

    PageFile& file_;
    PageFile::Snapshot& pages_;
    PagePin pin_;  ///< of the page read last, on which the next short value often lies too
    PageNumber pinned_ = 0;
    DataPage page_;
};

}  // namespace varnel::access
