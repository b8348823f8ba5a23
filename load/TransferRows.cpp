#include "load/TransferRows.h"

#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "load/RecordValues.h"
#include "load/RowCopy.h"
#include "load/TargetStatements.h"
#include "load/TransferSteps.h"
#include "source/SourceQuery.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

/// The transfer of one table; Run reads as the list of its steps.
class RowTransfer {
public:
    explicit RowTransfer(std::int16_t i)
        : transfer_{i}, trap_([this](const Error& error) { Report(error); }, [this] { GiveUp(); }) {}

    bool Run() {
        return trap_.Run([this] {
            Announce();
            OpenSource();
            if (SessionDef.TargetDBName == "ORACLE" && !SourceHasLongFields()) {
                WriteByParameters();
            } else {
                WriteRecordByRecord();
            }
            trap_.Try([] { SrcRs->Close(); });
            ReportEndOfTable(transfer_);
            return true;
        });
    }

private:
    void Announce();
    void OpenSource();
    void WriteByParameters();
    void WriteRecordByRecord();
    void PrepareCommand(Command& command);
    void CopyInto(TargetRows& target);
    void Report(const Error& error);
    void GiveUp();

    Transfer transfer_;
    FailureTrap trap_;
    WritingTexts target_;
    RowCopy* copying_ = nullptr;
};

void RowTransfer::Announce() {
    const std::string& S = SourceTables(transfer_.i).TableName;
    LogAndShow("About to Insert Rows in " + S,
               "About to Insert Rows from " + S + " to " + DestTables(transfer_.i).TableName);
}

void RowTransfer::OpenSource() {
    target_ = BuildWritingTexts(transfer_.i);
    trap_.Need([] { OpenSourceConnection(); });
    const SourceQueries queries = BuildSourceQueries(transfer_.i, "Select count(*) ", MySqlFrom::OwnerAndTable);
    const CursorTypeEnum countCursor = SessionDef.TargetDBName == "MSSQL" ? adOpenForwardOnly : adOpenKeyset;
    trap_.Try([&] { transfer_.total = CountSourceRows(queries.count, countCursor); });
    trap_.Need([&] { OpenSourceRows(queries.select, adOpenKeyset); });
}

void RowTransfer::WriteByParameters() {
    Command command;
    trap_.Need([&] { PrepareCommand(command); });
    ParameterRows rows(command);
    CopyInto(rows);
    trap_.Try([&] { command.Commit(); });
}

void RowTransfer::CopyInto(TargetRows& target) {
    RowCopy copy(transfer_, trap_, target, RowCopy::FailedRow::MovesTheBar);
    copying_ = &copy;
    copy.Run();
    copying_ = nullptr;
}

void RowTransfer::PrepareCommand(Command& command) {
    command.CommandType = adCmdText;
    command.SetActiveConnection(SessionDef.TargetConnStr);
    command.CommandText = target_.insert;
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) {
        const Field& field = SrcRs->Fields(k);
        command.CommandText += "?,";
        Parameter parameter;
        parameter.Name = field.Name();
        parameter.Type = MapParamType(field.Type());
        parameter.Size = field.DefinedSize();
        parameter.NumericScale = field.NumericScale();
        parameter.Precision = field.Precision();
        command.Parameters.Append(std::move(parameter));
    }
    command.CommandText.back() = ')';
}

void RowTransfer::WriteRecordByRecord() {
    trap_.Need([] {
        DestConn = std::make_unique<Connection>();
        DestConn->Open(SessionDef.TargetConnStr);
    });
    trap_.Need([&] {
        DestRs = std::make_unique<Recordset>();
        DestRs->Open(target_.select, *DestConn, adOpenDynamic, adLockOptimistic);
    });
    RecordRows rows([](const Field& from, const Field& into, Value& scratch) -> const Value& {
        return RecordValue(from.Type(), from.GetValue(), into.Type(), scratch);
    });
    CopyInto(rows);
    trap_.Try([] { DestRs->Close(); });
}

void RowTransfer::Report(const Error& error) {
    const bool polled = SessionDef.SourceDBName == "TEXTPOLL";
    constexpr std::string_view kHint =
        "f Folder Polling is selected as source then, the files must be of same structure";
    if (copying_ != nullptr) copying_->Settle();
    transfer_.rowOk = false;
    WriteLog(EngineLogFile, std::string("Error Loading Row\r\n") + error.what());
    if (polled) WriteLog(EngineLogFile, "i" + std::string(kHint));
    if (!ShowOutput) return;
    AppendWindowLine("Error Loading Row:" + std::to_string(transfer_.attempted) + "\r\n0 " + error.what());
    if (polled) AppendWindowLine("I" + std::string(kHint));
}

void RowTransfer::GiveUp() {
    SettleGivenUpTable([this](const Error& error) { Report(error); });
    const std::string line =
        "Aborting Loading Rows for Table :" + SourceTables(transfer_.i).TableName + " As Errors Exceeded 50 Allowed";
    LogAndShow(line, line);
}

}  // namespace

DataTypeEnum MapParamType(DataTypeEnum t) {
    const bool oracle = SessionDef.TargetDBName == "ORACLE";
    if (t == adVarWChar) return adVarChar;
    if (t == adVarNumeric) return adNumeric;
    if (t == adBoolean && oracle) return adVarChar;
    if (t == adCurrency && oracle) return adVarNumeric;
    return t;
}

bool TransferRows(std::int16_t i) {
    return RowTransfer(i).Run();
}

}  // namespace varnel
