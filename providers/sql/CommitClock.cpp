#include "providers/sql/CommitClock.h"

#include <utility>

#include "platform/Clock.h"
#include "platform/Error.h"

namespace varnel::sql {
namespace {

constexpr std::int64_t kCommitMilliseconds = 1'000;

}  // namespace

CommitClock::~CommitClock() {
    try {
        Commit();
    } catch (const std::exception&) {
        // The writer was to call Commit to learn of this; a destructor cannot say it.
    }
}

void CommitClock::RowWritten() {
    const std::int64_t now = SteadyMilliseconds();
    if (!std::exchange(pending_, true)) since_ = now;
    if (now - since_ >= kCommitMilliseconds) Commit();
}

void CommitClock::Commit() {
    if (!pending_) return;
    table_.Commit();
    pending_ = false;
}

}  // namespace varnel::sql
