// Builds the bytes of one row (Jet 4).
//
//   u16 n             highest column id + 1
//   fixed area        every fixed column at its offset, zeros where it is Null
//   variable data     the values one after the other, by variable number
//   u16 eod           the end of the variable data; this and the next two only in a table that has had such a column
//   u16 off(k-1)..0   the start of each variable value, the last one first
//   u16 k             variable columns
//   mask              bit id = the column has a value; a Boolean's bit is its value
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ado/types/Value.h"
#include "providers/access/TableDefinition.h"
#include "providers/access/ValueEncoder.h"

namespace varnel::access {

/// What Access takes; a longer row would fit the page, but Access reports a conflict with another user for it.
inline constexpr std::size_t kLongestRow = 4060;

class RowBuilder {
public:
    /// definition: outlives the builder. Throws Error{Corrupt} when its columns cannot lie in one row.
    explicit RowBuilder(const TableDefinition& definition);

    /// Positions in definition.columns in the order in which Put and PutStored take them: variable columns by number,
    /// after the fixed ones.
    const std::vector<std::size_t>& Order() const { return order_; }

    /// Every column is Null until it is put.
    void Start();
    /// Not for memo and OLE columns. Null leaves the column Null. Throws Error as ValueEncoder::Encode, and
    /// Error{Constraint} when the row becomes too long.
    void Put(const Column& column, const Value& value);
    /// The bytes of the value as a row of the table has them; for a Boolean none, and present is the value.
    void PutStored(const Column& column, std::span<const std::uint8_t> bytes, bool present);
    /// The row; valid until Start.
    std::span<const std::uint8_t> Finish();

private:
    /// Where the value of the column begins; for a variable one the end of the data so far.
    std::size_t Place(const Column& column);
    void Advance(const Column& column, std::size_t bytes);
    void SetBit(std::uint16_t id) { mask_[id / 8] |= static_cast<std::uint8_t>(1U << (id % 8)); }
    [[noreturn]] void ThrowTooLong() const;

    const TableDefinition& definition_;
    std::vector<std::size_t> order_;
    std::size_t variableStart_ = 2, tail_ = 0;
    ValueEncoder encoder_;
    std::size_t end_ = 0;  ///< of the variable data so far
    std::size_t nextVariable_ = 0;
    std::array<std::uint8_t, kLongestRow + kLongestStoredValue> row_{};
    std::array<std::uint16_t, 256> offsets_{};
    std::array<std::uint8_t, 32> mask_{};
};

}  // namespace varnel::access
