#include "providers/odbc/OdbcSession.h"

#include "providers/odbc/OdbcAppender.h"
#include "providers/odbc/OdbcReader.h"
#include "providers/odbc/OdbcStatement.h"
#include "providers/odbc/SelectText.h"
#include "providers/odbc/TargetColumns.h"

namespace varnel::odbc {

std::unique_ptr<RowReader> OdbcSession::Query(const std::string& statement) {
    StatementHandle handle = link_->NewStatement();
    SQLCHAR* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(statement.c_str()));  // which is only read
    link_->Check(SQLExecDirect(handle.Get(), text, static_cast<SQLINTEGER>(statement.size())), handle);
    SQLSMALLINT columns = 0;
    link_->Check(SQLNumResultCols(handle.Get(), &columns), handle);
    if (columns == 0) return nullptr;
    return std::make_unique<OdbcReader>(link_, std::move(handle));
}

std::unique_ptr<PreparedStatement> OdbcSession::Prepare(const std::string& statement,
                                                        std::span<const ParameterInfo> parameters) {
    auto prepared = std::make_unique<OdbcStatement>(link_, statement, parameters);
    prepared->Prepare();
    if (const auto insert = ReadInsert(statement)) {
        const StatementHandle asking = link_->NewStatement();
        if (auto targets = DescribeSelect(asking, WriteSelect(*insert), link_->Text()))
            prepared->HoldAgainst(std::move(*targets));
    }
    return prepared;
}

std::unique_ptr<Appender> OdbcSession::OpenAppender(const std::string& selectStatement) {
    return std::make_unique<OdbcAppender>(link_, selectStatement);
}

}  // namespace varnel::odbc
