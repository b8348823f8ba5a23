#include "providers/odbc/OdbcStatement.h"

#include <algorithm>
#include <utility>

namespace varnel::odbc {
namespace {

/// Rows of one array: more gain nothing, and the driver holds them all.
constexpr std::size_t kRowsPerArray = 100;
constexpr std::size_t kPiece = std::size_t{64} << 10;

}  // namespace

OdbcStatement::OdbcStatement(std::shared_ptr<OdbcLink> link, const std::string& statement,
                             std::span<const ParameterInfo> parameters)
    : link_(std::move(link)),
      text_(statement),
      parameters_(parameters, link_->Text(), kRowsPerArray),
      states_(parameters_.Rows()) {
    alone_.handle = Prepare(1);
}

StatementHandle OdbcStatement::Prepare(std::size_t rows) {
    StatementHandle statement = link_->NewStatement();
    SQLHSTMT handle = statement.Get();
    SQLCHAR* text = reinterpret_cast<SQLCHAR*>(text_.data());
    link_->Check(SQLPrepare(handle, text, static_cast<SQLINTEGER>(text_.size())), statement);
    SQLSetStmtAttr(handle, SQL_ATTR_PARAMSET_SIZE, AsPointer(rows), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_PARAM_STATUS_PTR, states_.data(), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_PARAMS_PROCESSED_PTR, &processed_, 0);
    return statement;
}

std::span<const Value* const> OdbcStatement::Pointers(std::span<const Value> values) {
    if (values.size() != parameters_.Count())
        throw Error(ErrorKind::Misuse, link_->Text().place, "The statement needs one value per marker.");
    pointers_.clear();
    for (const Value& value : values) pointers_.push_back(&value);
    return pointers_;
}

void OdbcStatement::Execute(std::span<const Value> parameters) {
    ExecuteWith(Pointers(parameters));
}

void OdbcStatement::ExecuteWith(std::span<const Value* const> parameters) {
    parameters_.Take(0, parameters);
    Run(alone_);
}

void OdbcStatement::Queue(std::span<const Value> parameters) {
    QueueWith(Pointers(parameters));
}

void OdbcStatement::QueueWith(std::span<const Value* const> parameters) {
    if (queued_ >= parameters_.Rows())
        throw Error(ErrorKind::Misuse, link_->Text().place, "The rows put aside must be sent first.");
    parameters_.Take(queued_, parameters);
    ++queued_;
}

/// Runs the statement for the first rows of the buffers, as many as it was prepared for.
void OdbcStatement::Run(Prepared& prepared) {
    link_->Ready();
    const StatementHandle& statement = prepared.handle;
    if (std::exchange(prepared.boundShape, parameters_.Shape()) != parameters_.Shape())
        parameters_.Bind(*link_, statement);
    const SQLRETURN outcome = SQLExecute(statement.Get());
    if (outcome == SQL_NEED_DATA) {
        SendPieces(statement);
    } else {
        link_->Check(outcome, statement);
    }
    SQLFreeStmt(statement.Get(), SQL_CLOSE);
}

void OdbcStatement::SendPieces(const StatementHandle& statement) {
    SQLPOINTER token = nullptr;
    SQLRETURN outcome = SQL_NEED_DATA;
    while ((outcome = SQLParamData(statement.Get(), &token)) == SQL_NEED_DATA) {
        const auto content = parameters_.Content(token);
        std::size_t sent = 0;
        do {
            const std::size_t size = std::min(kPiece, content.size() - sent);
            // The driver reads the bytes and nothing else; an empty value is one empty piece.
            SQLPOINTER piece = const_cast<std::uint8_t*>(content.empty() ? reinterpret_cast<const std::uint8_t*>("")
                                                                         : content.data() + sent);
            link_->Check(SQLPutData(statement.Get(), piece, static_cast<SQLLEN>(size)), statement);
            sent += size;
        } while (sent < content.size());
    }
    link_->Check(outcome, statement);
}

/// All rows put aside as one array. False when any of them was refused; nothing of the array is stored then.
bool OdbcStatement::SendTogether() {
    if (togetherRows_ != queued_) together_ = {Prepare(queued_), 0};
    togetherRows_ = queued_;
    link_->Begin();
    bool clean = true;
    try {
        Run(together_);
        for (std::size_t row = 0; row < queued_; ++row)
            clean = clean && (states_[row] == SQL_PARAM_SUCCESS || states_[row] == SQL_PARAM_SUCCESS_WITH_INFO);
    } catch (const Error&) {
        clean = false;  // which row it was comes out when they are sent one by one
    }
    if (clean) {
        link_->Commit();
    } else {
        link_->Rollback();
        togetherRows_ = 0;
    }
    return clean;
}

void OdbcStatement::SendOneByOne(const RowOutcome& outcome) {
    const std::size_t rows = std::exchange(queued_, 0);
    for (std::size_t row = 0; row < rows; ++row) {
        if (row > 0) parameters_.CopyToFirst(row);
        try {
            Run(alone_);
        } catch (const Error& error) {
            outcome(&error);
            continue;
        }
        outcome(nullptr);
    }
}

void OdbcStatement::Send(const RowOutcome& outcome) {
    if (queued_ == 0) return;
    if (queued_ == 1 || !SendTogether()) return SendOneByOne(outcome);
    for (std::size_t row = std::exchange(queued_, 0); row > 0; --row) outcome(nullptr);
}

}  // namespace varnel::odbc
