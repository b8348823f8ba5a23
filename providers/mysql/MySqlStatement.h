// A prepared statement: values are bound by their kind, long ones are sent ahead in pieces.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/mysql/MySqlLink.h"
#include "providers/mysql/MySqlParameters.h"

namespace varnel::mysql {

class MySqlStatement : public PreparedStatement {
public:
    MySqlStatement(std::shared_ptr<MySqlLink> link, const std::string& statement);
    ~MySqlStatement() override { link_->Discard(std::move(statement_)); }
    MySqlStatement(const MySqlStatement&) = delete;
    MySqlStatement& operator=(const MySqlStatement&) = delete;
    void Execute(std::span<const Value> parameters) override;
    /// The same with values that do not lie side by side.
    void ExecuteWith(std::span<const Value* const> parameters);

private:
    void SendLongParts();
    void SendLong(unsigned parameter, std::string_view content, std::uint64_t limit);
    void RefuseOversized(std::uint64_t limit) const;

    std::shared_ptr<MySqlLink> link_;
    SqlMode mode_;
    StatementHandle statement_;
    MySqlParameters parameters_;
    std::vector<const Value*> pointers_;
};

}  // namespace varnel::mysql
