#include "providers/foxpro/CdxTree.h"

#include <string>
#include <utility>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kMostLevels = 64;

[[noreturn]] void Broken(const CdxFile& file, const std::string& what) {
    throw Error(ErrorKind::Corrupt, file.Name(), "The index '" + file.Name() + "' is damaged: " + what + ".");
}

}  // namespace

CdxWalk::CdxWalk(const CdxFile& file, CdxPage root, KeyShape shape) : file_(file), node_(shape, true) {
    FindFirstLeaf(root);
}

void CdxWalk::FindFirstLeaf(CdxPage root) {
    page_ = root;
    node_ = file_.Read(root, node_.Shape());
    for (std::size_t level = 0; !node_.IsLeaf(); ++level) {
        if (level == kMostLevels) Broken(file_, "its tree has no leaves");
        page_ = node_.Child(0);
        node_ = file_.Read(page_, node_.Shape());
    }
}

bool CdxWalk::Next() {
    if (begun_) ++at_;
    begun_ = true;
    while (at_ >= node_.Count()) {
        if (node_.right == kNoCdxPage) return false;
        StepRight();
    }
    RequireOrder();
    return true;
}

void CdxWalk::StepRight() {
    if (++seen_ > file_.Pages()) Broken(file_, "its leaves run in a circle");
    const CdxPage before = std::exchange(page_, node_.right);
    node_ = file_.Read(page_, node_.Shape());
    at_ = 0;
    if (!node_.IsLeaf()) Broken(file_, "a leaf's brother is no leaf");
    if (node_.left != before) Broken(file_, "a leaf does not know its left brother");
}

void CdxWalk::RequireOrder() {
    const KeyBytes key = Key();
    if (!lastKey_.empty() && CompareEntries(lastKey_, lastRecord_, key, Record()) >= 0) {
        Broken(file_, "its keys are out of order");
    }
    lastKey_.assign(key.begin(), key.end());
    lastRecord_ = Record();
}

/// True when the way of the last search leads to where the entry belongs as well.
bool CdxTree::WayStillLeads(KeyBytes key, std::uint32_t record) {
    if (way_.empty()) return false;
    const CdxNode& leaf = Node(way_.size() - 1);
    if (leaf.Count() == 0 || CompareEntries(leaf.Key(0), leaf.Record(0), key, record) > 0) return false;
    const std::size_t last = leaf.Count() - 1;
    return leaf.right == kNoCdxPage || CompareEntries(key, record, leaf.Key(last), leaf.Record(last)) <= 0;
}

bool CdxTree::Descend(KeyBytes key, std::uint32_t record) {
    if (WayStillLeads(key, record)) {
        const CdxNode& leaf = Node(way_.size() - 1);
        const std::size_t at = way_.back().at = leaf.LowerBound(key, record);
        return at < leaf.Count() && CompareEntries(leaf.Key(at), leaf.Record(at), key, record) == 0;
    }
    way_.clear();
    CdxPage page = file_.Tags()[tag_].root;
    for (;;) {
        const CdxNode& node = file_.Load(page, shape_);
        const std::size_t at = node.LowerBound(key, record);
        const bool isBeyond = at == node.Count();
        if (node.IsLeaf()) {
            way_.push_back({page, at});
            return !isBeyond && CompareEntries(node.Key(at), node.Record(at), key, record) == 0;
        }
        if (way_.size() == kMostLevels) Broken(file_, "its tree has no leaves");
        way_.push_back({page, isBeyond ? at - 1 : at});
        page = node.Child(way_.back().at);
    }
}

/// While it lives the tree changes its form: the way leads nowhere afterwards.
class CdxTree::WayEnds {
public:
    explicit WayEnds(std::vector<Step>& way) : way_(way) {}
    ~WayEnds() { way_.clear(); }
    WayEnds(const WayEnds&) = delete;
    WayEnds& operator=(const WayEnds&) = delete;

private:
    std::vector<Step>& way_;
};

bool CdxTree::Has(KeyBytes key, std::uint32_t record) {
    return Descend(key, record);
}

std::optional<std::uint32_t> CdxTree::FindRecord(KeyBytes key) {
    Descend(key, 0);
    CdxNode* leaf = &Node(way_.size() - 1);
    std::size_t at = way_.back().at;
    for (std::uint32_t seen = 0; at == leaf->Count() && leaf->right != kNoCdxPage; at = 0) {
        if (++seen > file_.Pages()) Broken(file_, "its leaves run in a circle");
        leaf = &file_.Load(leaf->right, shape_);
    }
    if (at >= leaf->Count() || CompareEntries(leaf->Key(at), 0, key, 0) != 0) return std::nullopt;
    return leaf->Record(at);
}

void CdxTree::Insert(KeyBytes key, std::uint32_t record) {
    while (!Descend(key, record)) {
        const std::size_t at = way_.back().at;
        if (Changed(way_.size() - 1).Insert(at, key, record)) return CorrectLast();
        const CdxNode& leaf = Node(way_.size() - 1);
        const bool isBehindAll = at == leaf.Count();
        if (isBehindAll && leaf.right != kNoCdxPage) Broken(file_, "a node above the leaves has wrong keys");
        const WayEnds wayEnds(way_);
        LoadWhatSplitsNeed();
        if (way_.size() == 1) GrowRoot();
        if (isBehindAll) return AppendLeaf(key, record);  // keys that only ascend leave full leaves behind
        if (leaf.Count() == 1) return PutBefore(key, record);
        SplitLeaf();
    }
}

/// So that no split fails half way.
void CdxTree::LoadWhatSplitsNeed() {
    file_.RequireRoom(static_cast<std::uint32_t>(way_.size()) + 2);
    for (std::size_t level = 0; level < way_.size(); ++level) {
        const CdxPage right = Node(level).right;
        if (right != kNoCdxPage) file_.Load(right, shape_);
    }
}

void CdxTree::GrowRoot() {
    const CdxPage page = way_[0].page, root = file_.Append(shape_, false);
    CdxNode& old = Changed(0);
    CdxNode& grown = file_.Change(root, shape_);
    old.isRoot = false;
    grown.isRoot = true;
    grown.Insert(0, old.Key(old.Count() - 1), old.Record(old.Count() - 1), page);
    file_.SetRoot(tag_, root);
    way_.insert(way_.begin(), {root, 0});
}

CdxPage CdxTree::AddRightBrother(std::size_t level) {
    const CdxPage added = file_.Append(shape_, Node(level).IsLeaf());
    CdxNode& node = Changed(level);
    CdxNode& brother = file_.Change(added, shape_);
    brother.left = way_[level].page;
    brother.right = std::exchange(node.right, added);
    if (brother.right != kNoCdxPage) file_.Change(brother.right, shape_).left = added;
    return added;
}

void CdxTree::AppendLeaf(KeyBytes key, std::uint32_t record) {
    const std::size_t level = way_.size() - 1;
    const CdxPage added = AddRightBrother(level);
    file_.Change(added, shape_).Insert(0, key, record);
    PutChild(level - 1, key, record, added);
}

/// Of two long keys each needs a leaf: the new one takes the place of the old one, which moves to a new leaf.
void CdxTree::PutBefore(KeyBytes key, std::uint32_t record) {
    const std::size_t level = way_.size() - 1;
    const CdxPage added = AddRightBrother(level);
    CdxNode& brother = file_.Change(added, shape_);
    Changed(level).MoveTail(0, brother);
    Changed(level).Insert(0, key, record);
    Changed(level - 1).SetLast(way_[level - 1].at, key, record);
    PutChild(level - 1, brother.Key(0), brother.Record(0), added);
}

void CdxTree::SplitLeaf() {
    const std::size_t level = way_.size() - 1;
    const CdxPage added = AddRightBrother(level);
    CdxNode& leaf = Changed(level);
    CdxNode& brother = file_.Change(added, shape_);
    leaf.MoveTail(leaf.Count() / 2, brother);
    Changed(level - 1).SetLast(way_[level - 1].at, leaf.Key(leaf.Count() - 1), leaf.Record(leaf.Count() - 1));
    PutChild(level - 1, brother.Key(brother.Count() - 1), brother.Record(brother.Count() - 1), added);
}

void CdxTree::PutChild(std::size_t level, KeyBytes key, std::uint32_t record, CdxPage page) {
    const std::size_t at = way_[level].at + 1;
    way_.resize(level + 1);
    if (Changed(level).Insert(at, key, record, page)) return CorrectLast();
    if (level == 0) GrowRoot(), ++level;
    const bool isLastOfAll = at == Node(level).Count() && Node(level).right == kNoCdxPage;
    const CdxPage added = AddRightBrother(level);
    CdxNode& node = Changed(level);
    CdxNode& brother = file_.Change(added, shape_);
    // Of the entries, the new one included, this node keeps the first half; all old ones when keys only ascend.
    const std::size_t kept = isLastOfAll ? node.Count() : (node.Count() + 1) / 2;
    node.MoveTail(at < kept ? kept - 1 : kept, brother);
    at < kept ? node.Insert(at, key, record, page) : brother.Insert(at - kept, key, record, page);
    Changed(level - 1).SetLast(way_[level - 1].at, node.Key(node.Count() - 1), node.Record(node.Count() - 1));
    PutChild(level - 1, brother.Key(brother.Count() - 1), brother.Record(brother.Count() - 1), added);
}

/// The nodes above the last one of the way learn what its last entry is now.
void CdxTree::CorrectLast() {
    for (std::size_t level = way_.size() - 1; level > 0; --level) {
        const CdxNode& node = Node(level);
        const std::size_t last = node.Count() - 1, at = way_[level - 1].at;
        const CdxNode& parent = Node(level - 1);
        if (CompareEntries(parent.Key(at), parent.Record(at), node.Key(last), node.Record(last)) == 0) return;
        Changed(level - 1).SetLast(at, node.Key(last), node.Record(last));
        if (at + 1 < parent.Count()) return;
    }
}

bool CdxTree::Remove(KeyBytes key, std::uint32_t record) {
    while (Descend(key, record)) {
        const std::size_t level = way_.size() - 1;
        CdxNode without = Node(level);
        without.Remove(way_[level].at);
        if (without.IsOverfull()) {
            const WayEnds wayEnds(way_);
            LoadWhatSplitsNeed();
            if (level == 0) GrowRoot();
            SplitLeaf();
            continue;
        }
        if (without.Count() > 0) {
            Changed(level) = std::move(without);
            return CorrectLast(), true;
        }
        const WayEnds wayEnds(way_);
        LoadBrothers();
        Changed(level) = std::move(without);
        return DropEmpty(level), true;
    }
    return false;
}

/// So that taking nodes out of their rows cannot fail half way.
void CdxTree::LoadBrothers() {
    for (std::size_t level = 0; level < way_.size(); ++level) {
        const CdxNode& node = Node(level);
        for (const CdxPage brother : {node.left, node.right}) {
            if (brother != kNoCdxPage) file_.Load(brother, shape_);
        }
    }
}

void CdxTree::DropEmpty(std::size_t level) {
    if (level == 0) return Changed(0).BecomeEmptyLeaf();
    const CdxPage left = Node(level).left, right = Node(level).right;
    if (left != kNoCdxPage) file_.Change(left, shape_).right = right;
    if (right != kNoCdxPage) file_.Change(right, shape_).left = left;
    file_.Release(way_[level].page);
    CdxNode& parent = Changed(level - 1);
    parent.Remove(way_[level - 1].at);
    if (parent.Count() == 0) return DropEmpty(level - 1);
    // CorrectLast works on a way whose last node is not empty.
    way_.resize(level);
    CorrectLast();
}

}  // namespace varnel::foxpro
