#include "platform/RollbackJournal.h"

#include <unistd.h>
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <random>
#include <utility>

#include "platform/Error.h"

namespace varnel {
namespace {

using Moment = JournaledFiles::Moment;

constexpr std::uint64_t kUndoAt = 0, kSyncedAt = 512, kHolderAt = 1024, kFinishAt = 4096, kRecordsAt = 8192;
constexpr std::size_t kMarkSize = 32, kRecordHead = 32, kHolderSize = 256;
constexpr std::size_t kGatherMost = std::size_t{1} << 20;       ///< bytes of records kept in memory
constexpr std::uint32_t kPayloadMost = std::uint32_t{1} << 20;  ///< no record of ours has more
constexpr std::string_view kMagic = "VARNELJ1";

template <class Number>
void Put(std::span<std::uint8_t> bytes, std::size_t at, Number value) {
    for (std::size_t k = 0; k < sizeof(Number); ++k) bytes[at + k] = static_cast<std::uint8_t>(value >> (8 * k));
}

template <class Number>
Number Get(std::span<const std::uint8_t> bytes, std::size_t at) {
    Number value = 0;
    for (std::size_t k = 0; k < sizeof(Number); ++k) value |= static_cast<Number>(Number{bytes[at + k]} << (8 * k));
    return value;
}

std::uint64_t Mix(std::uint64_t sum, std::uint64_t word) {
    return std::rotl((sum ^ word) * 0x9E3779B97F4A7C15, 29) * 0xBF58476D1CE4E5B9;
}

std::uint64_t Checksum(std::uint64_t sum, std::span<const std::uint8_t> bytes) {
    std::size_t k = 0;
    for (; k + 8 <= bytes.size(); k += 8) sum = Mix(sum, Get<std::uint64_t>(bytes, k));
    for (; k < bytes.size(); ++k) sum = Mix(sum, bytes[k]);
    return Mix(sum, bytes.size());
}

/// Of a record at an offset of the journal: one that was copied elsewhere is not valid there.
std::uint64_t RecordChecksum(std::uint64_t salt, std::uint64_t at, std::span<const std::uint8_t> head,
                             std::span<const std::uint8_t> payload) {
    return Checksum(Checksum(Mix(salt, at), head.first(24)), payload);
}

std::uint64_t RandomSalt() {
    std::random_device random;
    return (std::uint64_t{random()} << 32 | random()) | 1;  // never 0, which means "nothing"
}

std::string HolderText() {
    return MachineName().substr(0, 200) + ", process " + std::to_string(getpid());
}

}  // namespace

RollbackJournal::RollbackJournal(std::string localPath, std::string storedPath, Tell tell)
    : local_(std::move(localPath)), stored_(std::move(storedPath)), tell_(std::move(tell)), salt_(RandomSalt()) {
    Drop();
}

void RollbackJournal::Open() {
    if (!IsOpen() || file_.WriteRefusal() != 0 || !file_.StillThere()) {
        file_ = DiskFile(local_, stored_, DiskFile::Mode::CreateWhenMissing);
        entryLasts_ = begun_ = false;
    }
    RefuseForeignFile();
    WriteHolder();
}

/// Another program's file of that name is not written over.
void RollbackJournal::RefuseForeignFile() const {
    std::array<std::uint8_t, kMagic.size()> start{};
    const std::size_t count = file_.ReadAt(0, start);
    const bool empty = std::all_of(start.begin(), start.end(), [](std::uint8_t byte) { return byte == 0; });
    if (empty || (count == start.size() && std::equal(start.begin(), start.end(), kMagic.begin()))) return;
    throw Error(ErrorKind::Io, stored_, "The file '" + stored_ + "' is another program's; the database is left alone");
}

/// Not waited for: it only informs.
void RollbackJournal::WriteHolder() {
    std::array<std::uint8_t, kHolderSize> bytes{};
    const std::string text = HolderText();
    std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
    file_.WriteAt(kHolderAt, bytes);
}

std::string RollbackJournal::Holder() const {
    const DiskFile file = OpenDiskFileIfExists(local_, stored_, DiskFile::Mode::ExistingToRead);
    std::array<std::uint8_t, kHolderSize> bytes{};
    if (!file.IsOpen() || file.ReadAt(kHolderAt, bytes) < bytes.size()) return "";
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
}

void RollbackJournal::Close() noexcept {
    file_.Close();
    Drop();
}

void RollbackJournal::Discard() noexcept {
    if (IsOpen()) file_.RemoveName();
    Close();
}

void RollbackJournal::Drop() noexcept {
    gathered_.clear();
    writtenEnd_ = syncedEnd_ = kRecordsAt;
    begun_ = false;
}

void RollbackJournal::Add(const JournalRecord& record) {
    std::array<std::uint8_t, kRecordHead> head{};
    Put(head, 0, static_cast<std::uint32_t>(record.kind));
    Put(head, 4, record.member);
    Put(head, 8, record.offset);
    Put(head, 16, static_cast<std::uint32_t>(record.payload.size()));
    Put(head, 20, static_cast<std::uint32_t>(record.created));
    Put(head, 24, RecordChecksum(salt_, End(), head, record.payload));
    gathered_.insert(gathered_.end(), head.begin(), head.end());
    gathered_.insert(gathered_.end(), record.payload.begin(), record.payload.end());
    if (gathered_.size() >= kGatherMost) Flush();
}

void RollbackJournal::Flush() {
    if (gathered_.empty()) return;
    tell_(Moment::JournalWrite);
    file_.WriteAt(writtenEnd_, gathered_);
    writtenEnd_ += gathered_.size();
    gathered_.clear();
}

void RollbackJournal::Sync() {
    if (!Waiting()) return;
    Flush();
    if (!begun_) {
        tell_(Moment::JournalWrite);
        WriteMark(kUndoAt, {salt_, kRecordsAt});
    }
    tell_(Moment::JournalSync);
    file_.Sync();
    if (!entryLasts_) SyncFolder(FolderPart(local_), stored_);
    entryLasts_ = begun_ = true;
    // Not waited for: when a power cut takes it back, the records behind it only count as possibly torn.
    WriteMark(kSyncedAt, {salt_, writtenEnd_});
    syncedEnd_ = writtenEnd_;
}

void RollbackJournal::MarkFinish(const std::vector<Removal>& removals) {
    const std::uint64_t from = End();
    for (const Removal& removal : removals) {
        JournalRecord record;
        record.kind = JournalRecord::Kind::Removal;
        record.offset = removal.identity;
        record.payload = {reinterpret_cast<const std::uint8_t*>(removal.name.data()), removal.name.size()};
        Add(record);
    }
    Sync();
    tell_(Moment::JournalWrite);
    WriteMark(kFinishAt, {salt_, from});
    tell_(Moment::JournalSync);
    file_.Sync();
}

/// The undo mark goes first: while the finish mark lasts, it alone counts.
void RollbackJournal::Reset() {
    tell_(Moment::JournalReset);
    const bool finishes = ReadMark(kFinishAt).has_value();
    WriteMark(kUndoAt, {});
    file_.Sync();
    if (finishes) {
        tell_(Moment::JournalReset);
        WriteMark(kFinishAt, {});
        file_.Sync();
    }
    salt_ += 2;
    Drop();
}

void RollbackJournal::WriteMark(std::uint64_t at, Mark mark) {
    std::array<std::uint8_t, kMarkSize> bytes{};
    std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
    Put(bytes, 8, mark.salt);
    Put(bytes, 16, mark.offset);
    Put(bytes, 24, Checksum(at, std::span(bytes).first(24)));
    file_.WriteAt(at, bytes);
}

std::optional<RollbackJournal::Mark> RollbackJournal::ReadMark(std::uint64_t at) const {
    std::array<std::uint8_t, kMarkSize> bytes{};
    if (file_.ReadAt(at, bytes) < bytes.size()) return std::nullopt;
    if (!std::equal(kMagic.begin(), kMagic.end(), bytes.begin())) return std::nullopt;
    if (Get<std::uint64_t>(bytes, 24) != Checksum(at, std::span(bytes).first(24))) return std::nullopt;
    const Mark mark{Get<std::uint64_t>(bytes, 8), Get<std::uint64_t>(bytes, 16)};
    return mark.salt != 0 ? std::optional(mark) : std::nullopt;
}

RollbackJournal::Plan RollbackJournal::Wanted() {
    if (!IsOpen()) file_ = OpenDiskFileIfExists(local_, stored_, DiskFile::Mode::Existing);
    if (!IsOpen()) return Plan::Nothing;
    if (ReadMark(kFinishAt)) return Plan::Finish;
    return ReadMark(kUndoAt) ? Plan::Undo : Plan::Nothing;
}

void RollbackJournal::Replay(Plan plan, const std::function<void(const JournalRecord&)>& give) {
    const std::optional<Mark> mark = ReadMark(plan == Plan::Finish ? kFinishAt : kUndoAt);
    if (!mark) return;
    const std::optional<Mark> synced = ReadMark(kSyncedAt);
    const std::uint64_t certain = synced && synced->salt == mark->salt ? synced->offset : 0;
    JournalRecord record;
    std::uint64_t at = mark->offset;
    while (const std::optional<std::uint64_t> next = ReadRecord(at, mark->salt, record)) {
        give(record);
        at = *next;
    }
    if (at >= certain) return;
    throw Error(ErrorKind::Corrupt, stored_,
                "The journal '" + stored_ + "' is damaged at byte " + std::to_string(at) +
                    "; the last change of the database cannot be taken back");
}

/// Reads a record into record (whose payload lives until the next one is read); returns where the next one begins, or
/// nothing when there is no valid record of that salt.
std::optional<std::uint64_t> RollbackJournal::ReadRecord(std::uint64_t at, std::uint64_t salt, JournalRecord& record) {
    std::array<std::uint8_t, kRecordHead> head{};
    if (file_.ReadAt(at, head) < head.size()) return std::nullopt;
    const auto size = Get<std::uint32_t>(head, 16);
    if (size > kPayloadMost) return std::nullopt;
    payload_.resize(size);
    if (file_.ReadAt(at + head.size(), payload_) < size) return std::nullopt;
    if (Get<std::uint64_t>(head, 24) != RecordChecksum(salt, at, head, payload_)) return std::nullopt;
    record.kind = static_cast<JournalRecord::Kind>(Get<std::uint32_t>(head, 0));
    record.member = Get<std::uint32_t>(head, 4);
    record.offset = Get<std::uint64_t>(head, 8);
    record.created = Get<std::uint32_t>(head, 20) != 0;
    record.payload = payload_;
    return at + head.size() + size;
}

}  // namespace varnel
