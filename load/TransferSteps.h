// The steps that both ways of copying a table's rows share: source, counters, progress.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/shared/FailureTrap.h"
#include "repository/model/SessionModel.h"
#include "ui/RowCounter.h"

namespace varnel {

/// One table's transfer while it runs.
struct Transfer {
    std::int16_t i;              ///< the table's index in SourceTables and DestTables
    double total = 0;            ///< rows that the count query returned; 0 when it failed
    std::int32_t loaded = 0;     ///< rows counted as loaded
    std::int32_t attempted = 0;  ///< rows whose write was attempted
    bool rowOk = true;           ///< no failure yet in the row at hand
    RowCounter counter = {};     ///< Label2's text, once the progress has started
};

/// Creates SrcConn anew and opens it on the source. Throws Error.
void OpenSourceConnection();
/// The count query's number; SrcRs is created anew and closed afterwards. Throws Error.
double CountSourceRows(const std::string& countQuery, CursorTypeEnum cursorType);
/// Opens SrcRs, created anew, on the SELECT: a MySQL source through SrcConn with a static cursor, any other by
/// connection string with cursorType. Throws Error.
void OpenSourceRows(const std::string& select, CursorTypeEnum cursorType);
/// True when a field of SrcRs is long or binary.
bool SourceHasLongFields();

enum class SourcePosition { OnRow, AtEnd, Broken };
/// Where SrcRs stands. A failed test is reported by the trap, which ends the transfer when it fails too often.
SourcePosition TestSource(FailureTrap& trap);

/// The progress bar and the counter before the row loop.
void StartProgress(Transfer& transfer);
void ShowRowPro(std::int32_t value);
/// Label2: "120 of 5000 Rows Loaded", repainted.
void ShowLoadedRows(Transfer& transfer);
/// The lines at a table's end: " 120 Rows Loaded" in log and window, and the window's word on a cancel.
void ReportEndOfTable(const Transfer& transfer);
/// Ends the read and commits what was written when a transfer is given up. report: gets what fails in it.
void SettleGivenUpTable(const std::function<void(const Error&)>& report);

}  // namespace varnel
