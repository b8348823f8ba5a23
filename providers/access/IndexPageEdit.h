// Changes of an index page in place: the bytes behind the change move, and the mask with them.
#pragma once

#include <span>
#include <string_view>

#include "providers/access/IndexPage.h"

namespace varnel::access {

/// Changes the bytes that page reads; afterwards page is stale. All offsets are of page.
class IndexPageEdit {
public:
    /// page: reads exactly these bytes.
    IndexPageEdit(std::span<std::uint8_t> bytes, const IndexShape& shape, const IndexPage& page)
        : bytes_(bytes), shape_(shape), page_(page) {}

    /// Puts a whole entry before the one at start (Used(): behind the last), where it belongs. Returns false, and
    /// changes nothing, when there is no room for it or it does not share the page's prefix.
    bool Insert(std::size_t start, std::string_view entry);
    /// Takes the entry at start away.
    void Remove(std::size_t start);

private:
    std::uint8_t* Entries() { return bytes_.data() + shape_.entriesAt; }
    /// Moves the bytes from offset from on, and the mask bits above from, up by count (down when negative).
    void Shift(std::size_t from, std::ptrdiff_t count);
    void SetUsed(std::size_t used);
    void SetBoundary(std::size_t offset);

    std::span<std::uint8_t> bytes_;
    const IndexShape& shape_;
    const IndexPage& page_;
};

}  // namespace varnel::access
