// Every entry of an index, in order.
#pragma once

#include <string>

#include "providers/access/IndexPage.h"
#include "providers/access/PageFile.h"

namespace varnel::access {

class IndexWalk {
public:
    /// owner: the first page of the table's definition. root: the index's root page. All calls throw Error{Corrupt}
    /// when pages contradict each other.
    IndexWalk(PageFile& file, PageNumber owner, PageNumber root);

    /// Replaces entry by the next one; false after the last.
    bool Next(std::string& entry);
    /// The leaf that the last entry came from.
    PageNumber Leaf() const { return at_; }

private:
    IndexPage Open() const;
    void GoTo(PageNumber page);

    PageFile& file_;
    PageNumber owner_;
    IndexShape shape_;
    PageSet seen_;
    PagePin pin_;
    PageNumber at_ = 0;
    std::size_t start_ = 0;
};

}  // namespace varnel::access
