#include "repository/model/RepositoryQuery.h"

#include "ado/types/ValueConvert.h"
#include "repository/model/SessionModel.h"

namespace varnel {

double CountSessionRows(const std::string& table, std::int16_t SessionID) {
    RepoRs->Open("select count(*) from " + table + " where sessionid=" + std::to_string(SessionID), *RepoConn,
                 adOpenDynamic);
    const double count = ToDouble(RepoRs->Fields(0).GetValue());
    RepoRs->Close();
    return count;
}

void OpenSessionRows(const std::string& table, std::int16_t SessionID) {
    RepoRs->Open("select * from " + table + " where sessionid=" + std::to_string(SessionID), *RepoConn, adOpenDynamic);
}

}  // namespace varnel
