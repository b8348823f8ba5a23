#include <cstdio>

#include "ado/Ado.h"
#include "tools/OpenRepository.h"
#include "tools/ReadSessionFile.h"
#include "tools/Repository.h"
#include "tools/SessionRows.h"

namespace varnel::admin {
namespace {

bool Exists(const StoredRows& rows) {
    return !rows[0].empty() || !rows[1].empty() || !rows[2].empty();
}

struct Replacement {
    std::int16_t id;
    StoredRows before, after;
};

void PutBack(Connection& repository, const std::vector<Replacement>& replacements, std::size_t touched) {
    for (std::size_t r = 0; r < touched; ++r) {
        DeleteRows(repository, replacements[r].id);
        AppendRows(repository, replacements[r].before);
    }
}

// All or nothing: on a failure every session touched so far gets its old rows back.
void Write(Connection& repository, const std::vector<Replacement>& replacements) {
    std::size_t touched = 0;
    try {
        for (const Replacement& replacement : replacements) {
            ++touched;
            DeleteRows(repository, replacement.id);
            AppendRows(repository, replacement.after);
        }
    } catch (const Error&) {
        PutBack(repository, replacements, touched);
        throw;
    }
}

}  // namespace

void ImportSessions(const std::vector<std::string>& sessionFiles, const std::string& repositoryFile, bool replace) {
    const std::vector<SessionDefinition> sessions = ReadSessionFiles(sessionFiles);
    Connection repository = OpenRepository(repositoryFile);
    std::vector<Replacement> replacements;
    for (const SessionDefinition& session : sessions) {
        Replacement replacement{session.id, KeepRows(repository, session.id), RowsOf(session)};
        if (Exists(replacement.before) && !replace)
            throw Error(ErrorKind::Misuse, repositoryFile,
                        session.place + ": session " + std::to_string(session.id) + " exists already in " +
                            repositoryFile + "; give it another id, or import with --replace; nothing was imported");
        replacements.push_back(std::move(replacement));
    }
    Write(repository, replacements);
    repository.Close();
    for (std::size_t s = 0; s < sessions.size(); ++s)
        std::printf("%s session %d: %s\n", Exists(replacements[s].before) ? "replaced" : "imported", sessions[s].id,
                    sessions[s].name.c_str());
}

}  // namespace varnel::admin
