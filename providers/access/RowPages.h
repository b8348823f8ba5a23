// The pages on which the rows of one owner lie: a table's rows, or the shared long values of one column.
#pragma once

#include <cstdint>
#include <span>

#include "providers/access/FilePages.h"
#include "providers/access/PageFile.h"

namespace varnel::access {

class RowPages {
public:
    /// owner: what the pages say they belong to. owned, room: maps of the pages, and of those with room; the latter may
    /// be none: every row then gets a page of its own. file and pages outlive this.
    RowPages(PageFile& file, FilePages& pages, std::uint32_t owner, RowPointer owned, RowPointer room)
        : file_(file), pages_(pages), owner_(owner), owned_(owned), room_(room) {}

    /// Writes the row where there is room. row: at most 4,080 bytes.
    RowPointer Add(std::span<const std::uint8_t> row, std::uint16_t flags = 0);
    /// The slot holds nothing any more; a page that is then empty is given back, but for the lowest one of a table.
    void Delete(RowPointer row);
    /// Has to be called when pages changed by other means: a step undone, a rollback, another process.
    void Forget() { current_ = 0; }

    PageFile& File() { return file_; }
    std::uint32_t Owner() const { return owner_; }

private:
    RowPointer AddElsewhere(std::span<const std::uint8_t> row, std::uint16_t flags);
    void GiveBack(PageNumber page);

    PageFile& file_;
    FilePages& pages_;
    std::uint32_t owner_;
    RowPointer owned_, room_;
    PageNumber current_ = 0;  ///< the page that took the last row
};

}  // namespace varnel::access
