#include "ado/Ado.h"
#include "tools/OpenRepository.h"
#include "tools/Repository.h"
#include "tools/RowOutput.h"

namespace varnel::admin {

void ListSessions(const std::string& repositoryFile) {
    const Connection repository = OpenRepository(repositoryFile);
    Recordset rows;
    rows.Open(
        "SELECT sessionid AS id, SessionName AS name, SourceDBName AS source, TargetDBName AS target, "
        "LastRunDate AS last_run, LastRunTime AS at, SessionError AS errors FROM sessions ORDER BY sessionid",
        repository);
    WriteAligned(rows, {.null = "", .countRows = false});
}

}  // namespace varnel::admin
