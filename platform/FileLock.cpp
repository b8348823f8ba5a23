#include "platform/FileLock.h"

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel {
namespace {

constexpr std::uint64_t kClaimAt = std::uint64_t{1} << 46;  ///< a writer waits: new readers stay out
constexpr std::uint64_t kUpgradeAt = kClaimAt + 1;          ///< a reader waits to become the writer
constexpr std::uint64_t kHoldAt = kClaimAt + 2;             ///< the lock itself
constexpr std::int64_t kMostClaim = 30'000;                 ///< milliseconds that a writer keeps readers out

std::int64_t patience = 60'000;

struct flock Range(LockKind kind, std::uint64_t at, std::uint64_t count) {
    struct flock range {};
    const int type = kind == LockKind::None ? F_UNLCK : kind == LockKind::Shared ? F_RDLCK : F_WRLCK;
    range.l_type = static_cast<short>(type);
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<off_t>(at);
    range.l_len = static_cast<off_t>(count);
    return range;
}

}  // namespace

bool TryLockBytes(const DiskFile& file, LockKind kind, std::uint64_t at, std::uint64_t count) {
    struct flock range = Range(kind, at, count);
    int result = 0;
    do {
        result = fcntl(file.Descriptor(), F_OFD_SETLK, &range);
    } while (result != 0 && errno == EINTR);
    if (result == 0) return true;
    if (errno == EAGAIN || errno == EACCES) return false;
    throw Error(ErrorKind::Io, file.StoredPath(), "Cannot be locked: " + FileErrorText(errno, file.StoredPath()));
}

bool BytesAreLocked(const DiskFile& file, std::uint64_t at, std::uint64_t count) {
    struct flock range = Range(LockKind::Exclusive, at, count);
    return fcntl(file.Descriptor(), F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

std::int64_t FileLockPatience() {
    return patience;
}

void SetFileLockPatience(std::int64_t milliseconds) {
    patience = milliseconds;
}

bool FileLock::TryShared() {
    if (!TryLockBytes(file_, LockKind::Shared, kClaimAt, 1)) return false;
    const bool granted = TryLockBytes(file_, LockKind::Shared, kHoldAt, 1);
    TryLockBytes(file_, LockKind::None, kClaimAt, 1);
    return granted;
}

/// One that reads already is not held up by the claim of another writer, who waits for its reading to end.
bool FileLock::TryExclusive(std::int64_t waited, bool& claimed) {
    if (held_ == LockKind::None) {
        if (waited < kMostClaim) {
            if (!claimed) claimed = TryLockBytes(file_, LockKind::Exclusive, kClaimAt, 1);
            if (!claimed) return false;
        } else if (claimed) {
            claimed = !TryLockBytes(file_, LockKind::None, kClaimAt, 1);
        }
    }
    return TryLockBytes(file_, LockKind::Exclusive, kHoldAt, 1);
}

FileLock::Outcome FileLock::Acquire(LockKind kind) {
    if (held_ >= kind) return Outcome::Granted;
    const bool upgrade = held_ == LockKind::Shared;
    if (upgrade && !TryLockBytes(file_, LockKind::Exclusive, kUpgradeAt, 1)) return Outcome::BothWantToWrite;
    const std::int64_t begun = SteadyMilliseconds();
    bool claimed = false, granted = false;
    for (int pause = 1;; pause = pause < 50 ? pause * 2 : 50) {
        const std::int64_t waited = SteadyMilliseconds() - begun;
        granted = kind == LockKind::Shared ? TryShared() : TryExclusive(waited, claimed);
        if (granted || waited >= patience) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    }
    if (claimed) TryLockBytes(file_, LockKind::None, kClaimAt, 1);
    if (upgrade) TryLockBytes(file_, LockKind::None, kUpgradeAt, 1);
    if (granted) held_ = kind;
    return granted ? Outcome::Granted : Outcome::TimedOut;
}

void FileLock::Lower(LockKind kind) noexcept {
    if (held_ <= kind) return;
    struct flock range = Range(kind, kHoldAt, 1);
    fcntl(file_.Descriptor(), F_OFD_SETLK, &range);  // a lesser lock is always granted
    held_ = kind;
}

}  // namespace varnel
