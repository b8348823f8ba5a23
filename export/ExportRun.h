// One export run: what ExportToText and ExportTextToText do alike, and where they differ.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/shared/FailureTrap.h"
#include "export/CellRules.h"
#include "export/OutputLines.h"
#include "repository/model/SessionModel.h"
#include "ui/RowCounter.h"

namespace varnel {

/// Which export runs: cells by the source field's type, or by the stored output type of the column.
enum class ExportKind { FromDatabase, FromText };

class ExportRun {
public:
    ExportRun(ExportKind kind, std::string logFileName);
    /// Exports all tables, from the log's opening to its closing lines.
    void Run();

private:
    void StartRun();
    void EndRun();

    void ExportTable(std::int16_t i);
    void Announce(const TableEntry& table);
    void OpenSource(std::int16_t i);
    void CheckLongColumns();
    void DescribeCells(std::int16_t TabID);
    void WriteHeader(std::int16_t TabID);
    bool IsSkipped();
    void WriteRows();
    void WriteRow();
    void AddCell(std::size_t k);
    void CountRow();
    void CloseTable();
    void ReportRows();

    void Log(std::string_view line) const;
    void LogAndAppend(std::string_view line) const;
    void Report(const Error& error);
    void GiveUp();

    const ExportKind kind_;
    const std::string logFileName_;
    const bool delimited_;
    const bool fixed_;
    FailureTrap trap_;
    OutputLines lines_;

    // Of the table at hand.
    std::vector<CellRule> rules_;
    double total_ = 0;
    double loaded_ = 0;
    double processed_ = 0;
    RowCounter counter_;
    bool longColumns_ = false;
    bool rowOk_ = true;
};

}  // namespace varnel
