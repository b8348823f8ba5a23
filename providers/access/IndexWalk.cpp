#include "providers/access/IndexWalk.h"

namespace varnel::access {

IndexWalk::IndexWalk(PageFile& file, PageNumber owner, PageNumber root)
    : file_(file), owner_(owner), shape_(IndexShapeOf(file.Shape())) {
    GoTo(root);
    for (IndexPage page = Open(); !page.IsLeaf(); page = Open()) GoTo(page.ChildAt(0));
}

IndexPage IndexWalk::Open() const {
    return {std::span<const std::uint8_t>(pin_.get(), shape_.pageSize), shape_, {&file_.StoredPath(), owner_, at_}};
}

void IndexWalk::GoTo(PageNumber page) {
    pin_ = file_.Read(page);
    at_ = page;
    start_ = 0;
    if (seen_.Has(page)) Open().ThrowDamaged("its pages form a ring");
    seen_.Add(page);
}

bool IndexWalk::Next(std::string& entry) {
    for (;;) {
        const IndexPage page = Open();
        if (!page.IsLeaf()) page.ThrowDamaged("a node stands among the leaves");
        if (start_ < page.Used()) {
            page.Get(entry, start_);
            start_ = page.EndOf(start_);
            return true;
        }
        if (page.Next() == 0) return false;
        GoTo(page.Next());
    }
}

}  // namespace varnel::access
