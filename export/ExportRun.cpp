#include "export/ExportRun.h"

#include <cmath>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "app/shared/Yield.h"
#include "export/DBToText.h"
#include "source/SourceQuery.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

constexpr int kWindowsLatin = 1252;

/// Raises when the source rows could not be opened.
void RequireSourceRows() {
    SrcRs->Eof();
}

std::string CountText(double count) {
    return DefaultText(Value::OfDouble(count));
}

}  // namespace

ExportRun::ExportRun(ExportKind kind, std::string logFileName)
    : kind_(kind),
      logFileName_(std::move(logFileName)),
      delimited_(SessionDef.FileFormat == "DELIMITED"),
      fixed_(SessionDef.FileFormat == "FIXED"),
      trap_([this](const Error& error) { Report(error); }, [this] { GiveUp(); }),
      lines_(kWindowsLatin) {}

void ExportRun::Run() {
    StartRun();
    trap_.Run([this] {
        trap_.Need([this] { lines_ = OutputLines(ExportCodePage(SessionDef.TargetConnStr)); });
        for (std::int16_t i = 0; i < SourceTables.Count(); ++i) {
            ExportTable(i);
            TakeCancelSignal();
            if (CancelRequested) break;
        }
        EndRun();
        return true;
    });
}

void ExportRun::StartRun() {
    WriteExportLog(logFileName_, "VROPEN");
    if (ShowOutput) Form14().ReplaceLogTxt("Started Loading at " + NowText());
}

void ExportRun::EndRun() {
    Log("End Time is :" + NowText());
    Log("******( FINISH )*******");
    WriteExportLog(logFileName_, "VRCLOSE");
    if (!ShowOutput) return;
    AppendWindowLine("End Time is :" + NowText());
    AppendWindowLine("******( FINISH )*******");
    if (CancelRequested) AppendWindowLine("User Requested to abort loading");
}

void ExportRun::ExportTable(std::int16_t i) {
    const TableEntry& table = SourceTables(i);
    total_ = loaded_ = processed_ = 0;
    Announce(table);
    OpenSource(i);
    if (fixed_) trap_.Try([this] { CheckLongColumns(); });
    rules_.clear();
    trap_.Try([&] { DescribeCells(table.TabID); });
    trap_.Try([&] { lines_.Open(DestTables(i).TableName); });
    if (SessionDef.DFirstColLine) WriteHeader(table.TabID);
    const bool skipped = IsSkipped();
    if (!skipped) WriteRows();
    CloseTable();
    if (!skipped) ReportRows();
}

void ExportRun::Announce(const TableEntry& table) {
    std::string place = "About to Start Loading Rows in :" + SessionDef.TextDirDest;
    if (!SessionDef.TextDirDest.ends_with('\\')) place += '\\';
    place += table.TableName;
    Log(place + SessionDef.FileExt);
    if (ShowOutput) AppendWindowLine(kind_ == ExportKind::FromText ? place : place + SessionDef.FileExt);
}

void ExportRun::OpenSource(std::int16_t i) {
    const SourceQueries queries = BuildSourceQueries(i, " Select count(*) ", MySqlFrom::TableOnly);
    const auto open = [](const std::string& query) {
        SrcRs->Open(query, SessionDef.SourceConnStr, adOpenForwardOnly, adLockReadOnly);
    };
    SrcRs = std::make_unique<Recordset>();
    trap_.Try([&] {
        open(queries.count);
        total_ = ToDouble(SrcRs->Fields(0).GetValue());
        SrcRs->Close();
    });
    if (ShowOutput) {
        counter_.Start(CountText(total_));
        Form14().SetRowProMin(1);
        if (total_ > 1) Form14().SetRowProMax(static_cast<float>(total_));
    }
    if (SrcRs->IsOpen()) SrcRs = std::make_unique<Recordset>();
    trap_.Try([&] { open(queries.select); });
}

void ExportRun::CheckLongColumns() {
    longColumns_ = false;
    RequireSourceRows();
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) longColumns_ |= IsLongOrBinary(SrcRs->Fields(k).Type());
    if (!longColumns_) return;
    LogAndAppend(
        "Table Contains Long Datatypes. Cannot Create Fixed Length File. Pl Choose Delimited Format or De-Select the "
        "Long Columns.");
}

/// One rule per field.
void ExportRun::DescribeCells(std::int16_t TabID) {
    RequireSourceRows();
    const auto columns = SelectedColumns(TabID);
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) {
        const Field& field = SrcRs->Fields(k);
        const bool byName = kind_ == ExportKind::FromText && k < columns.size();
        rules_.push_back({byName ? GroupOfTypeName(columns[k]->DDType) : GroupOfType(field.Type()), field.Type(),
                          field.DefinedSize(), kind_ == ExportKind::FromText});
    }
}

void ExportRun::WriteHeader(std::int16_t TabID) {
    std::size_t index = 0;
    for (const ColumnEntry* column : SelectedColumns(TabID)) {
        trap_.Try([&] {
            if (index > 0 && delimited_) lines_.AddText(SessionDef.DFormat);
            lines_.Add([&](std::string& out) { AppendHeaderCell(out, *column, delimited_); });
        });
        ++index;
    }
    trap_.Try([this] { lines_.EndLine(); });
}

bool ExportRun::IsSkipped() {
    if (fixed_ && longColumns_) {
        Log("Skipping Table");
        if (ShowOutput) AppendWindowLine("Skipping table");
        return true;
    }
    return total_ <= 0;
}

void ExportRun::WriteRows() {
    constexpr double kRowsPerYield = 100;
    while (true) {
        bool atEnd = false;
        if (!trap_.Try([&] { atEnd = SrcRs->Eof(); })) continue;  // until the failures pass the limit
        if (atEnd) return;
        WriteRow();
        if (std::fmod(loaded_, kRowsPerYield) == 0) YieldToUserInterface();
        if (CancelRequested) return;
        ++processed_;
        if (rowOk_) CountRow();
        trap_.Try([] { SrcRs->MoveNext(); });
    }
}

void ExportRun::WriteRow() {
    rowOk_ = true;
    for (std::size_t k = 0; k < rules_.size(); ++k) {
        if (k > 0 && delimited_) lines_.AddText(SessionDef.DFormat);
        AddCell(k);
    }
    trap_.Try([this] { lines_.EndLine(); });
}

/// A cell that fails is empty, or blanks of its width.
void ExportRun::AddCell(std::size_t k) {
    const CellRule& rule = rules_[k];
    const bool filled = trap_.Try([&] {
        const Value& value = SrcRs->Fields(k).GetValue();
        lines_.Add([&](std::string& out) {
            if (delimited_) return AppendDelimitedCell(out, rule, value, SessionDef.DTextQ);
            AppendFixedCell(out, rule, value);
        });
    });
    if (filled || delimited_) return;
    trap_.Try([&] { lines_.Add([&](std::string& out) { AppendFailedFixedCell(out, rule); }); });
}

void ExportRun::CountRow() {
    ++loaded_;
    if (!ShowOutput) return;
    if (loaded_ <= total_) Form14().SetRowProValue(static_cast<float>(loaded_));
    Form14().SetLabel2(counter_.Text(static_cast<std::int64_t>(loaded_)));
    Form14().RefreshLabel2();
}

void ExportRun::CloseTable() {
    trap_.Try([] { SrcRs->Close(); });
    trap_.Try([this] { lines_.Close(); });
}

void ExportRun::ReportRows() {
    LogAndAppend(CountText(loaded_) + " Rows Loaded");
}

void ExportRun::Log(std::string_view line) const {
    WriteExportLog(logFileName_, line);
}

void ExportRun::LogAndAppend(std::string_view line) const {
    Log(line);
    if (ShowOutput) AppendWindowLine(line);
}

void ExportRun::Report(const Error& error) {
    rowOk_ = false;
    std::string entry = error.what();
    if (kind_ == ExportKind::FromDatabase) entry = "Error Loading Row:" + CountText(processed_) + "\r\n" + entry;
    LogAndAppend(entry);
}

/// The output file keeps the lines written so far; the log stays without its closing lines.
void ExportRun::GiveUp() {
    LogAndAppend("Aborting loading as Errors exceed 50 allowed");
    SrcRs = std::make_unique<Recordset>();
    lines_.CloseQuietly();
    WriteExportLog(logFileName_, "VRCLOSE");
}

}  // namespace varnel
