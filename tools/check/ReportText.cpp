#include "tools/check/ReportText.h"

#include "ado/types/Value.h"
#include "ado/types/ValueText.h"

namespace varnel::admin {
namespace {

constexpr Severity kOrder[] = {Severity::Fault, Severity::Warning, Severity::Note};

const char* WordOf(Severity severity) {
    if (severity == Severity::Fault) return "fault";
    return severity == Severity::Warning ? "warning" : "note";
}

std::string Rows(double count) {
    return DefaultText(Value::OfDouble(count)) + (count == 1 ? " row" : " rows");
}

/// A statement on one line, as it is sent but for line breaks and blanks at its end.
std::string OneLine(std::string statement) {
    for (char& c : statement)
        if (c == '\r' || c == '\n') c = ' ';
    statement.erase(statement.find_last_not_of(' ') + 1);
    return statement;
}

/// The worst first. indent: blanks before each line.
void AppendFindings(std::string& out, const Findings& findings, const std::string& indent) {
    for (const Severity severity : kOrder)
        for (const Finding& finding : findings.List()) {
            if (finding.severity != severity) continue;
            out += indent + WordOf(severity) + ": ";
            if (!finding.column.empty()) out += finding.column + ": ";
            out += OneLine(finding.what) + "\n";
            if (!finding.remedy.empty()) out += indent + "    -> " + OneLine(finding.remedy) + "\n";
        }
}

void AppendTable(std::string& out, const TableReport& table, std::size_t number) {
    out += "\nTable " + std::to_string(number) + ": " + table.source + " -> " + table.target + "\n";
    out += "  " + table.preparation;
    if (table.rowsInTarget) out += " (" + Rows(*table.rowsInTarget) + " now)";
    if (table.rowsToRead) out += ", reads " + Rows(*table.rowsToRead);
    if (!table.way.empty()) out += ", writes " + table.way;
    out += "\n";
    for (const std::string& statement : table.statements) out += "    " + OneLine(statement) + "\n";
    AppendFindings(out, table.findings, "  ");
    if (table.findings.List().empty()) out += "  nothing found\n";
}

std::string Counted(std::size_t count, const std::string& word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

}  // namespace

std::string ReportText(const CheckReport& report) {
    std::string out = "Session " + std::to_string(report.session);
    if (!report.name.empty()) out += " \"" + report.name + "\"";
    if (!report.sourceKind.empty()) out += ": " + report.sourceKind + " -> " + report.targetKind;
    out += report.log.empty() ? "\n" : "\n  log " + report.log + "\n";
    AppendFindings(out, report.findings, "  ");
    for (std::size_t k = 0; k < report.tables.size(); ++k) AppendTable(out, report.tables[k], k + 1);
    return out + "\n" + Counted(report.Count(Severity::Fault), "fault") + ", " +
           Counted(report.Count(Severity::Warning), "warning") + ", " + Counted(report.Count(Severity::Note), "note") +
           "; nothing was changed\n";
}

}  // namespace varnel::admin
