#include "app/shared/RunTally.h"

namespace varnel {

RunTally Tally;

int ExitStatus(const RunTally& tally) {
    if (tally.endedThroughErrorLog) return 2;
    if (tally.cancelled) return 3;
    return tally.failures > 0 ? 1 : 0;
}

}  // namespace varnel
