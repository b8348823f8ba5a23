#include "providers/access/PageLedger.h"

namespace varnel::access {

PageLedger::Use PageLedger::NewUse(std::string text) {
    texts_.push_back(std::move(text));
    return static_cast<Use>(texts_.size() - 1);
}

std::string PageLedger::Claim(PageNumber page, Use use, PageNumber pageCount) {
    const std::string place = "Page " + std::to_string(page);
    if (page >= pageCount) return place + ", named by " + texts_[use] + ", lies behind the end of the file.";
    const auto [at, isNew] = uses_.try_emplace(page, use);
    if (isNew) return "";
    return place + " is used twice: by " + texts_[at->second] + " and by " + texts_[use] + ".";
}

std::string PageLedger::ClaimMap(RowPointer map, Use use, PageNumber pageCount) {
    if (!mapPages_.Has(map.page)) {
        std::string fault = Claim(map.page, use, pageCount);
        if (!fault.empty()) return fault;
        mapPages_.Add(map.page);
    }
    const auto [at, isNew] = maps_.try_emplace(PackRowPointer(map), use);
    if (isNew) return "";
    return "Page " + std::to_string(map.page) + ", row " + std::to_string(map.row) +
           ": this map of pages is used twice: by " + texts_[at->second] + " and by " + texts_[use] + ".";
}

}  // namespace varnel::access
