// Locks by which the processes of this program, on one machine or on a shared folder, take turns at a file. They lie on
// bytes far beyond any content, belong to the open file (not to the process), and end with it, however it ends.
#pragma once

#include <cstdint>

#include "platform/DiskFile.h"

namespace varnel {

enum class LockKind : std::uint8_t { None, Shared, Exclusive };

/// Sets one range of bytes of the file to a kind of lock; false when another open file has one that conflicts.
/// count 0: to the end of all bytes. Throws Error{Io} when the file system knows no locks.
bool TryLockBytes(const DiskFile& file, LockKind kind, std::uint64_t at, std::uint64_t count);
/// True when somebody else (of any program) holds a lock in the range.
bool BytesAreLocked(const DiskFile& file, std::uint64_t at, std::uint64_t count);

/// How long a lock is waited for, in milliseconds: 60,000 unless a test says otherwise.
std::int64_t FileLockPatience();
void SetFileLockPatience(std::int64_t milliseconds);

/// The lock of one open file. Readers hold it side by side. A waiting writer keeps new readers out for a while, so that
/// a row of overlapping readers does not starve it.
class FileLock {
public:
    enum class Outcome { Granted, TimedOut, BothWantToWrite };
    /// file: must outlive the lock.
    explicit FileLock(const DiskFile& file) : file_(file) {}

    LockKind Held() const { return held_; }
    /// Waits as long as patience lasts. BothWantToWrite: we read, another reader waits to write already, and neither
    /// can begin before the other has ended. Throws as TryLockBytes.
    Outcome Acquire(LockKind kind);
    /// To a lesser lock, or none. Never waits.
    void Lower(LockKind kind) noexcept;
    /// The file was closed and opened anew: nothing is held.
    void Forget() noexcept { held_ = LockKind::None; }

private:
    bool TryShared();
    bool TryExclusive(std::int64_t waited, bool& claimed);

    const DiskFile& file_;
    LockKind held_ = LockKind::None;
};

}  // namespace varnel
