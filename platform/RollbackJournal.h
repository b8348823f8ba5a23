// The journal file of a group of files that are changed in place (JournaledFiles.h). Numbers are little-endian.
//
//   OFFSET  SIZE
//        0    32  undo mark: what follows leads back to the last commit point
//      512    32  mark of how far the records were known to be on the disk
//     1024   256  who writes: "host, process n", zero-padded; tells waiters, means nothing to a play-back
//     4096    32  finish mark: everything is committed but for the removals that follow
//     8192        records, one behind the other
//
//   mark     8 magic  8 salt (0: nothing)  8 offset (of the first record; or of the end of those on the disk)
//            8 checksum
//   record   4 kind  4 member  8 offset in the member (or its size)  4 bytes of payload  4 flags  8 checksum  payload
//
// Records carry the salt of their mark in their checksums, so what an earlier use of the file left behind is no
// record. The three marks lie in blocks of their own and are written one at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DiskFile.h"
#include "platform/JournaledFiles.h"

namespace varnel {

struct JournalRecord {
    enum class Kind : std::uint32_t { Member = 1, OldBytes = 2, Removal = 3 };
    Kind kind = Kind::Member;
    std::uint32_t member = 0;
    /// OldBytes: in the member. Member: its size at the commit point. Removal: the identity of the file.
    std::uint64_t offset = 0;
    bool created = false;                   ///< Member: it did not exist at the commit point
    std::span<const std::uint8_t> payload;  ///< OldBytes: what was there. Member, Removal: the file's name
    std::string Name() const { return {payload.begin(), payload.end()}; }
};

class RollbackJournal {
public:
    enum class Plan { Nothing, Undo, Finish };
    using Tell = std::function<void(JournaledFiles::Moment)>;

    /// localPath: of the journal. tell: called before each change of the disk.
    RollbackJournal(std::string localPath, std::string storedPath, Tell tell);

    /// Creates the file when it is missing and writes into it who holds the files. Throws Error{Io}: the folder cannot
    /// be written to, or the file is none of ours.
    void Open();
    bool IsOpen() const { return file_.IsOpen(); }
    int WriteRefusal() const { return file_.WriteRefusal(); }
    void Close() noexcept;
    /// Deletes it (its content must be void) and closes it.
    void Discard() noexcept;
    /// Who wrote last into the journal that lies there; "" when nobody tells.
    std::string Holder() const;

    /// Records are gathered in memory; many of them are written together. May throw Error{Io} when it writes some: the
    /// record is kept all the same, and written with the next ones.
    void Add(const JournalRecord& record);
    /// True when something was added that Sync has not yet made lasting.
    bool Waiting() const { return syncedEnd_ < End(); }
    /// What was added so far lies on the disk when it returns. Throws Error{Io}; may be tried again.
    void Sync();
    /// Where the last record ends.
    std::uint64_t End() const { return writtenEnd_ + gathered_.size(); }
    std::uint64_t SyncedEnd() const { return syncedEnd_; }
    struct Removal {
        std::string name;
        std::uint64_t identity = 0;  ///< DiskFile::Identity: a later file of that name is left alone
    };
    /// The commit point of a group that removes files. Throws Error{Io}; may be tried again.
    void MarkFinish(const std::vector<Removal>& removals);
    /// Nothing is to be done any more; a new interval begins. Throws Error{Io}; may be tried again.
    void Reset();
    /// Forgets what was not made lasting.
    void Drop() noexcept;

    /// What the file on the disk asks for; opens it for reading when it is not open. Throws Error{Io}.
    Plan Wanted();
    /// Gives the records of the plan, oldest first. Throws Error{Corrupt} behind the last good one when others that
    /// were known to be on the disk are damaged; a torn end behind those guarded nothing yet.
    void Replay(Plan plan, const std::function<void(const JournalRecord&)>& give);

private:
    struct Mark {
        std::uint64_t salt = 0, offset = 0;
    };
    std::optional<Mark> ReadMark(std::uint64_t at) const;
    void WriteMark(std::uint64_t at, Mark mark);
    void Flush();
    void WriteHolder();
    void RefuseForeignFile() const;
    std::optional<std::uint64_t> ReadRecord(std::uint64_t at, std::uint64_t salt, JournalRecord& record);

    std::string local_, stored_;
    Tell tell_;
    DiskFile file_;
    std::vector<std::uint8_t> gathered_;  ///< records behind writtenEnd_
    std::vector<std::uint8_t> payload_;   ///< of the record being replayed
    std::uint64_t salt_ = 0;              ///< of this interval
    std::uint64_t writtenEnd_ = 0, syncedEnd_ = 0;
    bool begun_ = false;       ///< the undo mark lies on the disk, made lasting
    bool entryLasts_ = false;  ///< the folder's entry of the journal was made lasting
};

}  // namespace varnel
