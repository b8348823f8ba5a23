#include <string>
#include <vector>

#include "providers/foxpro/CdxTree.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kMostLevels = 64;

class TreeCheck {
public:
    TreeCheck(const CdxFile& file, KeyShape shape) : file_(file), shape_(shape) {}

    /// above: the node that has this one as child at; null for the root.
    std::string Node(CdxPage page, std::size_t level, const CdxNode* above, std::size_t at) {
        if (++seen_ > file_.Pages() || level > kMostLevels) return "its tree runs in a circle";
        const CdxNode node = file_.Read(page, shape_);
        const std::string place = "page " + std::to_string(page);
        if (node.isRoot != (above == nullptr)) return place + " does not know whether it is the root";
        if (above != nullptr && !EndsAs(node, *above, at))
            return place + " ends with another key than the one above it";
        if (!FollowsOn(node, page, level)) return place + " does not know its brother";
        if (node.IsLeaf()) return Leaf(node, place, level);
        for (std::size_t k = 0; k < node.Count(); ++k) {
            std::string fault = Node(node.Child(k), level + 1, &node, k);
            if (!fault.empty()) return fault;
        }
        return "";
    }

    /// The last node of every level has no right brother.
    bool Ends() const {
        for (const Brother& last : lasts_) {
            if (last.right != kNoCdxPage) return false;
        }
        return true;
    }

private:
    struct Brother {
        CdxPage page, right;
    };

    static bool EndsAs(const CdxNode& node, const CdxNode& above, std::size_t at) {
        if (node.Count() == 0) return false;
        const std::size_t last = node.Count() - 1;
        return CompareEntries(node.Key(last), node.Record(last), above.Key(at), above.Record(at)) == 0;
    }

    bool FollowsOn(const CdxNode& node, CdxPage page, std::size_t level) {
        if (level >= lasts_.size()) lasts_.resize(level + 1, {kNoCdxPage, page});
        const Brother before = lasts_[level];
        lasts_[level] = {page, node.right};
        return before.right == page && node.left == before.page;
    }

    std::string Leaf(const CdxNode& node, const std::string& place, std::size_t level) {
        if (level + 1 != lasts_.size()) return place + " is a leaf at another depth than the first one";
        if (node.StatedFreeBytes() > node.FreeBytes()) return place + " tells of more free bytes than it has";
        return "";
    }

    const CdxFile& file_;
    KeyShape shape_;
    std::vector<Brother> lasts_;  // of each level, the node seen last
    std::uint32_t seen_ = 0;
};

}  // namespace

std::string FaultInTree(const CdxFile& file, CdxPage root, KeyShape shape) {
    TreeCheck check(file, shape);
    std::string fault = check.Node(root, 0, nullptr, 0);
    if (fault.empty() && !check.Ends()) fault = "a node has a brother that is not of its tree";
    return fault;
}

}  // namespace varnel::foxpro
