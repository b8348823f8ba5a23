#include "providers/access/RowView.h"

namespace varnel::access {

std::optional<Bytes> RowView::Jet3Variable(std::size_t number) {
    if (!listRead_ && !ReadJet3List()) return std::nullopt;
    if (number >= cells_) return std::nullopt;
    const std::size_t begin = starts_[number], end = starts_[number + 1];
    if (begin < 1 || begin > end || end > maskAt_) return std::nullopt;
    return row_.subspan(begin, end - begin);
}

bool RowView::ReadJet3List() {
    const std::size_t size = row_.size();
    if (maskAt_ < 1 + 2) return false;
    const std::size_t cells = row_[maskAt_ - 1];
    const std::size_t jumps = (size - 1) / 256;
    if (maskAt_ < 1 + 1 + jumps + cells + 1) return false;
    const std::size_t listEnd = maskAt_ - 1 - jumps - 1;  // where the first cell's offset stands
    const std::size_t usedJumps = (listEnd - cells) / 256 < jumps ? jumps - 1 : jumps;
    std::size_t jump = 0;
    for (std::size_t k = 0; k <= cells; ++k) {
        while (jump < usedJumps && row_[maskAt_ - 1 - jump - 1] == k) ++jump;
        starts_[k] = static_cast<std::uint16_t>(row_[listEnd - k] + 256 * jump);
    }
    cells_ = cells;
    return listRead_ = true;
}

}  // namespace varnel::access
