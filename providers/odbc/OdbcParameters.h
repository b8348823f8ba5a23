// The parameters of a prepared statement, bound once, for one row or a block of them; only the buffers' contents
// change. Texts and bytes without a sensible upper bound are sent in pieces when the statement runs.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/odbc/OdbcLink.h"

namespace varnel::odbc {

class OdbcParameters {
public:
    /// rows: how many can be put in before they are sent; one when a parameter is long.
    OdbcParameters(std::span<const ParameterInfo> parameters, const OdbcLink& link, std::size_t rows);

    std::size_t Count() const { return cells_.size(); }
    std::size_t Rows() const { return rows_; }
    bool HasLong() const { return hasLong_; }
    /// Puts a row's values in place. Long contents are not copied and must stay until the statement ran. Throws
    /// Error{Conversion} for what a parameter cannot hold; nothing of the row counts then.
    void Take(std::size_t row, std::span<const Value* const> values);
    /// Copies the values of rows from row on to the places of the first ones, to be sent by themselves. The places must
    /// not overlap.
    void CopyToFront(std::size_t row, std::size_t count);
    /// Binds all of them to a statement. Throws the driver's failure.
    void Bind(OdbcLink& link, const StatementHandle& statement);
    /// Grows when a value made a parameter wider: statements bound before must be bound anew.
    std::uint64_t Shape() const { return shape_; }
    /// The content of a long parameter of the row at hand, by the token that the driver hands back.
    std::span<const std::uint8_t> Content(SQLPOINTER token) const;

private:
    struct Cell {
        ParameterInfo info;
        SQLSMALLINT transferType = SQL_C_CHAR, sqlType = SQL_VARCHAR;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        std::size_t bytes = 0;  ///< room for one row; 0 for long contents
        std::vector<std::uint8_t> room;
        std::vector<SQLLEN> lengths;
        Value converted;                        ///< the value at hand in the parameter's own kind
        std::span<const std::uint8_t> content;  ///< of a long value
    };

    void Describe(Cell& cell, const OdbcLink& link);
    void TakeValue(Cell& cell, std::size_t row, const Value& value);
    void TakeContent(Cell& cell, std::size_t row, std::span<const std::uint8_t> content);
    void TakeText(Cell& cell, std::size_t row, std::string_view text);

    std::vector<Cell> cells_;
    std::size_t rows_;
    bool hasLong_ = false;
    std::uint64_t shape_ = 1;
    std::string text_;
};

}  // namespace varnel::odbc
