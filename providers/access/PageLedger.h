// Which page of the file is used for what.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "providers/access/PageSet.h"

namespace varnel::access {

class PageLedger {
public:
    /// A purpose: "the data of table 'A'".
    using Use = std::uint32_t;

    Use NewUse(std::string text);
    /// Returns what is wrong with it, "" when nothing is: the page is beyond the end, or used for something else.
    std::string Claim(PageNumber page, Use use, PageNumber pageCount);
    /// Rows of a page of usage maps; the page itself may be claimed by many. Returns as Claim.
    std::string ClaimMap(RowPointer map, Use use, PageNumber pageCount);

    bool IsClaimed(PageNumber page) const { return uses_.contains(page); }
    const std::string& UseOf(PageNumber page) const { return texts_[uses_.at(page)]; }
    const PageSet& MapPages() const { return mapPages_; }
    bool IsClaimed(RowPointer map) const { return maps_.contains(PackRowPointer(map)); }

private:
    std::vector<std::string> texts_;
    std::map<PageNumber, Use> uses_;
    std::map<std::uint32_t, Use> maps_;
    PageSet mapPages_;
};

}  // namespace varnel::access
