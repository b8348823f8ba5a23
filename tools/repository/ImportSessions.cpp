#include <algorithm>
#include <cstdio>
#include <set>

#include "ado/Ado.h"
#include "tools/output/Progress.h"
#include "tools/repository/ColumnOrder.h"
#include "tools/repository/HeldRows.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/Repository.h"
#include "tools/repository/SessionRows.h"
#include "tools/sessionfile/ReadSessionFile.h"

namespace varnel::admin {
namespace {

bool Exists(const StoredRows& rows) {
    return !rows[kSessions].empty() || !rows[kTables].empty() || !rows[kColumns].empty();
}

/// The columns in which the repository holds other values than it was given ("vrtabs.TableExists"), because of types
/// of its own; "" when all is as it should be.
std::string NotHeld(const StoredRows& given, const StoredRows& kept) {
    std::vector<std::string> ignored;
    const StoredRows wanted = HeldRows(given, ignored), held = HeldRows(kept, ignored);
    std::set<std::string> columns;
    for (std::size_t t = 0; t < wanted.size(); ++t) {
        const auto &a = wanted[t].rows, &b = held[t].rows;
        if (a.size() == b.size() && std::is_permutation(a.begin(), a.end(), b.begin())) continue;
        for (std::size_t row = 0; row < std::min(a.size(), b.size()); ++row)
            for (std::size_t k = 0; k < a[row].size(); ++k)
                if (!(a[row][k] == b[row][k]))
                    columns.insert(std::string(kRepositoryTables[t].name) + "." + wanted[t].columns[k]);
    }
    std::string names;
    for (const std::string& name : columns) names += (names.empty() ? "" : ", ") + name;
    return names;
}

// A fault of a stored value is a fault of the file.
StoredRows RowsOfFile(const SessionDefinition& session) {
    try {
        return RowsOf(session);
    } catch (const Error& error) {
        throw Error(error.kind, error.where, std::string("nothing was imported:\n") + error.what());
    }
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
    Progress progress("importing", "sessions");
    try {
        for (const Replacement& replacement : replacements) {
            progress.Count(touched++, replacements.size());
            DeleteRows(repository, replacement.id);
            AppendRows(repository, replacement.after);
            const StoredRows kept = KeepRows(repository, replacement.id);
            const std::string columns = NotHeld(replacement.after, kept);
            if (!columns.empty())
                throw Error(ErrorKind::NotSupported, columns,
                            "session " + std::to_string(replacement.id) + ": this repository holds another value in " +
                                columns + " than the session file says (a Yes/No column of an Access database has no " +
                                "Null); change the file, or use a repository made with --sqlite; nothing was imported");
            KeepColumnOrder(repository, replacement.id, replacement.after, kept);
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
        Replacement replacement{session.id, KeepRows(repository, session.id), RowsOfFile(session)};
        if (Exists(replacement.before) && !replace)
            throw Error(ErrorKind::Misuse, repositoryFile,
                        session.place + ": session " + std::to_string(session.id) + " exists already in " +
                            repositoryFile + "; give it another id, or import with --replace; nothing was imported");
        replacements.push_back(std::move(replacement));
    }
    Write(repository, replacements);
    repository.Close();
    for (const Replacement& replacement : replacements) {
        const Value& name = replacement.after[kSessions].At(0, "SessionName");
        std::printf("%s session %d: %s\n", Exists(replacement.before) ? "replaced" : "imported", replacement.id,
                    name.IsNull() ? "" : std::string(name.AsText()).c_str());
    }
}

}  // namespace varnel::admin
