// One stored row taken apart into cells. Where a cell begins is found when it is asked for.
//
//   Jet 4, ACE: u16 n; the fixed cells; the variable cells; u16 end of these, u16 where each begins (the last one
//               first), u16 k; the mask
//   Access 97:  u8 n; the fixed cells; the variable cells; the same list in u8, then jump bytes, u8 k; the mask
//
// n is the highest column id + 1 when the row was written, k the number of variable columns. The mask's last bytes, n
// bits, say which columns have a value. The list, jump bytes and k are missing where the table had no variable column.
// A jump byte names the first cell of the list from which on 256 more are to be added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "providers/access/Layout.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {

class RowView {
public:
    explicit RowView(Version version) : isJet3_(version == Version::Jet3) {}

    /// row: must outlive the use of the cells.
    Fault Attach(Bytes row) {
        row_ = row;
        listRead_ = false;
        columns_ = 0;
        const std::size_t countSize = isJet3_ ? 1 : 2;
        if (row.size() < countSize) return kCut;
        const std::size_t columns = isJet3_ ? row[0] : LoadU16(row, 0);
        const std::size_t maskSize = (columns + 7) / 8;
        if (row.size() - countSize < maskSize) return kCut;
        columns_ = columns;
        maskAt_ = row.size() - maskSize;
        return nullptr;
    }

    /// False for a column that is younger than the row. A Boolean's value is this bit.
    bool Has(std::uint16_t id) const { return id < columns_ && ((row_[maskAt_ + id / 8] >> (id % 8)) & 1) != 0; }

    /// The size bytes at offset from the start of the fixed cells; nothing when the row ends before.
    std::optional<Bytes> Fixed(std::size_t offset, std::size_t size) const {
        const std::size_t begin = offset + (isJet3_ ? 1 : 2);
        if (begin > maskAt_ || size > maskAt_ - begin) return std::nullopt;
        return row_.subspan(begin, size);
    }

    /// The variable cell of that number; nothing when the row's list is damaged or has none. Only for a column that
    /// the row has.
    std::optional<Bytes> Variable(std::size_t number) {
        if (isJet3_) return Jet3Variable(number);
        if (!listRead_ && !ReadList()) return std::nullopt;
        if (number >= cells_) return std::nullopt;
        const std::size_t listEnd = maskAt_ - 4;  // where the first cell's offset stands
        const std::size_t begin = LoadU16(row_, listEnd - 2 * number);
        const std::size_t end = LoadU16(row_, listEnd - 2 * number - 2);
        if (begin < 2 || begin > end || end > listEnd - 2 * cells_) return std::nullopt;
        return row_.subspan(begin, end - begin);
    }

    static constexpr Fault kCut = "the row is cut short";

private:
    bool ReadList() {
        if (maskAt_ < 2 + 4) return false;
        const std::size_t cells = LoadU16(row_, maskAt_ - 2);
        if (cells > (maskAt_ - 2 - 4) / 2) return false;
        cells_ = cells;
        return listRead_ = true;
    }
    std::optional<Bytes> Jet3Variable(std::size_t number);
    bool ReadJet3List();

    Bytes row_;
    std::size_t columns_ = 0, maskAt_ = 0;
    std::size_t cells_ = 0;
    bool isJet3_, listRead_ = false;
    std::uint16_t starts_[257] = {};  ///< Access 97: where each variable cell begins, and behind them the end
};

}  // namespace varnel::access
