// Playing a journal back into the files that it names: after a rollback in the process, or when the files are opened
// after the end of another one. May be cut off anywhere and begun again.
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "platform/JournaledGroup.h"

namespace varnel {
namespace {

using Kind = JournalRecord::Kind;

struct UndoneMember {
    DiskFile file;
    std::string name;
    std::uint64_t size = 0;
    bool created = false;
};

/// Names in a journal never lead out of its folder.
std::string CheckedName(const JournalRecord& record, const std::string& storedPath) {
    std::string name = record.Name();
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
        throw Error(ErrorKind::Corrupt, storedPath,
                    "The journal of '" + storedPath + "' names the file '" + name + "'");
    }
    return name;
}

}  // namespace

void JournaledGroup::PlayBack(RollbackJournal::Plan plan) {
    if (plan == RollbackJournal::Plan::Undo) Undo();
    if (plan == RollbackJournal::Plan::Finish) Finish();
    journal_.Reset();
}

/// Everything is read once before anything is changed, so that a damaged journal changes nothing.
void JournaledGroup::Undo() {
    const std::string& stored = members_.front().file.StoredPath();
    std::map<std::uint32_t, UndoneMember> undone;
    journal_.Replay(RollbackJournal::Plan::Undo, [&](const JournalRecord& record) {
        if (record.kind != Kind::Member) return;
        UndoneMember& member = undone[record.member];
        member.name = CheckedName(record, stored);
        member.size = record.offset;
        member.created = record.created;
        const std::string local = folder_ + "/" + member.name;
        if (!member.created) member.file = DiskFile(local, member.name, DiskFile::Mode::Existing);
    });
    journal_.Replay(RollbackJournal::Plan::Undo, [&](const JournalRecord& record) {
        const auto found = undone.find(record.member);
        if (record.kind != Kind::OldBytes || found == undone.end() || found->second.created) return;
        TellJournalWatcher(Moment::FileWrite);
        found->second.file.WriteAt(record.offset, record.payload);
    });
    for (auto& [number, member] : undone) {
        if (member.created) {
            TellJournalWatcher(Moment::FileRemoval);
            RemoveDiskFile(folder_ + "/" + member.name, member.name);
        } else {
            if (member.file.Size() != member.size) member.file.Truncate(member.size);
            TellJournalWatcher(Moment::FileSync);
            member.file.Sync();
        }
    }
    SyncFolder(folder_, stored);
}

void JournaledGroup::Finish() {
    const std::string& stored = members_.front().file.StoredPath();
    journal_.Replay(RollbackJournal::Plan::Finish, [&](const JournalRecord& record) {
        if (record.kind != Kind::Removal) return;
        const std::string local = folder_ + "/" + CheckedName(record, stored);
        const DiskFile file = OpenDiskFileIfExists(local, stored, DiskFile::Mode::ExistingToRead);
        if (!file.IsOpen() || file.Identity() != record.offset) return;
        TellJournalWatcher(Moment::FileRemoval);
        RemoveDiskFile(local, stored);
    });
    SyncFolder(folder_, stored);
}

}  // namespace varnel
