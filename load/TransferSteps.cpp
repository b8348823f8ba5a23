#include "load/TransferSteps.h"

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "ui/ProgressForm.h"

namespace varnel {

void OpenSourceConnection() {
    SrcConn = std::make_unique<Connection>();
    SrcConn->CursorLocation = adUseClient;
    SrcConn->Open(SessionDef.SourceConnStr);
}

double CountSourceRows(const std::string& countQuery, CursorTypeEnum cursorType) {
    SrcRs = std::make_unique<Recordset>();
    SrcRs->Open(countQuery, SessionDef.SourceConnStr, cursorType, adLockReadOnly);
    const double total = ToDouble(SrcRs->Fields(0).GetValue());
    SrcRs->Close();
    return total;
}

void OpenSourceRows(const std::string& select, CursorTypeEnum cursorType) {
    SrcRs = std::make_unique<Recordset>();
    if (SessionDef.SourceDBName == "MySQL") {
        SrcRs->Open(select, *SrcConn, adOpenStatic, adLockReadOnly);
    } else {
        SrcRs->Open(select, SessionDef.SourceConnStr, cursorType, adLockReadOnly);
    }
}

bool SourceHasLongFields() {
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) {
        if (IsLongOrBinary(SrcRs->Fields(k).Type())) return true;
    }
    return false;
}

SourcePosition TestSource(FailureTrap& trap) {
    bool atEnd = false;
    if (!trap.Try([&] { atEnd = SrcRs->Eof(); })) return SourcePosition::Broken;
    return atEnd ? SourcePosition::AtEnd : SourcePosition::OnRow;
}

void StartProgress(Transfer& transfer) {
    if (!ShowOutput) return;
    transfer.counter.Start(DefaultText(Value::OfDouble(transfer.total)));
    Form14().SetRowProMin(1);
    if (transfer.total > 1) Form14().SetRowProMax(static_cast<float>(transfer.total));
}

void ShowRowPro(std::int32_t value) {
    if (ShowOutput) Form14().SetRowProValue(static_cast<float>(value));
}

void ShowLoadedRows(Transfer& transfer) {
    if (!ShowOutput) return;
    Form14().SetLabel2(transfer.counter.Text(transfer.loaded));
    Form14().RefreshLabel2();
}

void ReportEndOfTable(const Transfer& transfer) {
    const std::string line = " " + std::to_string(transfer.loaded) + " Rows Loaded";
    LogAndShow(line, line);
    if (!ShowOutput) return;
    Form14().RefreshLogTxt();
    if (CancelRequested) AppendWindowLine("User Requested to cancel loading");
}

void SettleGivenUpTable(const std::function<void(const Error&)>& report) {
    SrcRs = std::make_unique<Recordset>();
    if (!DestRs || !DestRs->IsOpen()) return;
    try {
        DestRs->Close();
    } catch (const Error& error) {
        report(error);
    }
}

}  // namespace varnel
