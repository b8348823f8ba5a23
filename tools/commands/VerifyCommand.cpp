#include <memory>

#include "providers/VerifyFile.h"
#include "tools/commands/Commands.h"
#include "tools/output/JsonDocument.h"
#include "tools/output/Printing.h"
#include "tools/output/Progress.h"

namespace varnel::admin {
namespace {

struct Options {
    std::string file, password;
    bool json = false;
};

FileReport Look(const Options& options) {
    Progress progress("looked at", "rows");
    return VerifyFile(options.file, options.password, [&](std::uint64_t rows) { progress.Count(rows); });
}

std::string ReportText(const Options& options, const FileReport& report) {
    std::string text;
    for (const std::string& finding : report.findings) text += finding + "\n";
    for (const std::string& note : report.notes) text += "note: " + note + "\n";
    const std::size_t count = report.findings.size();
    const std::string outcome = count == 0 ? "sound" : std::to_string(count) + (count == 1 ? " finding" : " findings");
    return text + options.file + ": " + outcome + " (" + report.extent + ")\n";
}

std::string ReportJson(const Options& options, const FileReport& report) {
    return JsonLines({{"file", options.file},
                      {"sound", report.findings.empty()},
                      {"findings", report.findings},
                      {"notes", report.notes},
                      {"extent", report.extent}});
}

bool Verify(const Options& options) {
    const FileReport report = Look(options);
    Print(options.json ? ReportJson(options, report) : ReportText(options, report));
    FinishPrinting();
    return report.findings.empty();
}

}  // namespace

void AddVerify(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "verify",
                               "Looks for damage in a database file and lists it. The file is only read; the exit "
                               "status is 1 when there is any.",
                               "varnel-admin verify orders.mdb --password secret");
    command.add_option("file", options->file, "Access or SQLite database, FoxPro table (.dbf) or container (.dbc)")
        ->required()
        ->type_name(kFileType);
    command.add_option("--password", options->password, "Password of the database");
    command.add_flag("--json", options->json, "Print the report as JSON");
    command.callback([options, &status] { status = Verify(*options) ? 0 : kFailed; });
}

}  // namespace varnel::admin
