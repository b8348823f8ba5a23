// What a repository says of a session's last run.
#pragma once

#include <string>

#include "tools/repository/StoredRows.h"

namespace varnel::admin {

struct LastRun {
    std::string date, time;  ///< as stored; both "" for a session that never ran

    bool withErrors = false;

    bool Never() const { return date.empty() && time.empty(); }
    /// "never", "good", "with errors".
    std::string Outcome() const;
    /// "2026-11-18 16:23:05"; as stored when that is no moment.
    std::string IsoMoment() const;
    /// "last run 11/18/2026 04:23:05 PM, with errors", or "never run".
    std::string Words() const;
};

LastRun LastRunOf(const StoredTable& sessions, std::size_t row);

}  // namespace varnel::admin
