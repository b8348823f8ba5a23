// One log-in as the data layer uses it. While rows of a query are being read nothing else can run on it.
#pragma once

#include <memory>
#include <string>

#include "ado/types/Provider.h"
#include "providers/mysql/MySqlCatalog.h"
#include "providers/mysql/MySqlLink.h"

namespace varnel::mysql {

class MySqlSession : public ProviderSession {
public:
    explicit MySqlSession(const MySqlOptions& options) : link_(std::make_shared<MySqlLink>(options)) {}

    std::unique_ptr<RowReader> Query(const std::string& statement) override;
    /// An INSERT that is larger than the server's packet limit goes as several statements, all or none of them.
    void Execute(const std::string& statement) override;
    /// The statement is sent; the server works on it while the program goes on.
    void StartExecute(const std::string& statement) override;
    void FinishExecute() override { link_->FinishRun(); }
    std::unique_ptr<PreparedStatement> Prepare(const std::string& statement,
                                               std::span<const ParameterInfo> parameters) override;
    std::unique_ptr<Appender> OpenAppender(const std::string& selectStatement) override;
    /// Of the log-in's database, or of all of them when it has none.
    std::vector<TableInfo> Tables() override { return ListTables(*this, link_->Options().database); }
    std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) override {
        return DescribeTable(*this, owner, table);
    }
    bool Reset() noexcept override { return link_->Reset(); }
    bool Alive() noexcept override { return link_->Alive(); }

private:
    void PrepareFor(const std::string& statement);
    bool ExceedsPacket(const std::string& statement);
    void ExecuteInPieces(const std::string& statement);
    std::unique_ptr<RowReader> RunUnprepared(const std::string& statement);
    [[noreturn]] void FailTooLarge(const char* what, std::size_t bytes);

    std::shared_ptr<MySqlLink> link_;
};

}  // namespace varnel::mysql
