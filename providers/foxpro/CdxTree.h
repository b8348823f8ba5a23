// The tree of one tag: walked in order, looked up, changed entry by entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "providers/foxpro/CdxFile.h"

namespace varnel::foxpro {

/// All entries of a tree in their stored order. Every step throws Error{Corrupt} when the tree contradicts itself
/// (a loop, a brother that does not link back, keys out of order).
class CdxWalk {
public:
    CdxWalk(const CdxFile& file, CdxPage root, KeyShape shape);
    bool Next();
    KeyBytes Key() const { return node_.Key(at_); }
    std::uint32_t Record() const { return node_.Record(at_); }

private:
    void FindFirstLeaf(CdxPage root);
    void StepRight();
    void RequireOrder();

    const CdxFile& file_;
    CdxNode node_;
    CdxPage page_ = kNoCdxPage;
    std::size_t at_ = 0;
    bool begun_ = false;
    std::uint32_t seen_ = 0;  // pages
    std::vector<std::uint8_t> lastKey_;
    std::uint32_t lastRecord_ = 0;
};

class CdxTree {
public:
    /// tag: position in the file's tags. file: outlives this.
    CdxTree(CdxFile& file, std::size_t tag, KeyShape shape) : file_(file), tag_(tag), shape_(shape) {}

    bool Has(KeyBytes key, std::uint32_t record);
    /// A record that has this key; nothing when none has.
    std::optional<std::uint32_t> FindRecord(KeyBytes key);
    /// Does nothing when the entry is there. When it throws the tree is as before.
    void Insert(KeyBytes key, std::uint32_t record);
    /// False when there is no such entry. When it throws the tree is as before.
    bool Remove(KeyBytes key, std::uint32_t record);
    /// To be called when the file's nodes may be others than before.
    void Forget() { way_.clear(); }

private:
    /// One level of the way from the root to a leaf: entry at of node page leads on.
    struct Step {
        CdxPage page;
        std::size_t at;
    };

    class WayEnds;

    bool WayStillLeads(KeyBytes key, std::uint32_t record);
    /// Finds the way to where (key, record) is or belongs; true when it is there.
    bool Descend(KeyBytes key, std::uint32_t record);
    CdxNode& Node(std::size_t level) { return file_.Load(way_[level].page, shape_); }
    CdxNode& Changed(std::size_t level) { return file_.Change(way_[level].page, shape_); }
    void LoadWhatSplitsNeed();
    void GrowRoot();
    CdxPage AddRightBrother(std::size_t level);
    void SplitLeaf();
    void AppendLeaf(KeyBytes key, std::uint32_t record);
    void PutBefore(KeyBytes key, std::uint32_t record);
    /// Makes page, which ends with this entry, the child behind the one on the way; nodes above split as needed.
    void PutChild(std::size_t level, KeyBytes key, std::uint32_t record, CdxPage page);
    void CorrectLast();
    void LoadBrothers();
    void DropEmpty(std::size_t level);

    CdxFile& file_;
    std::size_t tag_;
    KeyShape shape_;
    std::vector<Step> way_;  // of the last search: neighbours in order are found without another descent
};

/// The first fault of a tree in words, "" when there is none: entries above the leaves are the last ones below them,
/// brothers know each other, leaves lie at one depth. What CdxWalk checks is not looked at again.
std::string FaultInTree(const CdxFile& file, CdxPage root, KeyShape shape);

}  // namespace varnel::foxpro
