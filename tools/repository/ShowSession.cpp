#include "tools/repository/ShowSession.h"

#include "ado/Ado.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/SessionRows.h"
#include "tools/sessionfile/WriteSessionFile.h"

namespace varnel::admin {

ShownSession StoredSession(std::int16_t id, const std::string& repositoryFile) {
    const StoredRows rows = KeepRows(OpenRepository(repositoryFile), id);
    RequireSession(rows, id, repositoryFile);
    return {DefinitionOf(rows), LastRunOf(rows[kSessions], 0), MissingValues(rows)};
}

std::string ShownText(const ShownSession& session) {
    SessionDefinition definition = session.definition;
    definition.comments.push_back(session.lastRun.Words());
    for (const std::string& column : session.missing)
        definition.comments.push_back("cannot run: " + column + " is Null");
    return SessionFileText(definition, Passwords::Hidden);
}

}  // namespace varnel::admin
