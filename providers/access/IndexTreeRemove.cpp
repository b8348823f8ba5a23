// What a removal does when a leaf lost its highest entry or its only one.
#include "providers/access/IndexTree.h"

namespace varnel::access {

/// The highest entry below the page at depth is another one now: the lowest node that names the old one gets it.
void IndexTree::ReplaceKey(std::size_t depth, std::string_view highest) {
    while (depth-- > 0) {
        IndexImage node = Load(path_[depth]);
        const std::size_t k = PositionOf(node, depth);
        if (k == node.entries.size()) continue;  // a tail has no key
        if (WithoutChild(node.entries[k]) == highest) return;
        node.entries[k] = NodeEntry(highest, node.Child(k));
        return StoreOrSplit(depth, std::move(node), false);
    }
}

/// The page at depth, never the root, holds nothing any more.
void IndexTree::TakeOut(std::size_t depth) {
    Forget();
    const IndexImage page = Load(path_[depth]);
    if (page.previous != 0) SetLink(page.previous, shape_.nextAt, page.next);
    if (page.next != 0) SetLink(page.next, shape_.previousAt, page.previous);
    IndexImage node = Load(path_[depth - 1]);
    const std::size_t k = PositionOf(node, depth - 1);
    allocator_.Give(map_, path_[depth]);
    if (k == node.entries.size()) return TakeOutTail(depth - 1, std::move(node));
    node.entries.erase(node.entries.begin() + static_cast<std::ptrdiff_t>(k));
    Store(path_[depth - 1], node);
    if (depth == 1) PullUpRoot();
}

/// The node at depth lost its tail: the last entry's child takes its place.
void IndexTree::TakeOutTail(std::size_t depth, IndexImage node) {
    if (node.entries.empty()) {
        if (depth > 0) return TakeOut(depth);
        return Store(root_, IndexImage());
    }
    const std::string highest(WithoutChild(node.entries.back()));
    node.tail = node.Child(node.entries.size() - 1);
    node.entries.pop_back();
    Store(path_[depth], node);
    if (depth == 0) return PullUpRoot();
    ReplaceKey(depth, highest);
}

/// A root with a single child takes that child's place.
void IndexTree::PullUpRoot() {
    IndexImage root = Load(root_);
    while (!root.leaf && root.entries.empty()) {
        const PageNumber child = root.tail;
        IndexImage below = Load(child);
        if (below.level >= root.level) ThrowDamaged(child, "its level is not below that of the page above it");
        below.previous = below.next = 0;
        Store(root_, below);
        allocator_.Give(map_, child);
        root = std::move(below);
    }
}

}  // namespace varnel::access
