#include "providers/access/VerifyIndexTree.h"

#include <optional>
#include <span>
#include <vector>

#include "platform/Error.h"
#include "providers/access/IndexImage.h"
#include "providers/access/IndexPage.h"

namespace varnel::access {
namespace {

class TreeCheck {
public:
    using Report = std::function<void(PageNumber, const std::string&)>;
    using OnEntry = std::function<void(std::string_view)>;

    TreeCheck(PageFile& file, PageNumber owner, const Report& report, const OnEntry& onEntry)
        : file_(file), owner_(owner), shape_(IndexShapeOf(file.Shape())), report_(report), onEntry_(onEntry) {}

    IndexTreeFindings Run(PageNumber root) {
        Visit(root, std::nullopt);
        for (const std::vector<Seen>& level : levels_) CheckLinks(level);
        return std::move(findings_);
    }

private:
    struct Seen {
        PageNumber page, previous, next;
    };

    void Visit(PageNumber at, std::optional<unsigned> level) {
        if (findings_.pages.Has(at)) return report_(at, "the index reaches it twice");
        try {
            const PagePin pin = file_.Read(at);
            findings_.pages.Add(at);  // now that it is known to exist
            const std::span<const std::uint8_t> bytes(pin.get(), shape_.pageSize);
            const IndexPage page(bytes, shape_, {&file_.StoredPath(), owner_, at});
            if (level && page.Level() != *level) return report_(at, "its level is not one below the node above it");
            CheckMask(at, bytes, page.Used());
            const IndexImage image(page);
            if (levels_.size() <= image.level) levels_.resize(image.level + std::size_t{1});
            levels_[image.level].push_back({at, image.previous, image.next});
            if (image.leaf) {
                if (page.Tail() != 0) report_(at, "it is a leaf with a tail");
                VisitEntries(at, image);
            } else {
                VisitChildren(at, image);
            }
        } catch (const Error& error) {
            if (error.kind != ErrorKind::Corrupt) throw;
            report_(at, error.what());
        }
    }

    void CheckMask(PageNumber at, std::span<const std::uint8_t> bytes, std::size_t used) {
        const std::size_t bits = (shape_.entriesAt - shape_.maskAt) * 8;
        for (std::size_t bit = used + 1; bit < bits; ++bit) {
            if ((bytes[shape_.maskAt + bit / 8] >> (bit % 8) & 1) != 0) {
                return report_(at, "its entry mask names an entry behind the last one");
            }
        }
        if (used > 0 && (bytes[shape_.maskAt] & 1) != 0) report_(at, "its entry mask names an empty entry");
    }

    void VisitEntries(PageNumber at, const IndexImage& leaf) {
        for (const std::string& entry : leaf.entries) {
            if (findings_.entries > 0 && entry <= highest_) report_(at, "its entries are out of order");
            highest_ = entry;
            ++findings_.entries;
            onEntry_(entry);
        }
    }

    void VisitChildren(PageNumber at, const IndexImage& node) {
        std::string bound = highest_;
        for (std::size_t k = 0; k <= node.entries.size(); ++k) {
            Visit(node.Child(k), node.level - 1U);
            if (k == node.entries.size()) break;
            const std::string_view key = WithoutChild(node.entries[k]);
            if (key < highest_) report_(at, "a key is below the highest entry under it");
            if (key > highest_) ++findings_.looseKeys;
            if (k > 0 && key <= bound) report_(at, "its keys are out of order");
            bound = key;
            // What follows must lie above the key, not only above the entries seen.
            if (key > highest_) highest_ = key;
        }
    }

    void CheckLinks(const std::vector<Seen>& level) {
        for (std::size_t k = 0; k < level.size(); ++k) {
            const PageNumber before = k == 0 ? 0 : level[k - 1].page;
            const PageNumber after = k + 1 == level.size() ? 0 : level[k + 1].page;
            if (level[k].previous != before) report_(level[k].page, "its link to the page before is wrong");
            if (level[k].next != after) report_(level[k].page, "its link to the next page is wrong");
        }
    }

    PageFile& file_;
    PageNumber owner_;
    IndexShape shape_;
    const Report& report_;
    const OnEntry& onEntry_;
    IndexTreeFindings findings_;
    std::string highest_;
    std::vector<std::vector<Seen>> levels_;
};

}  // namespace

IndexTreeFindings VerifyIndexTree(PageFile& file, PageNumber owner, PageNumber root,
                                  const std::function<void(PageNumber, const std::string&)>& report,
                                  const std::function<void(std::string_view)>& onEntry) {
    return TreeCheck(file, owner, report, onEntry).Run(root);
}

}  // namespace varnel::access
