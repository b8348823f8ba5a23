#include <limits>
#include <memory>
#include <string>

#include "tools/check/CheckSession.h"
#include "tools/check/ReportText.h"
#include "tools/commands/Commands.h"
#include "tools/output/Printing.h"

namespace varnel::admin {
namespace {

struct Options {
    std::int64_t session = 0;
    std::string repository;
    bool json = false, values = false;
};

CheckReport OutOfRange(std::int64_t session) {
    CheckReport report;
    report.session = session;
    report.findings.Fault(
        "sessionid",
        "the number " + std::to_string(session) + " is no session number: a run ends silently and does nothing",
        "use a number from -32768 to 32767 other than 0");
    return report;
}

bool IsSessionNumber(std::int64_t number) {
    using Limits = std::numeric_limits<std::int16_t>;
    return number != 0 && number >= Limits::min() && number <= Limits::max();
}

bool Check(const Options& options) {
    const CheckReport report =
        IsSessionNumber(options.session)
            ? CheckSession(static_cast<std::int16_t>(options.session), options.repository, options.values)
            : OutOfRange(options.session);
    Print(options.json ? ReportJson(report) : ReportText(report));
    FinishPrinting();
    return report.Count(Severity::Fault) == 0;
}

}  // namespace

void AddCheck(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "check",
                               "Tells what a run of a session would do, and what would fail or be lost. Nothing is "
                               "changed; the exit status is 1 when there are faults.",
                               "varnel-admin check 12 --values");
    command.add_option("session", options->session, "Number of the session")->required();
    command.add_flag("--json", options->json, "Print the report as JSON");
    command.add_flag("--values", options->values, "Also read all rows of the sources and look at their values");
    AddRepositoryOption(command, options->repository);
    command.callback([options, &status] { status = Check(*options) ? 0 : kFailed; });
}

}  // namespace varnel::admin
