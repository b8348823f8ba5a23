#include "providers/access/PageFrames.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::size_t kMostCleanBytes = std::size_t{8} << 20;
constexpr PageNumber kMostAhead = 64;
constexpr PageNumber kForwardGap = 16;  ///< pages that a reader going forward may leave out
constexpr std::size_t kMostSpareBuffers = 64;

}  // namespace

PageBuffer PageFrames::TakeBuffer() {
    if (spareBuffers_.empty()) return std::make_shared_for_overwrite<std::uint8_t[]>(pageSize_);
    PageBuffer buffer = std::move(spareBuffers_.back());
    spareBuffers_.pop_back();
    return buffer;
}

void PageFrames::GiveBuffer(PageBuffer buffer) noexcept {
    if (!buffer || buffer.use_count() > 1 || spareBuffers_.size() >= kMostSpareBuffers) return;
    if (spareBuffers_.capacity() == 0) return;  // reserved with the first frame, so that this never throws
    spareBuffers_.push_back(std::move(buffer));
}

void PageFrames::SetDirty(PageFrame& frame, bool dirty) noexcept {
    if (frame.dirty == dirty) return;
    frame.dirty = dirty;
    dirtyCount_ += dirty ? 1 : std::size_t{0} - 1;
}

const std::vector<PageNumber>& PageFrames::DirtyPages() {
    dirtyPages_.clear();
    for (const PageFrame& frame : frames_) {
        if (frame.dirty) dirtyPages_.push_back(frame.page);
    }
    std::sort(dirtyPages_.begin(), dirtyPages_.end());
    return dirtyPages_;
}

PageFrame& PageFrames::Place(PageNumber page, PageBuffer bytes) {
    if (spareBuffers_.capacity() == 0) spareBuffers_.reserve(kMostSpareBuffers);
    if (page >= frameOf_.size()) frameOf_.resize(std::max<std::size_t>(page + 1, frameOf_.size() * 2), kNone);
    if ((heldCount_ - dirtyCount_) * pageSize_ >= kMostCleanBytes) EvictOne();
    if (freeFrames_.empty()) {
        frames_.emplace_back();
        freeFrames_.reserve(frames_.size());
        freeFrames_.push_back(static_cast<std::uint32_t>(frames_.size() - 1));
    }
    frameOf_[page] = freeFrames_.back();
    freeFrames_.pop_back();
    ++heldCount_;
    PageFrame& frame = frames_[frameOf_[page]];
    frame.page = page;
    frame.bytes = std::move(bytes);
    frame.step = 0;
    frame.used = false;
    return frame;
}

void PageFrames::EvictOne() noexcept {
    for (std::size_t looked = 0; looked < 2 * frames_.size(); ++looked) {
        hand_ = hand_ + 1 < frames_.size() ? hand_ + 1 : 0;
        PageFrame& frame = frames_[hand_];
        if (!frame.bytes || frame.dirty || std::exchange(frame.used, false)) continue;
        Drop(frame.page);
        return;
    }
}

void PageFrames::Drop(PageNumber page) noexcept {
    if (page >= frameOf_.size() || frameOf_[page] == kNone) return;
    PageFrame& frame = frames_[frameOf_[page]];
    SetDirty(frame, false);
    GiveBuffer(std::exchange(frame.bytes, nullptr));
    freeFrames_.push_back(std::exchange(frameOf_[page], kNone));
    --heldCount_;
}

void PageFrames::Clear() noexcept {
    for (const PageFrame& frame : frames_) {
        if (frame.bytes) Drop(frame.page);
    }
    ahead_ = 1;
}

PageFrame& PageFrames::AddNew(PageNumber page) {
    PageBuffer bytes = TakeBuffer();
    std::memset(bytes.get(), 0, pageSize_);
    PageFrame& frame = Place(page, std::move(bytes));
    MarkDirty(frame);
    return frame;
}

/// How many pages to read from page on: more with each run that goes on where the last one ended.
PageNumber PageFrames::RunLength(PageNumber page) {
    const bool forward = page >= expected_ && page - expected_ <= kForwardGap;
    ahead_ = forward ? std::min(ahead_ * 4, kMostAhead) : 1;
    const std::uint64_t pages = files_.Size(0) / pageSize_;
    return page < pages ? static_cast<PageNumber>(std::min<std::uint64_t>(ahead_, pages - page)) : 1;
}

PageFrame& PageFrames::Load(PageNumber page) {
    if (PageFrame* held = Find(page)) return *held;
    const PageNumber count = RunLength(page);
    run_.resize(count * pageSize_);
    const std::size_t got = files_.Read(0, std::uint64_t{page} * pageSize_, run_);
    if (got < run_.size()) throw Error(ErrorKind::Io, "", "a page was cut off while it was read");
    expected_ = page + count;
    for (PageNumber k = count; k-- > 0;) {
        if (k > 0 && Find(page + k) != nullptr) continue;
        PageBuffer bytes = TakeBuffer();
        std::memcpy(bytes.get(), run_.data() + k * pageSize_, pageSize_);
        Place(page + k, std::move(bytes));
    }
    return *Find(page);
}

}  // namespace varnel::access
