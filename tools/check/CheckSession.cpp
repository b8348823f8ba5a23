#include "tools/check/CheckSession.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "load/TargetStatements.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "source/SourceQuery.h"
#include "tools/check/ExportRules.h"
#include "tools/check/FitRules.h"
#include "tools/check/NameRules.h"
#include "tools/check/PollRules.h"
#include "tools/check/ReadDefinition.h"
#include "tools/check/SessionRules.h"
#include "tools/check/SourceRules.h"
#include "tools/check/TargetRules.h"
#include "tools/check/ValueRules.h"

namespace varnel::admin {
namespace {

Preparation PreparationOf(const TableEntry& table) {
    if (SessionDef.TargetDBName == "TEXT") return Preparation::Export;
    if (!table.TableExists) return Preparation::Create;
    if (table.LoadOption == "DROP") return Preparation::DropAndCreate;
    return table.LoadOption == "DELETE" ? Preparation::Empty : Preparation::Append;
}

std::string PreparationText(Preparation preparation) {
    switch (preparation) {
        case Preparation::Create:
            return "makes the table";
        case Preparation::DropAndCreate:
            return "drops the table and makes it again";
        case Preparation::Empty:
            return "deletes the rows that are there";
        case Preparation::Export:
            return "writes the file anew";
        case Preparation::Append:
            break;
    }
    return "keeps the rows that are there";
}

/// Known once the source's fields are.
WayOfWriting WayOf(const TableFacts& facts) {
    if (facts.preparation == Preparation::Export) return WayOfWriting::TextLines;
    const bool hasLong = std::any_of(facts.source.begin(), facts.source.end(),
                                     [](const ColumnInfo& column) { return IsLongOrBinary(column.type); });
    if (hasLong) return WayOfWriting::NewRecords;
    if (SessionDef.TargetDBName == "MySQL") return WayOfWriting::Batches;
    return SessionDef.TargetDBName == "ORACLE" ? WayOfWriting::Parameters : WayOfWriting::NewRecords;
}

std::string WayText(WayOfWriting way) {
    switch (way) {
        case WayOfWriting::Batches:
            return "100 rows a statement";
        case WayOfWriting::Parameters:
            return "one prepared INSERT, row by row";
        case WayOfWriting::TextLines:
            return SessionDef.FileFormat == "DELIMITED" ? "one delimited line a row" : "one fixed-width line a row";
        case WayOfWriting::NewRecords:
            break;
    }
    return "record by record";
}

std::vector<TableFacts> FactsOfTables(CheckReport& report) {
    report.tables.resize(static_cast<std::size_t>(SourceTables.Count()));
    std::vector<TableFacts> tables(report.tables.size());
    for (std::size_t k = 0; k < tables.size(); ++k) {
        TableFacts& facts = tables[k];
        facts.i = static_cast<std::int16_t>(k);
        facts.report = &report.tables[k];
        facts.preparation = PreparationOf(facts.From());
        facts.columns = SelectedColumns(facts.From().TabID);
        facts.written = TargetColumns(facts.i);
        facts.report->source = facts.From().TableName;
        facts.report->target = facts.To().TableName;
        facts.report->preparation = PreparationText(facts.preparation);
    }
    return tables;
}

/// What a run sends, in its order.
void AddStatements(const TableFacts& facts) {
    std::vector<std::string>& out = facts.report->statements;
    if (facts.preparation == Preparation::Empty) out.push_back(DeleteStatement(facts.i));
    if (facts.preparation == Preparation::DropAndCreate) out.push_back(DropStatement(facts.i));
    if (facts.Makes()) out.push_back(CreateStatement(facts.i));
    const SourceQueries queries = QueriesOf(facts);
    out.push_back(queries.count);
    out.push_back(queries.select);
    if (facts.preparation == Preparation::Export) return;
    const WritingTexts texts = BuildWritingTexts(facts.i);
    out.push_back(facts.way == WayOfWriting::NewRecords ? texts.select : texts.insert + "...");
}

/// A table that is read and written in the same database.
void CheckOwnTail(const TableFacts& facts) {
    const bool sameDatabase = SessionDef.SourceConnStr == SessionDef.TargetConnStr;
    const bool sameFolder =
        SessionDef.SourceDBName != "FOXPRO" || FoldCase(SessionDef.SrcDBFPath) == FoldCase(SessionDef.DBFPath);
    const bool sameTable = FoldCase(facts.From().TableName) == FoldCase(facts.To().TableName) &&
                           FoldCase(facts.From().OwnerName) == FoldCase(facts.To().OwnerName);
    if (facts.preparation == Preparation::Export || !sameDatabase || !sameFolder || !sameTable) return;
    if (facts.preparation == Preparation::Append)
        facts.Found().Warning("", "source and target are the same table: its rows are doubled", "name another target");
    else
        facts.Found().Fault("", "source and target are the same table, which is emptied before it is read",
                            "name another target");
}

class SessionCheck {
public:
    SessionCheck(CheckReport& report, bool values)
        : report_(report),
          values_(values),
          source_("source", SessionDef.SourceDBName, SessionDef.SourceConnStr),
          target_("target", SessionDef.TargetDBName, SessionDef.TargetConnStr) {}

    void Run() {
        std::vector<TableFacts> tables = FactsOfTables(report_);
        polled_ = PolledFolderAsRead();
        if (polled_ && ReadsWherePolled()) source_.Move(polled_->Path());
        const bool sourceOpen = source_.Open(report_.findings);
        const bool exports = SessionDef.TargetDBName == "TEXT";
        const bool targetOpen = !exports && target_.Open(report_.findings);
        for (TableFacts& facts : tables) CheckTable(facts, sourceOpen, targetOpen);
        CheckTargetsOf(tables);
    }

private:
    void CheckTable(TableFacts& facts, bool sourceOpen, bool targetOpen);
    void CheckTargetsOf(const std::vector<TableFacts>& tables) {
        if (SessionDef.SourceDBName == "TEXTPOLL")
            CheckPolledFiles(tables, report_.findings);
        else
            CheckTargetsTogether(tables);
    }

    CheckReport& report_;
    bool values_;
    Side source_, target_;
    std::unique_ptr<ScratchFolder> polled_;
};

void SessionCheck::CheckTable(TableFacts& facts, bool sourceOpen, bool targetOpen) {
    CheckTableWords(facts);
    if (facts.columns.empty()) return;
    CheckOwnTail(facts);
    CheckSourceNames(facts);
    if (sourceOpen) CheckSourceTable(source_, facts);
    if (!sourceOpen) facts.Found().Note("", "the source could not be looked at");
    facts.way = WayOf(facts);
    facts.report->way = WayText(facts.way);
    AddStatements(facts);
    if (facts.preparation == Preparation::Export) {
        CheckExport(source_, facts, values_);
    } else {
        CheckTargetNames(facts);
        targetOpen ? CheckTargetTable(target_, facts) : CheckUnseenTarget(facts);
        CheckTargetColumns(facts);
        CheckFit(facts, values_);
    }
    if (values_ && sourceOpen) CheckValues(source_, facts);
}

void CheckDefinition(CheckReport& report) {
    CheckSessionWords(report.findings);
    CheckLog(report.findings);
    if (SessionDef.SourceDBName == "TEXTPOLL") CheckPolledFolder(report.findings);
    if (SessionDef.TargetDBName == "TEXT") CheckExportCodePage(report.findings);
}

}  // namespace

CheckReport CheckSession(std::int16_t id, const std::string& repositoryFile, bool values) {
    CheckReport report;
    report.session = id;
    const bool readable = ReadDefinition(id, repositoryFile, report.findings);
    report.name = SessionDef.SessionName;
    report.sourceKind = SessionDef.SourceDBName;
    report.targetKind = SessionDef.TargetDBName;
    report.log = SessionDef.LogFileName;
    if (!report.sourceKind.empty() && !report.targetKind.empty()) CheckDefinition(report);
    if (readable) SessionCheck(report, values).Run();
    ResetSessionModel();
    CloseIdleSessions();
    return report;
}

}  // namespace varnel::admin
