#include <nlohmann/json.hpp>

#include "tools/check/ReportText.h"

namespace varnel::admin {
namespace {

using Json = nlohmann::ordered_json;

Json JsonOf(const Findings& findings) {
    Json list = Json::array();
    for (const Finding& finding : findings.List()) {
        const char* severity = finding.severity == Severity::Fault     ? "fault"
                               : finding.severity == Severity::Warning ? "warning"
                                                                       : "note";
        Json entry{{"severity", severity}, {"what", finding.what}};
        if (!finding.column.empty()) entry["column"] = finding.column;
        if (!finding.remedy.empty()) entry["remedy"] = finding.remedy;
        list.push_back(std::move(entry));
    }
    return list;
}

Json NumberOf(const std::optional<double>& count) {
    return count ? Json(static_cast<std::int64_t>(*count)) : Json();
}

Json JsonOf(const TableReport& table) {
    return Json{{"source", table.source},
                {"target", table.target},
                {"preparation", table.preparation},
                {"way", table.way},
                {"rows_to_read", NumberOf(table.rowsToRead)},
                {"rows_in_target", NumberOf(table.rowsInTarget)},
                {"statements", table.statements},
                {"findings", JsonOf(table.findings)}};
}

}  // namespace

std::string ReportJson(const CheckReport& report) {
    Json json{{"session", report.session},   {"name", report.name}, {"source", report.sourceKind},
              {"target", report.targetKind}, {"log", report.log},   {"findings", JsonOf(report.findings)},
              {"tables", Json::array()}};
    for (const TableReport& table : report.tables) json["tables"].push_back(JsonOf(table));
    json["faults"] = report.Count(Severity::Fault);
    json["warnings"] = report.Count(Severity::Warning);
    json["notes"] = report.Count(Severity::Note);
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace varnel::admin
