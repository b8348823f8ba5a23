#include "tools/repository/ListSessions.h"

#include "ado/Ado.h"
#include "ado/types/ValueText.h"
#include "tools/repository/OpenRepository.h"

namespace varnel::admin {

std::vector<SessionSummary> ListSessions(const std::string& repositoryFile) {
    const StoredTable sessions =
        ReadStored("SELECT * FROM sessions ORDER BY sessionid", OpenRepository(repositoryFile));
    std::vector<SessionSummary> list;
    for (std::size_t row = 0; row < sessions.rows.size(); ++row) {
        const auto text = [&](std::string_view column) {
            const Value& value = sessions.At(row, column);
            return value.IsNull() ? "" : DefaultText(value);
        };
        list.push_back({text("sessionid"), text("SessionName"), text("SourceDBName"), text("TargetDBName"),
                        LastRunOf(sessions, row)});
    }
    return list;
}

}  // namespace varnel::admin
