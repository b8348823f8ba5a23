#include "platform/JournaledFiles.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/JournaledGroup.h"
#include "platform/StoredPath.h"

namespace varnel {
namespace {

constexpr std::uint64_t kBlock = 4096;  ///< bytes that are copied into the journal as one
constexpr std::uint64_t kMostBlocksAtOnce = 16;

std::function<void(JournaledFiles::Moment)>& Watcher() {
    static std::function<void(JournaledFiles::Moment)> watcher;
    return watcher;
}

std::string NamePart(const std::string& localPath) {
    return localPath.substr(localPath.rfind('/') + 1);
}

JournaledMember MakeMember(std::size_t number, DiskFile file) {
    JournaledMember member;
    member.number = static_cast<std::uint32_t>(number);
    member.name = NamePart(file.LocalPath());
    member.file = std::move(file);
    return member;
}

std::deque<JournaledMember> FirstMember(std::string_view storedPath) {
    std::deque<JournaledMember> members;
    const std::string local = PathWithoutLinks(LocalPath(storedPath));
    members.push_back(MakeMember(0, {local, std::string(storedPath), DiskFile::Mode::Existing}));
    return members;
}

bool IsCopied(const JournaledMember& member, std::uint64_t block) {
    return ((member.copied[block / 64] >> (block % 64)) & 1) != 0;
}

}  // namespace

void WatchJournaledFiles(std::function<void(JournaledFiles::Moment)> watcher) {
    Watcher() = std::move(watcher);
}

void TellJournalWatcher(JournaledFiles::Moment moment) {
    if (Watcher()) Watcher()(moment);
}

std::unique_ptr<JournaledFiles> OpenJournaledFiles(std::string_view storedPath, bool readOnly) {
    return std::make_unique<JournaledGroup>(storedPath, readOnly);
}

JournaledGroup::JournaledGroup(std::string_view storedPath, bool readOnly)
    : readOnly_(readOnly),
      members_(FirstMember(storedPath)),
      folder_(FolderPart(members_.front().file.LocalPath())),
      journal_(members_.front().file.LocalPath() + "-journal", std::string(storedPath) + "-journal",
               TellJournalWatcher),
      lock_(members_.front().file) {}

JournaledGroup::~JournaledGroup() = default;

/// The journal names its members without a folder, so that the files can be moved together with it.
std::string JournaledGroup::LocalInFolder(std::string_view storedPath) const {
    std::string local = PathWithoutLinks(LocalPath(storedPath));
    if (PathWithoutLinks(FolderPart(local)) == folder_) return local;
    throw Error(
        ErrorKind::Io, std::string(storedPath),
        "'" + std::string(storedPath) + "' does not lie in the folder of '" + members_.front().file.StoredPath() + "'");
}

JournaledFiles::Number JournaledGroup::Attach(std::string_view storedPath) {
    DiskFile file(LocalInFolder(storedPath), std::string(storedPath), DiskFile::Mode::Existing);
    JournaledMember member = MakeMember(members_.size(), std::move(file));
    member.size = member.committedSize = member.file.Size();
    members_.push_back(std::move(member));
    return members_.size() - 1;
}

JournaledFiles::Number JournaledGroup::Create(std::string_view storedPath) {
    Writable(0);
    if (FileExists(storedPath)) {
        throw Error(ErrorKind::Constraint, std::string(storedPath), FileErrorText(EEXIST, storedPath));
    }
    const std::string local = LocalInFolder(storedPath);
    JournaledMember member;
    member.number = static_cast<std::uint32_t>(members_.size());
    member.name = NamePart(local);
    member.created = true;
    BeginInterval(member);
    journal_.Sync();
    TellJournalWatcher(Moment::FileWrite);
    member.file = DiskFile(local, std::string(storedPath), DiskFile::Mode::New);
    member.changed = true;
    members_.push_back(std::move(member));
    return members_.size() - 1;
}

void JournaledGroup::Remove(Number file) {
    JournaledMember& member = Writable(file);
    Touch(member);
    member.removed = true;
}

void JournaledGroup::Detach(Number file) noexcept {
    members_[file].file.Close();
    members_[file].gone = true;
}

const JournaledMember& JournaledGroup::At(Number file) const {
    const JournaledMember& member = members_.at(file);
    if (!member.file.IsOpen() || member.gone) {
        throw Error(ErrorKind::Misuse, member.name, "The file '" + member.name + "' is no longer part of the group");
    }
    return member;
}

JournaledMember& JournaledGroup::Writable(Number file) {
    if (!HeldForWriting()) {
        throw Error(ErrorKind::Misuse, members_.front().name,
                    "'" + members_.front().name + "' is not held for writing");
    }
    At(file);
    JournaledMember& member = members_[file];
    if (member.file.WriteRefusal() != 0) {
        const std::string& stored = member.file.StoredPath();
        throw Error(ErrorKind::Io, stored, FileErrorText(member.file.WriteRefusal(), stored));
    }
    return member;
}

std::uint64_t JournaledGroup::Size(Number file) const {
    const JournaledMember& member = At(file);
    return Held() ? member.size : member.file.Size();
}

std::size_t JournaledGroup::Read(Number file, std::uint64_t offset, std::span<std::uint8_t> into) const {
    const JournaledMember& member = At(file);
    if (leftUnfinished_) {
        const std::string& stored = member.file.StoredPath();
        throw Error(ErrorKind::Io, stored, "'" + stored + "' holds a change that could not be taken back");
    }
    if (!Held()) return member.file.ReadAt(offset, into);
    if (offset >= member.size) return 0;
    return member.file.ReadAt(offset, into.first(std::min<std::uint64_t>(into.size(), member.size - offset)));
}

/// The journal's record of the member as it was at the commit point. Nothing of the file is copied yet.
void JournaledGroup::BeginInterval(JournaledMember& member) {
    JournalRecord record;
    record.member = member.number;
    record.offset = member.committedSize;
    record.created = member.created;
    record.payload = {reinterpret_cast<const std::uint8_t*>(member.name.data()), member.name.size()};
    member.copied.assign((member.committedSize + kBlock * 64 - 1) / (kBlock * 64), 0);
    journal_.Add(record);
    member.journalMark = journal_.End();
    pending_ = true;
}

void JournaledGroup::Touch(JournaledMember& member) {
    if (member.journalMark == 0) BeginInterval(member);
    pending_ = true;
}

/// Copies those blocks from from to to (bytes of the commit point) that the journal has not got, in runs.
void JournaledGroup::Copy(JournaledMember& member, std::uint64_t from, std::uint64_t to) {
    const std::uint64_t end = (std::min(to, member.committedSize) + kBlock - 1) / kBlock;
    std::uint64_t block = from / kBlock;
    while (block < end) {
        std::uint64_t last = block;
        while (last < end && last - block < kMostBlocksAtOnce && !IsCopied(member, last)) ++last;
        if (last == block) {
            ++block;
            continue;
        }
        const std::uint64_t at = block * kBlock;
        block_.resize(std::min(last * kBlock, member.committedSize) - at);
        if (member.file.ReadAt(at, block_) < block_.size()) {
            const std::string& stored = member.file.StoredPath();
            throw Error(ErrorKind::Io, stored, "'" + stored + "' became shorter while it was held");
        }
        JournalRecord record;
        record.kind = JournalRecord::Kind::OldBytes;
        record.member = member.number;
        record.offset = at;
        record.payload = block_;
        journal_.Add(record);
        for (; block < last; ++block) member.copied[block / 64] |= std::uint64_t{1} << (block % 64);
    }
}

void JournaledGroup::Protect(Number file, std::uint64_t offset, std::uint64_t count) {
    JournaledMember& member = Writable(file);
    Touch(member);
    if (offset < member.committedSize) Copy(member, offset, offset + std::min(count, member.committedSize - offset));
}

void JournaledGroup::Write(Number file, std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return;
    Protect(file, offset, bytes.size());
    JournaledMember& member = members_[file];
    const bool old = offset < member.committedSize;
    if (old ? journal_.Waiting() : journal_.SyncedEnd() < member.journalMark) journal_.Sync();
    TellJournalWatcher(Moment::FileWrite);
    member.changed = true;
    member.file.WriteAt(offset, bytes);
    member.size = std::max<std::uint64_t>(member.size, offset + bytes.size());
}

void JournaledGroup::Truncate(Number file, std::uint64_t size) {
    Protect(file, size, At(file).size - std::min(size, At(file).size));
    JournaledMember& member = members_[file];
    journal_.Sync();
    TellJournalWatcher(Moment::FileWrite);
    member.changed = true;
    member.file.Truncate(size);
    member.size = size;
}

void JournaledGroup::Commit() {
    Writable(0);
    if (!pending_) return;
    bool created = false, removed = false;
    for (JournaledMember& member : members_) {
        created |= member.created;
        removed |= member.removed;
        if (!member.changed) continue;
        // A write that failed half way may have left more behind the end.
        if (member.file.Size() != member.size) member.file.Truncate(member.size);
        TellJournalWatcher(Moment::FileSync);
        member.file.Sync();
    }
    if (created) SyncFolder(folder_, members_.front().file.StoredPath());
    if (removed) FinishRemovals();
    journal_.Reset();
    for (JournaledMember& member : members_) {
        member.gone |= member.removed;
        if (member.gone && member.number != 0) member.file.Close();  // the first one carries the lock
        member.committedSize = member.size;
        member.journalMark = 0;
        member.created = member.removed = member.changed = false;
    }
    pending_ = false;
}

void JournaledGroup::FinishRemovals() {
    std::vector<RollbackJournal::Removal> removals;
    for (const JournaledMember& member : members_) {
        if (member.removed) removals.push_back({member.name, member.file.Identity()});
    }
    journal_.MarkFinish(removals);
    for (const RollbackJournal::Removal& removal : removals) {
        TellJournalWatcher(Moment::FileRemoval);
        RemoveDiskFile(folder_ + "/" + removal.name, removal.name);
    }
    SyncFolder(folder_, members_.front().file.StoredPath());
}

void JournaledGroup::Rollback() {
    if (pending_) PutRight(LockKind::Exclusive);
}

}  // namespace varnel
