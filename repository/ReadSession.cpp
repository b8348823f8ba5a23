#include "repository/ReadSession.h"

#include "app/flags/SharedFlags.h"
#include "repository/model/RepositoryQuery.h"
#include "repository/model/RowFields.h"
#include "repository/model/SessionModel.h"

namespace varnel {

void ReadSession(std::int16_t SessionID) {
    if (CountSessionRows("sessions", SessionID) <= 0) {
        RepoOk = false;
        return;
    }
    OpenSessionRows("sessions", SessionID);
    const RowFields row(*RepoRs, "sessions", SessionID);
    SessionDef.SourceConnStr = row.RequiredText("SourceConnStr");
    SessionDef.TargetConnStr = row.RequiredText("TargetConnStr");
    SessionDef.SourceDBName = row.RequiredText("SourceDBName");
    SessionDef.TargetDBName = row.RequiredText("TargetDBName");
    SessionDef.SourceType = row.TextOr("SourceType", "");
    SessionDef.TargetType = row.TextOr("TargetType", "");
    SessionDef.SrcDBFPath = row.RequiredText("SrcDBFPath");
    SessionDef.DBFPath = row.RequiredText("DBFPath");
    SessionDef.LogFileName = row.TextOr("logfilename", "");
    SessionDef.SessionName = row.RequiredText("SessionName");
    SessionDef.FPattern = row.RequiredText("FPattern");
    SessionDef.FRename = row.RequiredText("FRename");
    SessionDef.FolderName = row.RequiredText("FolderName");
    RepoRs->Close();
}

}  // namespace varnel
