#include "tests/session/Fidelity.h"

#include <map>
#include <utility>

namespace varnel {

namespace {

/// Of a target, then of a source, without and with long columns.
using Findings = std::map<std::string, std::map<std::pair<std::string, bool>, TripFindings>>;

Findings& All() {
    static Findings all;
    return all;
}

std::string Joined(const std::set<std::string>& parts) {
    std::string list;
    for (const std::string& part : parts) list += (list.empty() ? "" : "; ") + part;
    return list.empty() ? "nothing" : list;
}

constexpr const char* kHead =
    "# What arrives\n\n"
    "Every kind of source into every kind of target, with one reference table: a column of every group of types that\n"
    "the source can hold, and a row for every value that is hard to carry. Each value arrives unchanged, except those\n"
    "named here: *reported* ones are failures in the session's log and their rows are not in the target; *changed*\n"
    "ones are changes that the way of writing or the type of the target's column makes.\n\n"
    "A table with long columns (NOTE, PIC) is written record by record; one without them in batches to MySQL and with\n"
    "parameters to Oracle. Oracle is a MariaDB server in its Oracle mode and SQL Server a stand-in behind the real\n"
    "FreeTDS driver, so their lines vouch for this side of the connection alone. GUID and fixed binary columns "
    "(KEYID,\n"
    "MARK) go into SqlServer and Text alone: creating a table for them is refused elsewhere, no type being mapped.\n\n"
    "Text targets are files in code page 1252. In delimited ones texts are trimmed, and a row that was reported is\n"
    "written with an empty cell. Files in fixed widths (TextFixed) hold no long columns; Null and empty texts are\n"
    "blanks there, a reported cell is blank, and a line break within a text breaks the line. A TextFixed source is "
    "read\n"
    "by its Schema.ini: blanks alone are Null, blanks at the end are none of the value.\n\n"
    "This page is written by the test session_matrix_test when it is run with UPDATE_FIDELITY=1.\n";

}  // namespace

void NoteFindings(const std::string& target, const std::string& source, bool withLongColumns, TripFindings findings) {
    All()[target][{source, withLongColumns}] = std::move(findings);
}

std::size_t NotedTrips() {
    std::size_t count = 0;
    for (const auto& [target, sources] : All()) count += sources.size();
    return count;
}

std::string FidelityPage() {
    std::string page = kHead;
    for (const auto& [target, sources] : All()) {
        page += "\n## Into " + target + "\n\n| From | Long columns | Reported | Changed |\n|---|---|---|---|\n";
        for (const auto& [source, findings] : sources) {
            page += "| " + source.first + " | " + (source.second ? "with" : "without") + " | " +
                    Joined(findings.reported) + " | " + Joined(findings.changed) + " |\n";
        }
    }
    return page;
}

}  // namespace varnel
