#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "app/shared/Yield.h"
#include "load/ElapsedTime.h"
#include "load/LoadSession.h"
#include "load/TargetTable.h"
#include "load/TransferRows.h"
#include "platform/Clock.h"
#include "polling/RenameProcessedFile.h"
#include "repository/model/SessionModel.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

const std::string kFinish = "*******( F.I.N.I.S.H )*********";

void StartRun(const std::string& LogFile) {
    EngineLogFile = LogFile;
    SessionError = false;
    CancelRequested = false;
    WriteLog(EngineLogFile, "VROPEN");
    WriteLog(EngineLogFile, "Starter loading at :" + NowText());
    if (ShowOutput) {
        Form14().ReplaceLogTxt("Started loading at :" + NowText());
        Form14().RefreshLogTxt();
    }
    CreatedTables.Clear();
    CreatedTables.Resize(static_cast<std::size_t>(SourceTables.Count()));
}

/// By TableExists and the load option; any other option on an existing table means that rows are appended.
bool PrepareTable(std::int16_t i) {
    const TableEntry& table = SourceTables(i);
    if (!table.TableExists) return CreateTargetTable(i);
    if (table.LoadOption == "DROP") return DropTargetTable(i) && CreateTargetTable(i);
    if (table.LoadOption == "DELETE") return DeleteTargetRows(i);
    return true;
}

void NoteCreatedTable(std::int16_t i) {
    if (SourceTables(i).FirstTimeLoadOpt != "CREATE") return;
    TableEntry& created = CreatedTables(i);
    created.TabID = SourceTables(i).TabID;
    created.TableName = SourceTables(i).TableName;
    created.FirstTimeLoadOpt = "CREATED";
}

void ReportTableTime(DateTime TableStart, DateTime TableEnd) {
    WriteLog(EngineLogFile, "Time Elapsed :" + ElapsedForLog(TableStart, TableEnd));
    if (!ShowOutput) return;
    Form14().AppendLogTxt(" Time Elapsed :" + ElapsedForWindow(TableStart, TableEnd));
    Form14().RefreshLogTxt();
}

/// Prepares table i and copies its rows. Returns true when it was prepared and its transfer ended normally.
bool LoadTable(std::int16_t i) {
    const DateTime TableStart = NowToTheSecond();
    if (!PrepareTable(i)) return false;
    NoteCreatedTable(i);
    const bool transferred = SessionDef.TargetDBName == "MySQL" ? TransferRowsMulti(i) : TransferRows(i);
    ReportTableTime(TableStart, NowToTheSecond());
    return transferred;
}

void WriteLastLines(DateTime SessionStart, DateTime SessionEnd) {
    if (EngineLogFile.empty()) {
        SessionError = true;
        return;
    }
    WriteLog(EngineLogFile, "End of Session " + SessionDef.SessionName);
    WriteLog(EngineLogFile, "End Time is :" + NowText());
    WriteLog(EngineLogFile, "Total Time Elapsed for Session:" + ElapsedForLog(SessionStart, SessionEnd));
    WriteLog(EngineLogFile, kFinish);
    CloseLog();
}

void ShowLastLines(DateTime SessionStart, DateTime SessionEnd) {
    if (!ShowOutput) return;
    ProgressForm& form = Form14();
    form.SetLabel2("");
    form.AppendLogTxt("\r\nEnd Time is :" + NowText());
    form.AppendLogTxt("\r\nTotal Time Elapsed for Session:" + ElapsedForWindow(SessionStart, SessionEnd));
    form.AppendLogTxt("\r\n" + kFinish);
    form.ScrollLogTxt();
}

}  // namespace

void LoadSessionTables(const std::string& LogFile) {
    const DateTime SessionStart = NowToTheSecond();
    StartRun(LogFile);
    for (std::int16_t i = 0; i < SourceTables.Count(); ++i) {
        const bool transferred = LoadTable(i);
        TakeCancelSignal();
        if (CancelRequested) break;
        if (SessionDef.SourceDBName == "TEXTPOLL" && transferred) RenameProcessedFile(SourceTables(i).TableName);
    }
    const DateTime SessionEnd = NowToTheSecond();
    WriteLastLines(SessionStart, SessionEnd);
    ShowLastLines(SessionStart, SessionEnd);
}

}  // namespace varnel
