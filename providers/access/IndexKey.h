// The keys of index entries: bytes whose plain order is the order of the rows.
//
//   key       one part per column of the index: 00 (descending FF) for null, else 7F (80) and the value's bytes
//   entry     key, u24 page, u8 row, both of the row's slot; big-endian
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"
#include "providers/access/CellDecoder.h"
#include "providers/access/Layout.h"
#include "providers/access/RowView.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// Bytes of the longest key; a longer one is cut and ends with a checksum.
inline constexpr std::size_t kLongestKey = 510;
/// Bytes of the row id at the end of an entry.
inline constexpr std::size_t kRowIdLength = 4;

/// Appends one column's part. value: as the column's type is read (a Decimal for NUMERIC, an Integer for every whole
/// number but currency). Throws Error{Misuse} for a value of another kind, Error{NotSupported} for an OLE column.
void AppendKey(std::string& key, const Value& value, const Column& column, bool ascending);
/// The same from the bytes that a row holds (a memo's text without its 12 bytes of header); for values that lose a
/// little on their way through a Value, such as dates. Booleans, which hold no bytes, are not for this one. Throws
/// Error{Corrupt} when there are too few bytes for the type.
void AppendStoredKey(std::string& key, std::span<const std::uint8_t> stored, const Column& column, bool ascending);
void AppendNullKey(std::string& key, bool ascending);
/// Cuts a whole key from offset start on, when it is too long, and puts the checksum in place.
void CutLongKey(std::string& key, std::size_t start);

void AppendRowId(std::string& entry, RowPointer row);
/// The row at the end of an entry of at least kRowIdLength bytes.
RowPointer RowIdOf(std::string_view entry);
inline std::string_view KeyOf(std::string_view entry) {
    return entry.substr(0, entry.size() - kRowIdLength);
}

/// What the key of a row means for the index.
enum class KeyState : std::uint8_t {
    Whole,    ///< in a unique index no other row has this key
    HasNull,  ///< other rows may have the same key, even in a unique index
    NoEntry   ///< the row does not stand in the index
};

/// The first bytes of a memo's text, stored in whatever form, for a position in the table's columns.
using MemoText = std::function<std::span<const std::uint8_t>(std::size_t)>;

/// Builds the keys of one index. The table definition must outlive it.
class IndexKey {
public:
    /// Throws Error{Corrupt} when the index names a column that is not there.
    IndexKey(const TableDefinition& table, const RealIndex& index);

    /// Why its keys cannot be built, in words that name the index and its sort order; empty when they can. Neither rows
    /// nor its columns may then be changed.
    const std::string& Obstacle() const { return obstacle_; }
    /// The index's columns, as positions in the table's columns.
    const std::vector<std::size_t>& Positions() const { return positions_; }
    /// Replaces key by the row's key, without row id. row: one value per column of the table, in the definition's
    /// order. Throws Error{Constraint} for a null that the index forbids, Error{NotSupported} with Obstacle().
    KeyState Build(std::string& key, std::span<const Value> row) const;
    /// The same from a stored row, exactly as it is: a date need not be one that a Value holds. memo: asked for the
    /// memos of the index. Throws also Error{Corrupt} for a row that cannot be read.
    KeyState BuildStored(std::string& key, RowView& row, const MemoText& memo) const;

private:
    void FindObstacle();
    void AppendCell(std::string& key, std::size_t k, RowView& row, const MemoText& memo) const;
    KeyState Finish(std::string& key, std::size_t nulls) const;

    const TableDefinition* table_;
    const RealIndex* index_;
    std::vector<std::size_t> positions_;
    std::vector<CellPlan> plans_;  ///< of the index's columns
    std::string obstacle_;
};

}  // namespace varnel::access
