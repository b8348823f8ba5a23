#include "providers/access/DataPage.h"

namespace varnel::access {

Fault DataPage::Attach(Bytes page, const Layout& shape) {
    page_ = {};
    count_ = 0;
    if (page.size() != shape.pageSize) return "its page is cut short";
    if (page[0] != 1 || page[1] != 1) return "its page is no data page";
    slotsAt_ = shape.slotsAt;
    const std::size_t count = LoadU16(page, shape.slotCountAt);
    if (count > (page.size() - slotsAt_) / 2) return "the row slots of its page pass the page's end";
    page_ = page;
    const std::size_t slotsEnd = slotsAt_ + 2 * count;
    std::size_t before = page.size();
    for (std::size_t number = 0; number < count; ++number) {
        const std::size_t begin = Stored(number) & kOffsetBits;
        if (begin > before || begin < slotsEnd) return "the row slots of its page are damaged";
        before = begin;
    }
    count_ = count;
    return nullptr;
}

}  // namespace varnel::access
