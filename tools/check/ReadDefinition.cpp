#include "tools/check/ReadDefinition.h"

#include "app/flags/SharedFlags.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "repository/ReadSession.h"
#include "repository/model/RepositoryQuery.h"
#include "repository/model/SessionModel.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/SessionRows.h"
#include "tools/repository/StoredRows.h"

namespace varnel::admin {
namespace {

void OpenToRead(const std::string& repositoryFile) {
    if (!FileExists(repositoryFile)) OpenRepository(repositoryFile);  // throws with the remedy
    RepoConn = std::make_unique<Connection>();
    RepoRs = std::make_unique<Recordset>();
    RepoConn->Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + QuotedValue(repositoryFile) + ";Mode=Read");
}

bool IsTextSource() {
    return SessionDef.SourceDBName == "TEXT" || SessionDef.SourceDBName == "TEXTPOLL";
}

/// Nothing when the rows cannot be told at all; what the reader says of them is told then.
std::vector<std::string> NullsOf(std::int16_t id) {
    try {
        return MissingValues(KeepRows(*RepoConn, id));
    } catch (const Error&) {
        return {};
    }
}

/// All Nulls that stop a run, not just the first one that it meets.
bool ReportMissingValues(std::int16_t id, Findings& found) {
    bool complete = true;
    for (const std::string& column : NullsOf(id)) {
        if ((column == "vrtabs.SFormat" || column == "vrtabs.SFirstColLine") && !IsTextSource()) continue;
        complete = false;
        const std::size_t dot = column.find('.');
        found.Fault(column.substr(dot + 1), "the repository holds no value in " + column + ", and a run needs one",
                    "store a value, an empty text at least; varnel-admin show " + std::to_string(id) +
                        " prints the session for a new import");
    }
    return complete;
}

void ReportEmptySession(bool noFile, Findings& found) {
    if (SourceTables.Count() == 0) {
        found.Fault("", "the session has no tables (vrtabs): a run ends at once and loads nothing", "add its tables");
    } else if (noFile) {
        found.Warning("FPattern",
                      "no file in '" + SessionDef.FolderName + "' matches the pattern '" + SessionDef.FPattern +
                          "' now: a run loads nothing",
                      "correct FolderName or FPattern, unless files are still to come");
    } else {
        found.Fault("", "the session has no columns (SrcDCols): a run ends at once and loads nothing",
                    "add the columns of its tables");
    }
}

}  // namespace

bool ReadDefinition(std::int16_t id, const std::string& repositoryFile, Findings& found) {
    OpenToRead(repositoryFile);
    if (CountSessionRows("sessions", id) <= 0)
        throw Error(ErrorKind::Misuse, repositoryFile,
                    "there is no session " + std::to_string(id) + " in " + repositoryFile +
                        "; the numbers are shown by: varnel-admin list --repository " + repositoryFile);
    RepoOk = true;
    bool noFile = false;
    try {
        ReadSession(id);
        ReadTables(id, PolledFolder::LeaveAsItIs);
        noFile = !RepoOk;
        if (RepoOk) ReadColumns(id);
    } catch (const Error& error) {
        if (ReportMissingValues(id, found))
            found.Fault("", std::string("the session cannot be read: ") + error.what(),
                        "correct the value; a run ends with it in Varnel.log");
        return false;
    }
    if (!RepoOk) ReportEmptySession(noFile, found);
    return RepoOk;
}

}  // namespace varnel::admin
