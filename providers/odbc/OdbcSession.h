// One log-in as the data layer uses it.
#pragma once

#include <memory>
#include <string>

#include "ado/types/Provider.h"
#include "providers/odbc/OdbcCatalog.h"
#include "providers/odbc/OdbcLink.h"

namespace varnel::odbc {

class OdbcSession : public ProviderSession {
public:
    explicit OdbcSession(const ConnectionString& stored) : link_(std::make_shared<OdbcLink>(stored)) {}

    std::unique_ptr<RowReader> Query(const std::string& statement) override;
    void Execute(const std::string& statement) override { link_->Run(statement); }
    std::unique_ptr<PreparedStatement> Prepare(const std::string& statement,
                                               std::span<const ParameterInfo> parameters) override;
    std::unique_ptr<Appender> OpenAppender(const std::string& selectStatement) override;
    std::vector<TableInfo> Tables() override { return ListTables(link_); }
    std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) override {
        return DescribeTable(link_, owner, table);
    }
    bool Reset() noexcept override { return link_->Reset(); }
    bool Alive() noexcept override { return link_->Alive(); }

private:
    std::shared_ptr<OdbcLink> link_;
};

}  // namespace varnel::odbc
