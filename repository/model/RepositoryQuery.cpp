#include "repository/model/RepositoryQuery.h"

#include "ado/types/ValueConvert.h"
#include "repository/model/SessionModel.h"

namespace varnel {

namespace {

/// " order by SessionId,TabID": the primary key of a table that has one; without it rows come as they are stored.
std::string KeyOrder(const std::string& table) {
    std::string order;
    for (const TableColumn& column : RepoConn->Columns("", table)) {
        if (column.isKey) order += (order.empty() ? " order by [" : ",[") + column.info.name + "]";
    }
    return order;
}

}  // namespace

double CountSessionRows(const std::string& table, std::int16_t SessionID) {
    RepoRs->Open("select count(*) from " + table + " where sessionid=" + std::to_string(SessionID), *RepoConn,
                 adOpenDynamic);
    const double count = ToDouble(RepoRs->Fields(0).GetValue());
    RepoRs->Close();
    return count;
}

void OpenSessionRows(const std::string& table, std::int16_t SessionID) {
    RepoRs->Open("select * from " + table + " where sessionid=" + std::to_string(SessionID) + KeyOrder(table),
                 *RepoConn, adOpenDynamic);
}

}  // namespace varnel
