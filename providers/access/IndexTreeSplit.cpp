// What an insert does when the entry does not go onto its leaf as it lies.
#include <algorithm>

#include "providers/access/IndexTree.h"

namespace varnel::access {

void IndexTree::InsertAnew(std::string_view entry) {
    Forget();
    IndexImage leaf = Load(path_.back());
    const auto at = std::lower_bound(leaf.entries.begin(), leaf.entries.end(), entry);
    const bool appended = at == leaf.entries.end() && leaf.next == 0;
    leaf.entries.emplace(at, entry);
    StoreOrSplit(path_.size() - 1, std::move(leaf), appended);
}

void IndexTree::StoreOrSplit(std::size_t depth, IndexImage image, bool appended) {
    if (image.Fits(shape_)) {
        Store(path_[depth], image);
    } else {
        Split(depth, std::move(image), appended);
    }
}

/// The left part keeps the page. Ascending entries leave it full: only the new one goes to the right.
void IndexTree::Split(std::size_t depth, IndexImage left, bool appended) {
    if (depth == 0) {
        PushRootDown(left.level);
        depth = 1;
    }
    IndexImage right;
    right.leaf = left.leaf;
    right.level = left.level;
    std::size_t cut = left.Middle();
    if (appended) cut = left.entries.size() - 1;
    std::string separator;
    if (left.leaf) {
        separator = left.entries[cut - 1];
        right.entries.assign(left.entries.begin() + static_cast<std::ptrdiff_t>(cut), left.entries.end());
    } else {  // the entry before the cut goes up, its child becomes the left node's tail
        cut = std::max<std::size_t>(cut, 2);
        right.entries.assign(left.entries.begin() + static_cast<std::ptrdiff_t>(cut), left.entries.end());
        right.tail = left.tail;
        --cut;
        left.tail = left.Child(cut);
        separator = WithoutChild(left.entries[cut]);
    }
    left.entries.resize(cut);
    const PageNumber rightPage = allocator_.Take(map_);
    LinkBehind(path_[depth], left, rightPage, right);
    Store(path_[depth], left);
    Store(rightPage, right);
    InsertChild(depth - 1, path_[depth], separator, rightPage);
}

/// What the root holds goes to a new page, which the caller writes; the root becomes the node above it.
void IndexTree::PushRootDown(unsigned level) {
    const PageNumber moved = allocator_.Take(map_);
    IndexImage root;
    root.leaf = false;
    root.level = static_cast<std::uint8_t>(level + 1);
    root.tail = moved;
    Store(root_, root);
    path_.insert(path_.begin() + 1, moved);
}

void IndexTree::LinkBehind(PageNumber left, IndexImage& leftImage, PageNumber right, IndexImage& rightImage) {
    rightImage.previous = left;
    rightImage.next = leftImage.next;
    if (leftImage.next != 0) SetLink(leftImage.next, shape_.previousAt, right);
    leftImage.next = right;
}

/// The node at depth pointed at left, which was split: what pointed at it points at right.
void IndexTree::InsertChild(std::size_t depth, PageNumber left, std::string_view separator, PageNumber right) {
    IndexImage node = Load(path_[depth]);
    const std::size_t k = PositionOf(node, depth);
    const bool appended = k == node.entries.size() && node.next == 0;
    node.SetChild(k, right);
    node.entries.insert(node.entries.begin() + static_cast<std::ptrdiff_t>(k), NodeEntry(separator, left));
    StoreOrSplit(depth, std::move(node), appended);
}

/// Where the node at depth points at the page below it in path_.
std::size_t IndexTree::PositionOf(const IndexImage& node, std::size_t depth) const {
    const std::size_t k = node.FindChild(path_[depth + 1]);
    if (k > node.entries.size()) ThrowDamaged(path_[depth], "it lost a page below it");
    return k;
}

void IndexTree::SetLink(PageNumber page, std::size_t at, PageNumber target) {
    const std::span<std::uint8_t> bytes = file_.Change(page);
    Open(bytes, page);  // only a page of this index is written to
    for (std::size_t k = 0; k < 4; ++k) bytes[at + k] = static_cast<std::uint8_t>(target >> (8 * k));
}

}  // namespace varnel::access
