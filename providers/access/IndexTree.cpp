#include "providers/access/IndexTree.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"
#include "providers/access/IndexPageEdit.h"

namespace varnel::access {

IndexTree::IndexTree(PageFile& file, PageAllocator& allocator, PageNumber owner, const RealIndex& index)
    : file_(file),
      allocator_(allocator),
      owner_(owner),
      root_(index.root),
      map_(index.map),
      shape_(IndexShapeOf(file.Shape())) {}

void IndexTree::ThrowDamaged(PageNumber page, const std::string& what) const {
    throw Error(ErrorKind::Corrupt, file_.StoredPath(),
                "Index page " + std::to_string(page) + " of '" + file_.StoredPath() + "' is damaged: " + what + ".");
}

IndexImage IndexTree::Load(PageNumber page) {
    const PagePin pin = file_.Read(page);
    return IndexImage(Open(pin, page));
}

void IndexTree::Store(PageNumber page, const IndexImage& image) {
    // Keys of 510 bytes always fit when a page is split; a foreign program may have left longer ones.
    if (!image.Fits(shape_)) ThrowDamaged(page, "its entries are too long");
    image.Write(file_.Change(page), shape_, owner_);
}

PageNumber IndexTree::Descend(std::string_view wanted) {
    path_.assign(1, root_);
    unsigned above = 0x100;
    for (;;) {
        const PageNumber at = path_.back();
        const PagePin pin = file_.Read(at);
        const IndexPage page = Open(pin, at);
        if (page.Level() >= above) ThrowDamaged(at, "its level is not below that of the page above it");
        if (page.IsLeaf()) return at;
        above = page.Level();
        path_.push_back(page.ChildAt(page.LowerBound(wanted)));
    }
}

std::optional<RowPointer> IndexTree::Find(std::string_view key) {
    if (IsBehindAll(key)) return std::nullopt;
    PageNumber at = Descend(key);
    std::string entry;
    for (PageNumber steps = file_.PageCount(); at != 0; --steps) {
        const PagePin pin = file_.Read(at);
        const IndexPage page = Open(pin, at);
        const std::size_t start = page.LowerBound(key);
        if (start < page.Used()) {
            page.Get(entry, start);
            return KeyOf(entry) == key ? std::optional(RowIdOf(entry)) : std::nullopt;
        }
        if (steps == 0) ThrowDamaged(at, "the leaves form a ring");
        at = page.Next();
    }
    return std::nullopt;
}

bool IndexTree::Has(std::string_view entry) {
    const PageNumber leaf = Descend(entry);
    const PagePin pin = file_.Read(leaf);
    const IndexPage page = Open(pin, leaf);
    const std::size_t start = page.LowerBound(entry);
    if (start == page.Used()) return false;
    std::string found;
    page.Get(found, start);
    return found == entry;
}

void IndexTree::Insert(std::string_view entry) {
    if (InsertAsLast(entry)) return;
    const PageNumber leaf = Descend(entry);
    if (!InsertInPlace(leaf, entry)) InsertAnew(entry);
}

/// True when the leaf that InsertAsLast knows is still as it was left.
bool IndexTree::IsLast(const IndexPage& page, std::span<const std::uint8_t> bytes) const {
    if (!page.IsLeaf() || page.Next() != 0 || page.Used() != last_.end) return false;
    const auto own = bytes.subspan(shape_.entriesAt + last_.start, last_.end - last_.start);
    return std::equal(own.rbegin(), own.rend(), last_.entry.rbegin(),
                      [](std::uint8_t stored, char kept) { return stored == static_cast<std::uint8_t>(kept); });
}

bool IndexTree::IsBehindAll(std::string_view key) {
    if (last_.page == 0 || last_.generation != file_.Generation()) return false;
    const std::string_view highest = KeyOf(last_.entry);
    const std::size_t common = std::min(key.size(), highest.size());
    if (key.substr(0, common) <= highest.substr(0, common)) return false;
    const PagePin pin = file_.Read(last_.page);
    return IsLast(Open(pin, last_.page), {pin.get(), shape_.pageSize});
}

bool IndexTree::InsertAsLast(std::string_view entry) {
    if (last_.page == 0 || last_.generation != file_.Generation() || entry <= last_.entry) return false;
    const std::span<std::uint8_t> bytes = file_.Change(last_.page);
    const IndexPage page = Open(bytes, last_.page);
    const bool added = IsLast(page, bytes) && IndexPageEdit(bytes, shape_, page).Insert(page.Used(), entry);
    if (!added) {
        Forget();
        return false;
    }
    last_.start = last_.end;
    last_.end += entry.size() - page.PrefixLength();
    last_.entry.assign(entry);
    return true;
}

bool IndexTree::InsertInPlace(PageNumber leaf, std::string_view entry) {
    if (last_.page == leaf) Forget();
    const std::span<std::uint8_t> bytes = file_.Change(leaf);
    const IndexPage page = Open(bytes, leaf);
    const std::size_t start = page.LowerBound(entry), used = page.Used();
    if (start < used) {
        std::string next;
        page.Get(next, start);
        if (next == entry) ThrowDamaged(leaf, "it already has the entry of a new row");
    }
    if (!IndexPageEdit(bytes, shape_, page).Insert(start, entry)) return false;
    if (start == used && page.Next() == 0) {
        const std::size_t added = entry.size() - page.PrefixLength();
        last_ = LastLeaf{leaf, file_.Generation(), used, used + added, std::string(entry)};
    }
    return true;
}

bool IndexTree::Remove(std::string_view entry) {
    const PageNumber leaf = Descend(entry);
    std::string found;
    {
        const PagePin pin = file_.Read(leaf);
        const IndexPage page = Open(pin, leaf);
        const std::size_t start = page.LowerBound(entry);
        if (start == page.Used()) return false;
        page.Get(found, start);
        if (found != entry) return false;
    }
    if (last_.page == leaf) Forget();
    const std::span<std::uint8_t> bytes = file_.Change(leaf);
    const IndexPage page = Open(bytes, leaf);
    const std::size_t start = page.LowerBound(entry);
    const bool wasHighest = page.EndOf(start) == page.Used();
    IndexPageEdit(bytes, shape_, page).Remove(start);
    if (path_.size() == 1) return true;
    const IndexPage after = Open(bytes, leaf);
    if (after.Empty()) {
        TakeOut(path_.size() - 1);
    } else if (wasHighest) {
        after.Get(found, after.StartOf(after.Used()));
        ReplaceKey(path_.size() - 1, found);
    }
    return true;
}

}  // namespace varnel::access
