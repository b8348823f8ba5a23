#include "load/TargetTable.h"

#include <string>

#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "app/shared/SessionLog.h"
#include "load/TargetStatements.h"
#include "platform/Error.h"
#include "repository/model/SessionModel.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

const std::string kLineEnd = "\r\n";

void Show(const std::string& text) {
    if (ShowOutput) Form14().AppendLogTxt(text);
}

void ShowAndScroll(const std::string& text) {
    if (!ShowOutput) return;
    Form14().AppendLogTxt(text);
    Form14().ScrollLogTxt();
}

void Log(const std::string& text) {
    WriteLog(EngineLogFile, text);
}

Connection OpenTarget() {
    Connection connection;
    connection.CursorLocation = adUseClient;
    connection.Open(SessionDef.TargetConnStr);
    return connection;
}

void NoteFailedPreparation() {
    SessionError = true;
    ++Tally.failures;
}

/// Runs one statement against the target. Returns "" on success, else the failure's description.
template <class Step>
std::string Attempt(Step&& step) {
    try {
        step();
        return "";
    } catch (const Error& error) {
        NoteFailedPreparation();
        const std::string text = error.what();
        return text.empty() ? "Automation error" : text;
    }
}

}  // namespace

bool DropTargetTable(std::int16_t i) {
    const std::string T = DestTables(i).TableName;
    Log("About to Drop table :" + T);
    Show(kLineEnd + "About to Drop Table :" + T);
    const std::string failure = Attempt([&] {
        Connection connection = OpenTarget();
        connection.Close();
        OpenTarget().Execute(DropStatement(i));
    });
    const std::string outcome =
        failure.empty() ? T + " Table dropped" : T + " Table Cannot be Dropped" + kLineEnd + failure;
    Log(outcome);
    ShowAndScroll(kLineEnd + outcome);
    return failure.empty();
}

bool DeleteTargetRows(std::int16_t i) {
    const std::string T = DestTables(i).TableName;
    Connection connection;
    std::string failure = Attempt([&] { connection = OpenTarget(); });
    if (failure.empty()) {
        Log("About to delete existing rows from " + T);
        Show(kLineEnd + "About to delete existing rows from " + T);
        failure = Attempt([&] { connection.Execute(DeleteStatement(i)); });
    }
    const std::string outcome = failure.empty() ? "Existing Rows deleted succesfully from table " + T
                                                : "Error deleting rows from table " + T + kLineEnd + failure;
    Log(outcome);
    ShowAndScroll(kLineEnd + outcome);
    return failure.empty();
}

bool CreateTargetTable(std::int16_t i) {
    const std::string S = SourceTables(i).TableName;
    const std::string T = DestTables(i).TableName;
    Log("About To Create Table " + S);
    ShowAndScroll(kLineEnd + "About To Create Table " + S + kLineEnd);
    const std::string failure = Attempt([&] {
        const std::string statement = CreateStatement(i);
        OpenTarget().Execute(statement);
    });
    if (failure.empty()) {
        Log(S + " Table Created Successfully" + kLineEnd);
        ShowAndScroll(kLineEnd + T + " Table Created Successfully" + kLineEnd);
        return true;
    }
    Log("Error Creating Table " + S + kLineEnd);
    Log(failure);
    Show(kLineEnd + "Error Creating Table " + T + kLineEnd);
    ShowAndScroll(kLineEnd + failure);
    return false;
}

}  // namespace varnel
