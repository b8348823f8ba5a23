// The pages of one index held against each other: order, masks, links, levels and the keys of the nodes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "providers/access/PageFile.h"

namespace varnel::access {

struct IndexTreeFindings {
    PageSet pages;  ///< of the tree
    std::size_t entries = 0;
    /// Keys of nodes above the highest entry of their child: allowed, and no finding.
    std::size_t looseKeys = 0;
};

/// owner: the first page of the table's definition. report: called with a page and what is wrong with it, in words.
/// onEntry: called with every entry that can be read, in order. Throws nothing but what reading pages throws as
/// Error{Io}.
IndexTreeFindings VerifyIndexTree(PageFile& file, PageNumber owner, PageNumber root,
                                  const std::function<void(PageNumber, const std::string&)>& report,
                                  const std::function<void(std::string_view)>& onEntry);

}  // namespace varnel::access
