// What went wrong in this run, for the program's exit status.
#pragma once

#include <cstdint>

namespace varnel {

struct RunTally {
    std::int64_t failures = 0;          ///< preparations, rows, steps of a table, exports that failed
    bool endedThroughErrorLog = false;  ///< the run was broken off
    bool cancelled = false;             ///< the run ended by a cancel request
};

/// The failure trap, the table preparation and the runner write, the exit status is made of it.
extern RunTally Tally;

/// 0: no failure, or nothing to run. 2: the run ended through the error log. 3: cancelled. 1: failures in it.
int ExitStatus(const RunTally& tally);

}  // namespace varnel
