// What a check of a session finds, as data: told as text by ReportText.h, as JSON by ReportJson.h.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varnel::admin {

/// Fault: a run fails in something. Warning: it ends well but loses, cuts, rounds or surprises. Note: worth knowing.
enum class Severity : std::uint8_t { Fault, Warning, Note };

struct Finding {
    Severity severity = Severity::Note;
    std::string column;  ///< empty when it concerns the whole table or session
    std::string what;    ///< what a run would meet, for its user
    std::string remedy;  ///< what to do about it; may be empty for a note
};

class Findings {
public:
    void Fault(std::string column, std::string what, std::string remedy) {
        list_.push_back({Severity::Fault, std::move(column), std::move(what), std::move(remedy)});
    }
    void Warning(std::string column, std::string what, std::string remedy) {
        list_.push_back({Severity::Warning, std::move(column), std::move(what), std::move(remedy)});
    }
    void Note(std::string column, std::string what, std::string remedy = "") {
        list_.push_back({Severity::Note, std::move(column), std::move(what), std::move(remedy)});
    }
    const std::vector<Finding>& List() const { return list_; }
    std::size_t Count(Severity severity) const {
        const auto is = [&](const Finding& finding) { return finding.severity == severity; };
        return static_cast<std::size_t>(std::count_if(list_.begin(), list_.end(), is));
    }

private:
    std::vector<Finding> list_;
};

/// What a run would do with one table, and what is found about it.
struct TableReport {
    std::string source, target;           ///< as the session names them
    std::string preparation;              ///< "drops and makes it again", one of the words of PreparationText
    std::string way;                      ///< how its rows are written
    std::optional<double> rowsToRead;     ///< what the count query says
    std::optional<double> rowsInTarget;   ///< now; nothing when there is no table, or it cannot be read
    std::vector<std::string> statements;  ///< in the order in which a run sends them
    Findings findings;
};

struct CheckReport {
    std::int64_t session = 0;
    std::string name, sourceKind, targetKind, log;
    Findings findings;  ///< of the session as a whole
    std::vector<TableReport> tables;

    std::size_t Count(Severity severity) const {
        std::size_t count = findings.Count(severity);
        for (const TableReport& table : tables) count += table.findings.Count(severity);
        return count;
    }
};

}  // namespace varnel::admin
