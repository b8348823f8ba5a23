// The pages of a file that belong to nobody, and those that change hands.
#pragma once

#include <optional>
#include <vector>

#include "providers/access/PageAllocator.h"
#include "providers/access/PageFile.h"
#include "providers/access/UsageMapWriter.h"

namespace varnel::access {

/// The rows of page 1 on which the file's own maps lie in a file of ours.
inline constexpr RowPointer kFreeMap{1, 0}, kReleasedMap{1, 1};

class FilePages : public PageAllocator {
public:
    /// freeMap: as the file's header names it. file outlives this.
    explicit FilePages(PageFile& file, RowPointer freeMap = kFreeMap);

    PageNumber Take(RowPointer map) override;
    void Give(RowPointer map, PageNumber page) override;
    /// The same for pages that stand in no map: definitions, usage maps, bits of maps.
    PageNumber TakeLoose();
    void GiveLoose(PageNumber page);

    /// Gives back every page of a map, and leaves the map empty.
    void GiveAll(RowPointer map);
    /// Empties a map whose pages stay, or stand in another one.
    void EmptyMap(RowPointer map);

    /// The maps of tables, columns and indexes.
    UsageMapWriter& Maps() { return maps_; }

private:
    /// Pages of bits of the free map itself come from the end of the file, and are not free.
    void KeepAppended();

    PageFile& file_;
    RowPointer freeMap_;
    UsageMapWriter maps_, free_;
    std::vector<PageNumber> appended_;
};

}  // namespace varnel::access
