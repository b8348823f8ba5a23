// One index as it lies in the file: a tree of pages whose leaves, from left to right, hold an entry for every row.
//
// The root keeps its page number. A leaf that is full of ascending entries stays full: to fill an index with sorted
// entries is how it is built.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/access/IndexImage.h"
#include "providers/access/PageAllocator.h"
#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

class IndexTree {
public:
    /// owner: the first page of the table's definition. Calls that change need the file's write hold and an open step.
    /// Every call throws Error{Corrupt} when pages contradict each other.
    IndexTree(PageFile& file, PageAllocator& allocator, PageNumber owner, const RealIndex& index);

    /// The row of the first entry with this key (as IndexKey builds it, without row id).
    std::optional<RowPointer> Find(std::string_view key);
    /// True when exactly this entry is there.
    bool Has(std::string_view entry);
    /// entry: key and row id. Throws Error{Corrupt} when it is there already.
    void Insert(std::string_view entry);
    /// Returns false when it is not there.
    bool Remove(std::string_view entry);
    /// To be called after a step that changed the tree was undone.
    void Forget() { last_.page = 0; }

private:
    /// The last leaf as the last Insert left it, so that ascending entries need no search.
    struct LastLeaf {
        PageNumber page = 0;
        std::uint64_t generation = 0;
        std::size_t start = 0, end = 0;  ///< of the highest entry
        std::string entry;
    };

    IndexPlace Place(PageNumber page) const { return {&file_.StoredPath(), owner_, page}; }
    IndexPage Open(std::span<const std::uint8_t> bytes, PageNumber page) const { return {bytes, shape_, Place(page)}; }
    IndexPage Open(const PagePin& pin, PageNumber page) const {
        return Open(std::span(pin.get(), shape_.pageSize), page);
    }
    IndexImage Load(PageNumber page);
    void Store(PageNumber page, const IndexImage& image);
    [[noreturn]] void ThrowDamaged(PageNumber page, const std::string& what) const;

    /// Fills path_ and returns the leaf where wanted belongs.
    PageNumber Descend(std::string_view wanted);
    bool IsBehindAll(std::string_view key);
    bool IsLast(const IndexPage& page, std::span<const std::uint8_t> bytes) const;
    bool InsertAsLast(std::string_view entry);
    bool InsertInPlace(PageNumber leaf, std::string_view entry);

    // depth: a position in path_. appended: the image's highest entry is new, and the page the last of its level.
    void InsertAnew(std::string_view entry);
    void StoreOrSplit(std::size_t depth, IndexImage image, bool appended);
    void Split(std::size_t depth, IndexImage left, bool appended);
    void PushRootDown(unsigned level);
    void LinkBehind(PageNumber left, IndexImage& leftImage, PageNumber right, IndexImage& rightImage);
    void InsertChild(std::size_t depth, PageNumber left, std::string_view separator, PageNumber right);
    std::size_t PositionOf(const IndexImage& node, std::size_t depth) const;

    void ReplaceKey(std::size_t depth, std::string_view highest);
    void TakeOut(std::size_t depth);
    void TakeOutTail(std::size_t depth, IndexImage node);
    void PullUpRoot();
    void SetLink(PageNumber page, std::size_t at, PageNumber target);

    PageFile& file_;
    PageAllocator& allocator_;
    PageNumber owner_;
    PageNumber root_;
    RowPointer map_;
    IndexShape shape_;
    LastLeaf last_;
    std::vector<PageNumber> path_;  ///< from the root to the leaf of the last Descend
};

}  // namespace varnel::access
