#include "providers/odbc/OdbcReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "providers/odbc/CellDecoder.h"

namespace varnel::odbc {
namespace {

constexpr std::size_t kMostRows = 256;
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;
constexpr std::size_t kPiece = std::size_t{64} << 10;

}  // namespace

SQLSMALLINT TransferType(CellForm form) {
    switch (form) {
        case CellForm::Integer:
            return SQL_C_SBIGINT;
        case CellForm::UnsignedBig:
            return SQL_C_UBIGINT;
        case CellForm::Boolean:
            return SQL_C_UTINYINT;  // MariaDB's driver leaves the length of a bound SQL_C_BIT as it was
        case CellForm::Single:      // MariaDB's driver lays a block of SQL_C_FLOAT out as if each took eight bytes
        case CellForm::Double:
            return SQL_C_DOUBLE;
        case CellForm::Date:
            return SQL_C_TYPE_DATE;
        case CellForm::Time:
            return SQL_C_TYPE_TIME;
        case CellForm::DateTime:
            return SQL_C_TYPE_TIMESTAMP;
        case CellForm::Guid:
            return SQL_C_GUID;
        case CellForm::Bytes:
        case CellForm::LongBytes:
            return SQL_C_BINARY;
        case CellForm::Decimal:
        case CellForm::Currency:
        case CellForm::Text:
        case CellForm::LongText:
            return SQL_C_CHAR;
    }
    return SQL_C_CHAR;
}

OdbcReader::OdbcReader(std::shared_ptr<OdbcLink> link, StatementHandle executed)
    : link_(std::move(link)), statement_(std::move(executed)) {
    Describe();
    BindBlock();
    link_->BeginStream();
}

OdbcReader::~OdbcReader() {
    if (!open_) return;
    SQLCloseCursor(statement_.Get());
    link_->EndStream();
}

void OdbcReader::Describe() {
    SQLSMALLINT count = 0;
    link_->Check(SQLNumResultCols(statement_.Get(), &count), statement_);
    for (SQLSMALLINT number = 1; number <= count; ++number) {
        DriverColumn described;
        if (!ReadDriverColumn(statement_, static_cast<SQLUSMALLINT>(number), described)) link_->Fail(statement_);
        BoundColumn& column = columns_.emplace_back();
        column.column = DescribeColumn(described, link_->Text());
        infos_.push_back(column.column.info);
    }
}

/// Columns from the first long one on are fetched by themselves: a driver may bear that only in ascending order and
/// behind the bound ones, and then only one row at a time.
void OdbcReader::BindBlock() {
    std::size_t rowBytes = 0;
    bool longSeen = false;
    for (BoundColumn& column : columns_) {
        longSeen = longSeen || column.column.IsLong();
        column.bound = !longSeen;
        rowBytes += column.column.cellBytes + sizeof(SQLLEN);
    }
    const std::size_t fitting = kBlockBytes / std::max<std::size_t>(rowBytes, 1);
    rowsPerBlock_ = longSeen ? 1 : std::clamp<std::size_t>(fitting, 1, kMostRows);
    SQLHSTMT handle = statement_.Get();
    SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, AsPointer(rowsPerBlock_), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0);
    for (std::size_t k = 0; k < columns_.size(); ++k) {
        BoundColumn& column = columns_[k];
        column.cells.resize(column.column.cellBytes * rowsPerBlock_);
        column.lengths.assign(rowsPerBlock_, SQL_NULL_DATA);
        if (!column.bound) continue;
        link_->Check(
            SQLBindCol(handle, static_cast<SQLUSMALLINT>(k + 1), TransferType(column.column.form), column.cells.data(),
                       static_cast<SQLLEN>(column.column.cellBytes), column.lengths.data()),
            statement_);
    }
}

bool OdbcReader::Next(std::span<Value> row) {
    if (row.size() != columns_.size())
        throw Error(ErrorKind::Misuse, link_->Text().place, "A row needs one value per column.");
    if (!open_ || (next_ >= fetched_ && !FetchBlock())) return false;
    for (std::size_t k = 0; k < columns_.size(); ++k) {
        if (columns_[k].bound) {
            Decode(columns_[k], next_, row[k]);
        } else {
            FetchAlone(static_cast<SQLUSMALLINT>(k + 1), columns_[k], row[k]);
        }
    }
    ++next_;
    return true;
}

bool OdbcReader::FetchBlock() {
    next_ = 0;
    fetched_ = 0;
    const SQLRETURN outcome = SQLFetch(statement_.Get());
    if (outcome == SQL_NO_DATA) {
        Finish();
        return false;
    }
    if (!SQL_SUCCEEDED(outcome)) Fail();
    return fetched_ > 0;
}

void OdbcReader::Decode(const BoundColumn& column, std::size_t row, Value& value) const {
    const SQLLEN length = column.lengths[row];
    if (length == SQL_NULL_DATA) return value.SetNull();
    const std::uint8_t* cell = column.cells.data() + row * column.column.cellBytes;
    DecodeCell(column.column, {cell, column.column.cellBytes}, length, value);
}

void OdbcReader::FetchAlone(SQLUSMALLINT number, BoundColumn& column, Value& value) {
    if (column.column.IsLong()) return FetchPieces(number, column.column, value);
    const SQLRETURN outcome =
        SQLGetData(statement_.Get(), number, TransferType(column.column.form), column.cells.data(),
                   static_cast<SQLLEN>(column.column.cellBytes), column.lengths.data());
    if (!SQL_SUCCEEDED(outcome)) Fail();
    Decode(column, 0, value);
}

/// Pieces come until the driver reports success without more; no length that it announces is trusted.
void OdbcReader::FetchPieces(SQLUSMALLINT number, const OdbcColumn& column, Value& value) {
    const bool text = column.form == CellForm::LongText;
    const std::size_t endMark = text ? 1 : 0;
    std::string* whole = nullptr;
    for (bool more = true; more;) {
        const std::size_t had = whole == nullptr ? 0 : whole->size();
        if (whole == nullptr) whole = text ? &value.StartText() : &value.StartBytes();
        whole->resize(had + kPiece + endMark);
        SQLLEN length = 0;
        const SQLRETURN outcome = SQLGetData(statement_.Get(), number, TransferType(column.form), whole->data() + had,
                                             static_cast<SQLLEN>(kPiece + endMark), &length);
        if (outcome == SQL_NO_DATA) {
            whole->resize(had);
            break;
        }
        if (!SQL_SUCCEEDED(outcome)) Fail();
        if (length == SQL_NULL_DATA) return value.SetNull();
        more = outcome == SQL_SUCCESS_WITH_INFO && (length == SQL_NO_TOTAL || length > static_cast<SQLLEN>(kPiece));
        std::size_t got = more ? kPiece : static_cast<std::size_t>(std::clamp<SQLLEN>(length, 0, kPiece));
        // A driver may end a piece early rather than cut a character.
        if (more && text) got = std::strlen(whole->data() + had);
        whole->resize(had + got);
    }
}

void OdbcReader::Finish() {
    open_ = false;
    SQLCloseCursor(statement_.Get());
    statement_ = {};
    link_->EndStream();
}

void OdbcReader::Fail() {
    open_ = false;
    link_->EndStream();
    link_->Fail(statement_);
}

}  // namespace varnel::odbc
