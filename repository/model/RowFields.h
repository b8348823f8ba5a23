// The fields of a repository row in the types of the session model. Every failure names session, table and column.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/Recordset.h"

namespace varnel {

/// The current row of a record set on one repository table. All calls throw Error: a missing column, a Null where a
/// value is required ("Invalid use of Null"), a value that does not convert or is out of range ("Overflow").
class RowFields {
public:
    /// rows: stands on the row to be read. table: its name. sessionId: for the error texts.
    RowFields(Recordset& rows, std::string table, std::int16_t sessionId)
        : rows_(rows), table_(std::move(table)), sessionId_(sessionId) {}

    std::string RequiredText(std::string_view column) const;
    /// A Null reads as otherwise.
    std::string TextOr(std::string_view column, std::string_view otherwise) const;
    /// Rounded to the nearest whole number, ties to even.
    std::int16_t Int16(std::string_view column) const;
    std::int32_t Int32(std::string_view column) const;
    double Number(std::string_view column) const;
    /// Any non-zero value is true.
    bool Boolean(std::string_view column) const;
    /// True only for the value 1; Null is false.
    bool IsOne(std::string_view column) const;

private:
    template <class Convert>
    auto Read(std::string_view column, Convert&& convert) const;

    Recordset& rows_;
    std::string table_;
    std::int16_t sessionId_;
};

}  // namespace varnel
