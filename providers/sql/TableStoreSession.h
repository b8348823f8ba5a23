// SQL over a store of table files: Access files, FoxPro tables, folders of text files.
// Start here; StoreSelect.h reads, StoreChange.h and StoreAppender.h write. Readers, appenders and statements of one
// session may be used side by side; what a reader delivers are the rows that existed when it was opened.
#pragma once

#include <memory>
#include <string>

#include "ado/types/Provider.h"
#include "providers/sql/Dialect.h"
#include "providers/sql/OpenStore.h"

namespace varnel::sql {

class TableStoreSession : public ProviderSession {
public:
    /// readOnly: statements that change something fail.
    TableStoreSession(std::shared_ptr<OpenStore> store, const Dialect& dialect, bool readOnly)
        : store_(std::move(store)), dialect_(dialect), readOnly_(readOnly) {}

    std::unique_ptr<RowReader> Query(const std::string& statement) override;
    void Execute(const std::string& statement) override;
    std::unique_ptr<PreparedStatement> Prepare(const std::string& statement,
                                               std::span<const ParameterInfo> parameters) override;
    std::unique_ptr<Appender> OpenAppender(const std::string& selectStatement) override;
    std::vector<TableInfo> Tables() override;
    std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) override;
    bool Reset() noexcept override { return true; }
    bool Alive() noexcept override;

private:
    ParsedStatement Parse(const std::string& statement) const;
    void RequireWritable() const;
    void Change(const ParsedStatement& parsed);

    std::shared_ptr<OpenStore> store_;
    Dialect dialect_;
    bool readOnly_;
};

}  // namespace varnel::sql
