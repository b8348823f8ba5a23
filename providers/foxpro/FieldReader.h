// What the bytes of a field mean.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "ado/types/Value.h"
#include "platform/CodePage.h"
#include "providers/foxpro/DbfHeader.h"
#include "providers/foxpro/FieldKind.h"
#include "providers/foxpro/MemoReader.h"

namespace varnel::foxpro {

enum class CellFault : std::uint8_t {
    None,
    Overflow,  ///< a number too wide for its field: stars
    NotANumber,
    NotADate,
    NotALogical,
    Damaged,  ///< a stored length that cannot be
    NotText,  ///< bytes without meaning in the code page
    NoMemoFile,
    BadMemo,  ///< a reference that leads to no memo
    Unsupported
};

/// "Overflow", "Not a number" ...: how the text of such a failure begins.
std::string_view FaultWords(CellFault fault);

/// Reads fields of one table's records. Used by one thread.
class FieldReader {
public:
    /// header, memo: outlive the reader; memo may be null (every memo with a reference is then a fault).
    FieldReader(const DbfHeader& header, const MemoReader* memo);

    /// record: recordBytes long. Sets value to what the field holds, as the provider gave it: texts with their
    /// trailing blanks, blank numbers 0, empty dates Null. Returns the reason when it cannot be read; value is then
    /// Null.
    CellFault Read(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const;
    /// The block in the memo file that a memo field names; 0 for none, and for a reference that cannot be read.
    std::uint64_t MemoBlock(const DbfField& field, std::span<const std::uint8_t> record) const;

private:
    CellFault ReadStored(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const;
    bool BitIsSet(int bit, std::span<const std::uint8_t> record) const;
    CellFault ReadText(std::string_view bytes, bool binary, Value& value) const;
    CellFault ReadVarying(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const;
    CellFault ReadMemo(const DbfField& field, std::string_view bytes, Value& value) const;

    const DbfHeader& header_;
    const MemoReader* memo_;
    CodePage codePage_;
};

}  // namespace varnel::foxpro
