#include "tools/repository/LastRun.h"

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"

namespace varnel::admin {
namespace {

std::string TextOf(const Value& value) {
    return value.IsNull() ? "" : DefaultText(value);
}

std::string Joined(const std::string& date, const std::string& time) {
    return date + (date.empty() || time.empty() ? "" : " ") + time;
}

}  // namespace

std::string LastRun::Outcome() const {
    if (Never()) return "never";
    return withErrors ? "with errors" : "good";
}

std::string LastRun::IsoMoment() const {
    std::string stored = Joined(date, time);
    const auto moment = ParseDateTime(stored);
    if (!moment) return stored;
    std::string text;
    AppendIsoDateTime(text, *moment);
    return text;
}

std::string LastRun::Words() const {
    if (Never()) return "never run";
    return "last run " + Joined(date, time) + (withErrors ? ", with errors" : ", without errors");
}

LastRun LastRunOf(const StoredTable& sessions, std::size_t row) {
    const Value& errors = sessions.At(row, "SessionError");
    return {TextOf(sessions.At(row, "LastRunDate")), TextOf(sessions.At(row, "LastRunTime")),
            !errors.IsNull() && DefaultText(errors) != "0" && DefaultText(errors) != "False"};
}

}  // namespace varnel::admin
