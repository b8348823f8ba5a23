#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "app/shared/Yield.h"
#include "load/BatchInsert.h"
#include "load/RecordValues.h"
#include "load/RowCopy.h"
#include "load/TargetStatements.h"
#include "load/TransferRows.h"
#include "load/TransferSteps.h"
#include "source/SourceQuery.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

constexpr std::int32_t kRowsPerStatement = 100;

/// The transfer of one table into MySQL; Run reads as the list of its steps.
class MultiRowTransfer {
public:
    explicit MultiRowTransfer(std::int16_t i)
        : transfer_{i}, trap_([this](const Error& error) { Report(error); }, [this] { GiveUp(); }) {}

    bool Run() {
        return trap_.Run([this] {
            Announce();
            OpenSource();
            SourceHasLongFields() ? WriteRecordByRecord() : WriteBatches();
            trap_.Try([] { SrcRs->Close(); });
            ReportEndOfTable(transfer_);
            return true;
        });
    }

private:
    void Announce();
    void OpenSource();
    void WriteBatches();
    void AddRow(BatchInsert& batch);
    void Send(BatchInsert& batch, std::string_view ending);
    void Settle();
    void WriteRecordByRecord();
    void ShowIfRowOk() {
        if (transfer_.rowOk) ShowLoadedRows(transfer_);
    }
    void MoveToNextSourceRow() {
        trap_.Try([] { SrcRs->MoveNext(); });
    }
    void Report(const Error& error);
    void GiveUp();

    Transfer transfer_;
    FailureTrap trap_;
    Command command_;        // sends the batches
    bool underWay_ = false;  // the server works on a batch whose outcome is not known yet
};

void MultiRowTransfer::Announce() {
    LogAndShow("About to Insert Rows in " + SourceTables(transfer_.i).TableName,
               "About to Insert Rows in " + DestTables(transfer_.i).TableName + " Table");
}

void MultiRowTransfer::OpenSource() {
    trap_.Need([] { OpenSourceConnection(); });
    const SourceQueries queries = BuildSourceQueries(transfer_.i, "Select Count(*) ", MySqlFrom::OwnerAndTable);
    trap_.Try([&] { transfer_.total = CountSourceRows(queries.count, adOpenForwardOnly); });
    trap_.Need([&] { OpenSourceRows(queries.select, adOpenForwardOnly); });
}

void MultiRowTransfer::WriteBatches() {
    command_.CommandType = adCmdText;
    trap_.Need([&] { command_.SetActiveConnection(SessionDef.TargetConnStr); });
    BatchInsert batch(BuildWritingTexts(transfer_.i).insert);
    StartProgress(transfer_);
    for (auto at = TestSource(trap_); at != SourcePosition::AtEnd; at = TestSource(trap_)) {
        if (at == SourcePosition::Broken) continue;
        AddRow(batch);
        MoveToNextSourceRow();
        if (transfer_.loaded % kRowsPerStatement != 0) continue;
        Send(batch, ";");
        ShowRowPro(transfer_.loaded);
        YieldToUserInterface();
        if (CancelRequested) break;
        ShowIfRowOk();
    }
    if (!batch.Empty() && !CancelRequested) Send(batch, "");
    Settle();
    ShowIfRowOk();
}

/// Every row counts, also one whose values failed: the statement that carries it is then rejected as a whole.
void MultiRowTransfer::AddRow(BatchInsert& batch) {
    transfer_.rowOk = true;
    batch.StartRow();
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) {
        trap_.Try([&] {
            const Field& field = SrcRs->Fields(k);
            batch.AddValue(field.Type(), field.GetValue());
        });
    }
    batch.EndRow();
    ++transfer_.loaded;
}

/// The next batch is built while the server works on this one. Nobody sees a difference: its outcome is settled before
/// anything else is reported or sent, and at once when a window shows the progress.
void MultiRowTransfer::Send(BatchInsert& batch, std::string_view ending) {
    Settle();
    underWay_ = trap_.Try([&] {
        command_.CommandText = batch.Finish(ending);
        command_.Start();
    });
    if (ShowOutput) Settle();
    batch.Clear();
}

void MultiRowTransfer::Settle() {
    if (!underWay_) return;
    underWay_ = false;
    trap_.Try([this] { command_.Finish(); });
}

void MultiRowTransfer::WriteRecordByRecord() {
    trap_.Need([] {
        DestConn = std::make_unique<Connection>();
        DestConn->CursorLocation = adUseClient;
        DestConn->Open(SessionDef.TargetConnStr);
    });
    trap_.Need([&] {
        DestRs = std::make_unique<Recordset>();
        DestRs->Open(BuildWritingTexts(transfer_.i).select, *DestConn, adOpenStatic, adLockOptimistic);
    });
    RecordRows rows([](const Field& from, const Field&, Value& scratch) -> const Value& {
        return MySqlRecordValue(from.Type(), from.GetValue(), scratch);
    });
    RowCopy(transfer_, trap_, rows, RowCopy::FailedRow::LeavesTheBar).Run();
    trap_.Try([] { DestRs->Close(); });
}

void MultiRowTransfer::Report(const Error& error) {
    Settle();
    transfer_.rowOk = false;
    LogAndShow(std::string("Error Loading Row\r\n") + error.what(),
               "Error Loading Row:" + std::to_string(transfer_.loaded) + "\r\n" + error.what());
}

void MultiRowTransfer::GiveUp() {
    SettleGivenUpTable([this](const Error& error) { Report(error); });
    const std::string head = "Aborting Loading Rows for Table :" + SourceTables(transfer_.i).TableName;
    LogAndShow(head + " As Errors Exceeded Max Allowed", head + " As Errors Exceeded 50 Allowed");
}

}  // namespace

bool TransferRowsMulti(std::int16_t i) {
    return MultiRowTransfer(i).Run();
}

}  // namespace varnel
