// Pages in memory, and an allocator that keeps account of them.
#pragma once

#include <algorithm>
#include <string>

#include "platform/Error.h"
#include "providers/access/PageAllocator.h"
#include "tests/providers_access/MemoryPageFile.h"

namespace varnel::access {

/// Pages in memory, of which the taken ones are known.
struct AllocatedPages : MemoryPageFile, PageAllocator {
    explicit AllocatedPages(const Layout& shape) : MemoryPageFile({}, shape, "memory.mdb") { Append(); }
    PageNumber Take(RowPointer) override {
        PageNumber page = 1;
        while (page < PageCount() && taken.Has(page)) ++page;
        if (page == PageCount()) Append();
        const auto bytes = Change(page);
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        taken.Add(page);
        return page;
    }
    void Give(RowPointer, PageNumber page) override {
        if (!taken.Has(page)) throw Error(ErrorKind::Misuse, "", "page " + std::to_string(page) + " is free already");
        taken.Remove(page);
    }
    void BeginStep() override { MemoryPageFile::BeginStep(), takenBefore = taken; }
    void UndoStep() noexcept override { MemoryPageFile::UndoStep(), taken = takenBefore; }

    PageSet taken, takenBefore;
};

}  // namespace varnel::access
