#include "app/RunSession.h"

#include <exception>

#include "ado/types/ValueText.h"
#include "app/ErrorLog.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "export/DBToText.h"
#include "load/LoadSession.h"
#include "platform/Clock.h"
#include "platform/StoredPath.h"
#include "repository/ReadSession.h"
#include "repository/model/SessionModel.h"
#include "ui/ProgressForm.h"

namespace varnel {

std::string RepoConnStr;

namespace {

void OpenRepository() {
    RepoConnStr = "PROVIDER=Microsoft.Jet.OLEDB.4.0;DATA SOURCE=" + ApplicationFolder() + "\\vrrepo.mdb";
    RepoConn = std::make_unique<Connection>();
    RepoRs = std::make_unique<Recordset>();
    RepoConn->Open(RepoConnStr, "", "");
}

void ReadDefinition(std::int16_t SessionID) {
    RepoOk = true;
    ReadSession(SessionID);
    if (RepoOk) ReadTables(SessionID);
    if (RepoOk) ReadColumns(SessionID);
}

void LabelWindow(std::int16_t SessionID) {
    if (!ShowOutput) return;
    Form14().SetSrcDestLabel("Source DB:" + SessionDef.SourceDBName + " To Target DB:" + SessionDef.TargetDBName);
    Form14().SetCaption("Varnel Runtime:Running Session :" + std::to_string(SessionID));
}

void RunWorker() {
    if (SessionDef.TargetDBName == "TEXT") {
        ExportToText(SessionDef.LogFileName);
    } else {
        LoadSessionTables(SessionDef.LogFileName);
    }
}

void RecordOutcome(std::int16_t SessionID, DateTime start) {
    RepoConn->Execute("update sessions set LastRunDate=\"" + ShortDate(start) + "\",LastRunTime=\"" +
                      TwelveHourTime(start) + "\",SessionError=" + (SessionError ? "1" : "0") +
                      " where sessionid=" + std::to_string(SessionID));
}

/// A table created on this run counts as existing on the next one.
void RecordCreatedTables(std::int16_t SessionID) {
    for (const TableEntry& table : CreatedTables) {
        if (table.FirstTimeLoadOpt != "CREATED") continue;
        const std::string number = (table.TabID >= 0 ? " " : "") + std::to_string(table.TabID);
        RepoConn->Execute("Update vrtabs set TableExists=1,FirstTimeLoadOpt=\"\" where vrtabs.SessionId=" +
                          std::to_string(SessionID) + " and vrtabs.tabid=" + number);
    }
}

void CarryOut(std::int16_t SessionID) {
    OpenRepository();
    const DateTime start = Now();
    ReadDefinition(SessionID);
    LabelWindow(SessionID);
    if (RepoOk) RunWorker();
    RecordOutcome(SessionID, start);
    if (SessionDef.TargetDBName != "TEXT" && RepoOk) RecordCreatedTables(SessionID);
    RepoConn->Close();
}

void EndThroughErrorLog(std::int16_t SessionID, const std::string& description) {
    Tally.endedThroughErrorLog = true;
    AppendToErrorLog(SessionID, description);
}

}  // namespace

void RunSession(std::int16_t SessionID) {
    try {
        CarryOut(SessionID);
    } catch (const std::exception& error) {
        EndThroughErrorLog(SessionID, error.what());
    }
    Tally.cancelled = CancelRequested;
    ReleaseDatabaseObjects();
}

}  // namespace varnel
