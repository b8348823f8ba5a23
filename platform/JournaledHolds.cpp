// Taking and giving back the lock of a group, and what must be looked at when it was just taken.
#include <cerrno>
#include <string>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/JournaledGroup.h"

namespace varnel {

class JournaledGroup::CountedHold : public JournaledFiles::Hold {
public:
    CountedHold(JournaledGroup& group, LockKind kind) : group_(group), kind_(kind) {}
    ~CountedHold() override {
        if (kind_ == LockKind::Exclusive) {
            group_.ReleaseWriting();
        } else {
            group_.ReleaseReading();
        }
    }

private:
    JournaledGroup& group_;
    LockKind kind_;
};

/// Gives a lock back that was just taken, unless everything that follows went well.
class JournaledGroup::LockAttempt {
public:
    explicit LockAttempt(JournaledGroup& group) : group_(group) {}
    ~LockAttempt() {
        if (kept_) return;
        group_.lock_.Lower(group_.readHolds_ > 0 ? LockKind::Shared : LockKind::None);
        group_.journal_.Close();
    }
    LockAttempt(const LockAttempt&) = delete;
    LockAttempt& operator=(const LockAttempt&) = delete;
    void Keep() { kept_ = true; }

private:
    JournaledGroup& group_;
    bool kept_ = false;
};

std::unique_ptr<JournaledFiles::Hold> JournaledGroup::HoldForReading() {
    if (!Held()) AcquireReading();
    ++readHolds_;
    return std::make_unique<CountedHold>(*this, LockKind::Shared);
}

std::unique_ptr<JournaledFiles::Hold> JournaledGroup::HoldForWriting() {
    if (writeHolds_ == 0) AcquireWriting();
    ++writeHolds_;
    return std::make_unique<CountedHold>(*this, LockKind::Exclusive);
}

void JournaledGroup::AcquireReading() {
    ReopenWhenReplaced();
    Lock(LockKind::Shared);
    LockAttempt attempt(*this);
    PutRight(LockKind::Shared);
    LookAgain();
    journal_.Close();
    attempt.Keep();
}

void JournaledGroup::AcquireWriting() {
    const DiskFile& first = members_.front().file;
    const std::string& stored = first.StoredPath();
    if (readOnly_) throw Error(ErrorKind::Io, stored, "'" + stored + "' was opened for reading only");
    if (!Held()) ReopenWhenReplaced();
    if (first.WriteRefusal() != 0) throw Error(ErrorKind::Io, stored, FileErrorText(first.WriteRefusal(), stored));
    Lock(LockKind::Exclusive);
    LockAttempt attempt(*this);
    PutRight(LockKind::Exclusive);
    journal_.Open();
    if (!Held()) LookAgain();
    attempt.Keep();
}

void JournaledGroup::Lock(LockKind kind) {
    const FileLock::Outcome outcome = lock_.Acquire(kind);
    if (outcome != FileLock::Outcome::Granted) RefuseLock(outcome, kind);
}

void JournaledGroup::RefuseLock(FileLock::Outcome outcome, LockKind kind) const {
    const std::string& stored = members_.front().file.StoredPath();
    std::string text = "'" + stored + "' is in use";
    if (outcome == FileLock::Outcome::BothWantToWrite) {
        text += ": another process and this one both read it, and each waits for the other to end so that it can write";
    } else {
        const std::string holder = journal_.Holder();
        const std::string who = !holder.empty()            ? "it is being written by " + holder
                                : kind == LockKind::Shared ? "another process is about to write it"
                                                           : "another process is reading it";
        text += "; waited " + std::to_string(FileLockPatience() / 1000) + " seconds (" + who + ")";
    }
    throw Error(ErrorKind::Io, stored, text);
}

/// Plays back what a process left that ended in the middle of a change, or this process's own pending changes.
void JournaledGroup::PutRight(LockKind wanted) {
    RollbackJournal::Plan plan = journal_.Wanted();
    if (plan != RollbackJournal::Plan::Nothing && wanted == LockKind::Shared) {
        const DiskFile& first = members_.front().file;
        if (first.WriteRefusal() != 0 || journal_.WriteRefusal() != 0) {
            const std::string& stored = first.StoredPath();
            throw Error(ErrorKind::Io, stored,
                        "'" + stored +
                            "' was left in the middle of a change by a process that ended; who opens it with "
                            "the right to write to it and to its folder puts it right");
        }
        // Several readers may come here at once: none of them keeps a lock that the others wait for.
        journal_.Close();
        lock_.Lower(LockKind::None);
        Lock(LockKind::Exclusive);
        plan = journal_.Wanted();
    }
    if (plan != RollbackJournal::Plan::Nothing) PlayBack(plan);
    journal_.Drop();
    leftUnfinished_ = false;
    if (pending_ || plan != RollbackJournal::Plan::Nothing) LookAgain();
    pending_ = false;
    if (wanted != LockKind::Shared) return;
    if (plan != RollbackJournal::Plan::Nothing) journal_.Discard();
    lock_.Lower(LockKind::Shared);
}

/// What was read before may be stale.
void JournaledGroup::LookAgain() {
    ++generation_;
    for (JournaledMember& member : members_) {
        const bool away = member.number != 0 && member.file.IsOpen() && !member.file.StillThere();
        if (member.created || away) member.file.Close();
        member.journalMark = 0;
        member.created = member.removed = member.changed = false;
        if (member.file.IsOpen()) member.size = member.committedSize = member.file.Size();
    }
}

/// A file may be replaced by another of its name while nobody holds it (a copy is put back).
void JournaledGroup::ReopenWhenReplaced() {
    for (JournaledMember& member : members_) {
        if (member.number == 0 ? member.file.StillThere() : !member.file.IsOpen() || member.file.StillThere()) continue;
        member.file = DiskFile(folder_ + "/" + member.name, member.file.StoredPath(), DiskFile::Mode::Existing);
        member.gone = false;
        if (member.number == 0) lock_.Forget();
    }
}

void JournaledGroup::ReleaseReading() noexcept {
    if (--readHolds_ == 0 && writeHolds_ == 0) lock_.Lower(LockKind::None);
}

/// A rollback that fails leaves the journal to whoever opens the files next.
void JournaledGroup::ReleaseWriting() noexcept {
    if (--writeHolds_ > 0) return;
    try {
        Rollback();
        journal_.Discard();
    } catch (const Error&) {
        journal_.Close();
        leftUnfinished_ = true;
        pending_ = false;
    }
    lock_.Lower(readHolds_ > 0 ? LockKind::Shared : LockKind::None);
}

}  // namespace varnel
