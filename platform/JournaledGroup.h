// The implementation of JournaledFiles: the members, what was done to them since the last commit point, the lock.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DiskFile.h"
#include "platform/FileLock.h"
#include "platform/JournaledFiles.h"
#include "platform/RollbackJournal.h"

namespace varnel {

/// One file of a group. "Interval": the time since the last commit point.
struct JournaledMember {
    DiskFile file;
    std::uint32_t number = 0;
    std::string name;                   ///< without folder
    std::uint64_t size = 0;             ///< as changed, while the group is held
    std::uint64_t committedSize = 0;    ///< bytes of the last commit point
    std::vector<std::uint64_t> copied;  ///< a bit for each block of them that is in the journal
    std::uint64_t journalMark = 0;      ///< where the journal's record of the member ends; 0 before there is one
    bool created = false;               ///< in this interval
    bool removed = false;               ///< in this interval
    bool changed = false;               ///< not yet made lasting
    bool gone = false;                  ///< removed at an earlier commit point
};

class JournaledGroup : public JournaledFiles {
public:
    JournaledGroup(std::string_view storedPath, bool readOnly);
    ~JournaledGroup() override;

    Number Attach(std::string_view storedPath) override;
    Number Create(std::string_view storedPath) override;
    void Remove(Number file) override;
    void Detach(Number file) noexcept override;
    std::unique_ptr<Hold> HoldForReading() override;
    std::unique_ptr<Hold> HoldForWriting() override;
    bool HeldForWriting() const override { return writeHolds_ > 0; }
    std::uint64_t Generation() const override { return generation_; }
    std::uint64_t Size(Number file) const override;
    std::size_t Read(Number file, std::uint64_t offset, std::span<std::uint8_t> into) const override;
    void Protect(Number file, std::uint64_t offset, std::uint64_t count) override;
    void Write(Number file, std::uint64_t offset, std::span<const std::uint8_t> bytes) override;
    void Truncate(Number file, std::uint64_t size) override;
    void Commit() override;
    void Rollback() override;

private:
    class CountedHold;
    bool Held() const { return readHolds_ + writeHolds_ > 0; }
    std::string LocalInFolder(std::string_view storedPath) const;
    const JournaledMember& At(Number file) const;
    JournaledMember& Writable(Number file);

    // JournaledHolds.cpp
    void AcquireReading();
    void AcquireWriting();
    void Lock(LockKind kind);
    [[noreturn]] void RefuseLock(FileLock::Outcome outcome, LockKind kind) const;
    class LockAttempt;
    void LookAgain();
    void ReopenWhenReplaced();
    void TakeSizes();
    void PutRight(LockKind wanted);
    void ReleaseReading() noexcept;
    void ReleaseWriting() noexcept;

    void Touch(JournaledMember& member);
    void Copy(JournaledMember& member, std::uint64_t from, std::uint64_t to);
    void BeginInterval(JournaledMember& member);
    void FinishRemovals();

    // JournalPlayback.cpp
    void PlayBack(RollbackJournal::Plan plan);
    void Undo();
    void Finish();

    bool readOnly_;
    std::deque<JournaledMember> members_;  ///< 0 is the first file; a number never changes
    std::string folder_;                   ///< local, links followed
    RollbackJournal journal_;
    FileLock lock_;
    int readHolds_ = 0, writeHolds_ = 0;
    std::uint64_t generation_ = 0;
    bool pending_ = false;         ///< something happened in this interval
    bool leftUnfinished_ = false;  ///< a rollback failed: nothing is read before the journal was played back
    std::vector<std::uint8_t> block_;
};

/// Calls the watcher of WatchJournaledFiles.
void TellJournalWatcher(JournaledFiles::Moment moment);

}  // namespace varnel
