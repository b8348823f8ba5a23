// Taking pages of the file for a purpose, and giving them back.
#pragma once

#include "providers/access/Layout.h"

namespace varnel::access {

class PageAllocator {
public:
    virtual ~PageAllocator() = default;
    /// A page that nobody uses, entered into the usage map at map; its bytes are all zero. Throws Error{Constraint} at
    /// the file's limit of 2 GB.
    virtual PageNumber Take(RowPointer map) = 0;
    /// The page leaves the usage map and is free.
    virtual void Give(RowPointer map, PageNumber page) = 0;
};

}  // namespace varnel::access
