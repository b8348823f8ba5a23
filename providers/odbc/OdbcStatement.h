// A prepared statement. Rows go one by one, or are put aside and sent together as an array of parameters.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/odbc/OdbcLink.h"
#include "providers/odbc/OdbcParameters.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {

class OdbcStatement : public PreparedStatement {
public:
    /// Asks the server for nothing yet.
    OdbcStatement(std::shared_ptr<OdbcLink> link, const std::string& statement,
                  std::span<const ParameterInfo> parameters);

    /// Throws what the driver says of the statement; many drivers say it only when it runs. Running prepares too.
    void Prepare();
    /// Values are held against the columns that they go into, one a parameter: what a column has no place for is
    /// refused from now on.
    void HoldAgainst(std::vector<OdbcColumn> targets);
    void Execute(std::span<const Value> parameters) override;
    /// The same with values that do not lie side by side.
    void ExecuteWith(std::span<const Value* const> parameters);

    std::size_t QueueLimit() const override { return parameters_.HasLong() ? 0 : parameters_.Rows(); }
    void Queue(std::span<const Value> parameters) override;
    void QueueWith(std::span<const Value* const> parameters);
    void Send(const RowOutcome& outcome) override;

private:
    /// The statement prepared at the server, and for which shape of the parameters it was bound.
    struct Prepared {
        StatementHandle handle;
        std::uint64_t boundShape = 0;
    };

    std::span<const Value* const> Pointers(std::span<const Value> values);
    StatementHandle PreparedFor(std::size_t rows);
    void Run(Prepared& prepared);
    void RunAlone();
    std::span<const Value* const> Fitting(std::span<const Value* const> parameters);
    void SendPieces(const StatementHandle& statement);
    bool SendTogether(std::size_t rows);
    bool SendClean(std::size_t rows, const RowOutcome& outcome);
    void SendOneByOne(std::size_t rows, const RowOutcome& outcome);

    std::shared_ptr<OdbcLink> link_;
    std::string text_;
    OdbcParameters parameters_;
    std::vector<OdbcColumn> targets_;  ///< empty when they are not known
    std::vector<Value> scratch_;       ///< one a target
    std::vector<const Value*> fitting_;
    Prepared alone_;
    // Arrays have a handle of their own for each number of rows: drivers mix rows up when one handle changes it.
    Prepared together_;
    std::size_t togetherRows_ = 0;
    std::size_t queued_ = 0;
    std::vector<SQLUSMALLINT> states_;  ///< of the rows of an array, as the driver left them
    SQLULEN processed_ = 0;
    std::vector<const Value*> pointers_;
};

}  // namespace varnel::odbc
