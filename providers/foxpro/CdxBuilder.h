// Whole compound indexes made anew from sorted entries, in the order of pages that Visual FoxPro's own builds have:
// head, directory, then for every tag its head and its nodes, leaves filled to the brim.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/foxpro/CdxFile.h"
#include "providers/foxpro/KeySorter.h"

namespace varnel::foxpro {

/// Where finished pages go.
class CdxPageSink {
public:
    virtual ~CdxPageSink() = default;
    /// The next free page.
    virtual CdxPage Allocate() = 0;
    virtual void Write(CdxPage page, std::span<const std::uint8_t> bytes) = 0;
};

/// One tree, from entries that come in order. Holds one node a level.
class CdxTreeBuilder {
public:
    /// greatestRecord: of all entries to come. marksLeaves: whether leaves say that a bulk build made them.
    CdxTreeBuilder(CdxPageSink& sink, KeyShape shape, std::uint32_t greatestRecord, bool marksLeaves);
    void Add(KeyBytes key, std::uint32_t record) { Put(0, key, record, kNoCdxPage); }
    /// Returns the root. Nothing may be added after.
    CdxPage Finish();

private:
    struct Level {
        CdxNode node;
        CdxPage page;
    };
    Level NewLevel(bool isLeaf, CdxPage page) const;
    void Put(std::size_t level, KeyBytes key, std::uint32_t record, CdxPage child);
    void Close(std::size_t level);
    void WriteNode(const Level& level);

    CdxPageSink& sink_;
    KeyShape shape_;
    std::uint32_t greatestRecord_;
    bool marksLeaves_;
    std::vector<Level> levels_;
};

/// Gives the entries of tag (a position in the tags) to sorter.
using GiveKeys = std::function<void(std::size_t tag, KeySorter& sorter)>;

/// Writes the whole file anew: the same tags, their trees built from what giveKeys gives. pads: per tag. Of equal keys
/// a unique tag keeps the first record's. updateCounter: the new one. Throws Error.
void BuildCdx(JournaledFiles& files, JournaledFiles::Number number, std::vector<CdxTag> tags,
              std::span<const KeyShape> shapes, std::uint32_t updateCounter, const GiveKeys& giveKeys);

}  // namespace varnel::foxpro
