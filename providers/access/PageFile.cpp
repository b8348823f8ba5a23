#include "providers/access/PageFile.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <utility>

#include "platform/Error.h"
#include "providers/access/FileHeader.h"
#include "providers/access/JournaledPageFile.h"

namespace varnel::access {
namespace {

constexpr std::size_t kMostDirtyPages = 2000;
constexpr std::uint64_t kMostBytes = 0x7FFFFFFF;  ///< of a database

FileHeader HeaderOf(const JournaledFiles& files, const std::string& storedPath) {
    std::array<std::uint8_t, kFileHeaderSize> start{};
    const std::size_t count = files.Read(0, 0, start);
    return ParseFileHeader(std::span(start).first(count), files.Size(0), storedPath);
}

}  // namespace

class JournaledPageFile::CountedHold : public PageFile::Hold {
public:
    CountedHold(std::shared_ptr<JournaledPageFile> file, std::unique_ptr<JournaledFiles::Hold> hold, bool writing)
        : file_(std::move(file)), hold_(std::move(hold)), writing_(writing) {
        if (writing_) ++file_->writeHolds_;
    }
    ~CountedHold() override {
        if (!writing_ || --file_->writeHolds_ > 0) return;
        file_->EndWriting();
        hold_.reset();  // rolls back what was written and not committed
        file_->TakePageCount();
    }

private:
    std::shared_ptr<JournaledPageFile> file_;
    std::unique_ptr<JournaledFiles::Hold> hold_;
    bool writing_;
};

class JournaledPageFile::FrozenPages : public PageFile::Snapshot {
public:
    FrozenPages(std::shared_ptr<JournaledPageFile> file, PageSet pages)
        : file_(std::move(file)), pages_(std::move(pages)) {
        file_->frozen_.push_back(this);
    }
    ~FrozenPages() override { file_->Unregister(this); }

    PagePin Read(PageNumber page) override {
        const auto kept = kept_.find(page);
        if (kept == kept_.end()) return file_->Read(page);
        if (kept->second) return kept->second;
        throw Error(ErrorKind::Io, file_->storedPath_,
                    "'" + file_->storedPath_ + "': the rows that were being read were taken back");
    }
    bool Wants(PageNumber page) const { return pages_.Has(page) && !kept_.contains(page); }
    /// bytes null: nobody has them any more.
    void Keep(PageNumber page, PagePin bytes) { kept_.emplace(page, std::move(bytes)); }

private:
    std::shared_ptr<JournaledPageFile> file_;
    PageSet pages_;
    std::unordered_map<PageNumber, PagePin> kept_;
};

std::shared_ptr<PageFile> OpenPageFile(std::string_view storedPath, bool readOnly) {
    return std::make_shared<JournaledPageFile>(storedPath, readOnly);
}

ByteView PageFile::View(const PagePin& pin, PageNumber page) const {
    return {{pin.get(), Shape().pageSize}, StoredPath() + ", page " + std::to_string(page)};
}

JournaledPageFile::JournaledPageFile(std::string_view storedPath, bool readOnly)
    : storedPath_(storedPath), files_(OpenJournaledFiles(storedPath, readOnly)) {
    const auto hold = files_->HoldForReading();
    const FileHeader header = HeaderOf(*files_, storedPath_);
    if (header.encrypted) {
        throw Error(ErrorKind::NotSupported, storedPath_,
                    "'" + storedPath_ + "' is an encrypted Access file, which cannot be read");
    }
    layout_ = header.layout;
    frames_.emplace(*files_, layout_->pageSize);
}

JournaledPageFile::~JournaledPageFile() = default;

std::unique_ptr<PageFile::Hold> JournaledPageFile::HoldForReading() {
    auto hold = files_->HoldForReading();
    Refresh();
    return std::make_unique<CountedHold>(shared_from_this(), std::move(hold), false);
}

std::unique_ptr<PageFile::Hold> JournaledPageFile::HoldForWriting() {
    if (layout_->version != Version::Jet4) {
        throw Error(ErrorKind::NotSupported, storedPath_,
                    "'" + storedPath_ + "' is of a version that is only read; save it as an Access 2000 or 2003 file");
    }
    auto hold = files_->HoldForWriting();
    Refresh();
    if (writeHolds_ == 0) userLock_ = std::make_unique<UserLockFile>(storedPath_);
    return std::make_unique<CountedHold>(shared_from_this(), std::move(hold), true);
}

/// Forgets what may be stale, when somebody else may have had the file.
void JournaledPageFile::Refresh() {
    if (seen_ == files_->Generation()) return;
    const FileHeader header = HeaderOf(*files_, storedPath_);
    if (header.layout != layout_ || header.encrypted) {
        throw Error(ErrorKind::Io, storedPath_, "'" + storedPath_ + "' was replaced by a file of another version");
    }
    frames_->Clear();
    TakePageCount();
    seen_ = files_->Generation();
}

void JournaledPageFile::EndWriting() noexcept {
    Discard();
    userLock_.reset();
}

PageFrame& JournaledPageFile::Frame(PageNumber page) {
    if (PageFrame* frame = frames_->Find(page)) return *frame;
    if (page < pageCount_) return frames_->Load(page);
    throw Error(ErrorKind::Corrupt, storedPath_,
                "'" + storedPath_ + "' has no page " + std::to_string(page) + "; it ends before page " +
                    std::to_string(pageCount_));
}

/// What the open step changes stays at its place until the step ends, so readers of it get a copy.
PagePin JournaledPageFile::Read(PageNumber page) {
    const PageFrame& frame = Frame(page);
    if (!stepOpen_ || frame.step != step_) return frame.bytes;
    PageBuffer copy = frames_->TakeBuffer();
    std::memcpy(copy.get(), frame.bytes.get(), layout_->pageSize);
    return copy;
}

std::unique_ptr<PageFile::Snapshot> JournaledPageFile::Freeze(PageSet pages) {
    return std::make_unique<FrozenPages>(shared_from_this(), std::move(pages));
}

void JournaledPageFile::Unregister(const FrozenPages* frozen) noexcept {
    frozen_.erase(std::find(frozen_.begin(), frozen_.end(), frozen));
}

void JournaledPageFile::RequireStep() const {
    if (stepOpen_ && writeHolds_ > 0) return;
    throw Error(ErrorKind::Misuse, storedPath_, "'" + storedPath_ + "' is changed outside a step");
}

std::span<std::uint8_t> JournaledPageFile::Change(PageNumber page) {
    RequireStep();
    PageFrame& frame = Frame(page);
    if (frame.step != step_) KeepOldBytes(frame);
    return {frame.bytes.get(), layout_->pageSize};
}

/// The old buffer is kept for undoing the step (and by whoever pinned it); the frame goes on with a copy.
void JournaledPageFile::KeepOldBytes(PageFrame& frame) {
    for (FrozenPages* frozen : frozen_) {
        if (frozen->Wants(frame.page)) frozen->Keep(frame.page, frame.bytes);
    }
    PageBuffer copy = frames_->TakeBuffer();
    std::memcpy(copy.get(), frame.bytes.get(), layout_->pageSize);
    oldPages_.push_back({frame.page, copy, frame.dirty});
    std::swap(oldPages_.back().bytes, frame.bytes);
    frame.step = step_;
    frames_->MarkDirty(frame);
}

PageNumber JournaledPageFile::Append() {
    RequireStep();
    if ((std::uint64_t{pageCount_} + 1) * layout_->pageSize > kMostBytes) {
        throw Error(ErrorKind::Constraint, storedPath_, "'" + storedPath_ + "' has reached its limit of 2 GB");
    }
    frames_->AddNew(pageCount_).step = step_;
    return pageCount_++;
}

void JournaledPageFile::BeginStep() {
    assert(!stepOpen_);
    ++step_;
    stepOpen_ = true;
    pageCountBefore_ = pageCount_;
}

void JournaledPageFile::EndStep() {
    assert(stepOpen_);
    stepOpen_ = false;
    for (OldPage& old : oldPages_) frames_->GiveBuffer(std::move(old.bytes));
    oldPages_.clear();
    if (frames_->DirtyCount() > kMostDirtyPages) WriteDirtyPages();
}

void JournaledPageFile::UndoStep() noexcept {
    if (!stepOpen_) return;
    stepOpen_ = false;
    for (OldPage& old : oldPages_) {
        PageFrame& frame = *frames_->Find(old.page);
        frames_->GiveBuffer(std::exchange(frame.bytes, std::move(old.bytes)));
        if (!old.dirty) frames_->MarkClean(frame);
    }
    oldPages_.clear();
    while (pageCount_ > pageCountBefore_) frames_->Drop(--pageCount_);
}

/// All old bytes are announced first, so that the journal waits for the disk once.
void JournaledPageFile::WriteDirtyPages() {
    const std::size_t size = layout_->pageSize;
    const std::vector<PageNumber>& pages = frames_->DirtyPages();
    for (const PageNumber page : pages) files_->Protect(0, std::uint64_t{page} * size, size);
    for (const PageNumber page : pages) {
        PageFrame& frame = *frames_->Find(page);
        written_.Add(page);
        files_->Write(0, std::uint64_t{page} * size, {frame.bytes.get(), size});
        frames_->MarkClean(frame);
    }
}

void JournaledPageFile::Commit() {
    assert(!stepOpen_);
    WriteDirtyPages();
    files_->Commit();
    written_ = {};
}

void JournaledPageFile::Rollback() {
    Discard();
    files_->Rollback();
    Refresh();
}

/// Drops the changes in memory. Who reads a state that is not the last commit point's keeps what can still be had of
/// it.
void JournaledPageFile::Discard() noexcept {
    UndoStep();
    const std::vector<PageNumber>& dirty = frames_->DirtyPages();
    if (dirty.empty() && written_.Empty()) return;
    for (FrozenPages* frozen : frozen_) {
        for (const PageNumber page : dirty) {
            if (frozen->Wants(page)) frozen->Keep(page, frames_->Find(page)->bytes);
        }
        for (auto page = written_.Next(0); page; page = written_.Next(*page + 1)) {
            if (!frozen->Wants(*page)) continue;
            const PageFrame* frame = frames_->Find(*page);
            frozen->Keep(*page, frame != nullptr ? frame->bytes : nullptr);
        }
    }
    frames_->Clear();
    written_ = {};
    ++discards_;
    TakePageCount();
}

void JournaledPageFile::TakePageCount() noexcept {
    pageCount_ = static_cast<PageNumber>(std::min(files_->Size(0), kMostBytes) / layout_->pageSize);
}

}  // namespace varnel::access
