#include "providers/odbc/OdbcStatement.h"

#include <algorithm>
#include <utility>

#include "providers/odbc/TargetColumns.h"

namespace varnel::odbc {
namespace {

/// Rows of one array: more gain nothing, and the driver holds them all.
constexpr std::size_t kRowsPerArray = 1000;
/// A refused array is sent again in smaller ones, so that few rows pay for the one that is refused.
constexpr std::size_t kRowsPerPart = 100;
constexpr std::size_t kPiece = std::size_t{64} << 10;

}  // namespace

OdbcStatement::OdbcStatement(std::shared_ptr<OdbcLink> link, const std::string& statement,
                             std::span<const ParameterInfo> parameters)
    : link_(std::move(link)),
      text_(statement),
      parameters_(parameters, *link_, kRowsPerArray),
      states_(parameters_.Rows()) {}

void OdbcStatement::Prepare() {
    if (alone_.handle.Get() == nullptr) alone_.handle = PreparedFor(1);
}

void OdbcStatement::HoldAgainst(std::vector<OdbcColumn> targets) {
    if (targets.size() != parameters_.Count()) return;
    targets_ = std::move(targets);
    scratch_.resize(targets_.size());
    fitting_.resize(targets_.size());
}

std::span<const Value* const> OdbcStatement::Fitting(std::span<const Value* const> parameters) {
    if (targets_.empty() || parameters.size() != targets_.size()) return parameters;
    for (std::size_t k = 0; k < targets_.size(); ++k) fitting_[k] = &Fitted(targets_[k], *parameters[k], scratch_[k]);
    return fitting_;
}

StatementHandle OdbcStatement::PreparedFor(std::size_t rows) {
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
    parameters_.Take(0, Fitting(parameters));
    RunAlone();
}

void OdbcStatement::Queue(std::span<const Value> parameters) {
    QueueWith(Pointers(parameters));
}

void OdbcStatement::QueueWith(std::span<const Value* const> parameters) {
    if (queued_ >= parameters_.Rows())
        throw Error(ErrorKind::Misuse, link_->Text().place, "The rows put aside must be sent first.");
    parameters_.Take(queued_, Fitting(parameters));
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

void OdbcStatement::RunAlone() {
    Prepare();
    Run(alone_);
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

/// The first rows of the buffers as one array. False when any of them was refused, or the connection; nothing of the
/// array is stored then.
bool OdbcStatement::SendTogether(std::size_t rows) {
    bool clean = true;
    try {
        if (togetherRows_ != rows) together_ = {PreparedFor(rows), 0};
        togetherRows_ = rows;
        link_->Begin();
        Run(together_);
        for (std::size_t row = 0; row < rows; ++row)
            clean = clean && (states_[row] == SQL_PARAM_SUCCESS || states_[row] == SQL_PARAM_SUCCESS_WITH_INFO);
        if (clean) link_->Commit();
    } catch (const Error&) {
        clean = false;  // which row it was comes out when they are sent one by one
    }
    if (!clean) {
        link_->Rollback();
        togetherRows_ = 0;
    }
    return clean;
}

void OdbcStatement::SendOneByOne(std::size_t rows, const RowOutcome& outcome) {
    for (std::size_t row = 0; row < rows; ++row) {
        parameters_.CopyToFront(row, 1);
        try {
            RunAlone();
        } catch (const Error& error) {
            outcome(&error);
            continue;
        }
        outcome(nullptr);
    }
}

bool OdbcStatement::SendClean(std::size_t rows, const RowOutcome& outcome) {
    if (rows < 2 || !SendTogether(rows)) return false;
    for (std::size_t row = 0; row < rows; ++row) outcome(nullptr);
    return true;
}

void OdbcStatement::Send(const RowOutcome& outcome) {
    const std::size_t rows = std::exchange(queued_, 0);
    if (rows > kRowsPerPart && SendClean(rows, outcome)) return;
    for (std::size_t row = 0; row < rows; row += kRowsPerPart) {
        const std::size_t part = std::min(kRowsPerPart, rows - row);
        parameters_.CopyToFront(row, part);
        if (!SendClean(part, outcome)) SendOneByOne(part, outcome);
    }
}

}  // namespace varnel::odbc
