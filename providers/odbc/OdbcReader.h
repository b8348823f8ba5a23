// The rows of one query, fetched in blocks of bound columns. Cells without a sensible upper bound are fetched in
// pieces, one row at a time. Memory is bounded by the block and the longest cell.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/odbc/OdbcLink.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {

class OdbcReader : public RowReader {
public:
    /// executed: a statement with a result whose rows were not touched yet.
    OdbcReader(std::shared_ptr<OdbcLink> link, StatementHandle executed);
    ~OdbcReader() override;

    const std::vector<ColumnInfo>& Columns() const override { return infos_; }
    bool Next(std::span<Value> row) override;

private:
    /// The cells of one column for all rows of a block.
    struct BoundColumn {
        OdbcColumn column;
        std::vector<std::uint8_t> cells;
        std::vector<SQLLEN> lengths;  ///< bytes, or SQL_NULL_DATA
        bool bound = false;           ///< else fetched by itself, in ascending order
    };

    void Describe();
    void BindBlock();
    bool FetchBlock();
    void Decode(const BoundColumn& column, std::size_t row, Value& value) const;
    void FetchAlone(SQLUSMALLINT number, BoundColumn& column, Value& value);
    void FetchPieces(SQLUSMALLINT number, const OdbcColumn& column, Value& value);
    void Finish();
    [[noreturn]] void Fail();

    std::shared_ptr<OdbcLink> link_;
    StatementHandle statement_;
    std::vector<ColumnInfo> infos_;
    std::vector<BoundColumn> columns_;
    std::size_t rowsPerBlock_ = 1;
    SQLULEN fetched_ = 0;   ///< rows of the block at hand
    std::size_t next_ = 0;  ///< the next one of them
    bool open_ = true;
};

/// The C type as which cells of this form are fetched.
SQLSMALLINT TransferType(CellForm form);

}  // namespace varnel::odbc
