// The pages of a file that are in memory: a bounded number of unchanged ones, and every changed one.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/access/Layout.h"

namespace varnel::access {

using PageBuffer = std::shared_ptr<std::uint8_t[]>;

struct PageFrame {
    PageNumber page = 0;
    PageBuffer bytes;        ///< null: the frame is free
    std::uint64_t step = 0;  ///< the last step that changed it
    bool dirty = false;      ///< changed, and not yet written to the file
    bool used = false;       ///< since the search for a victim passed by
};

class PageFrames {
public:
    /// files: the database is its file 0; must outlive the frames.
    PageFrames(JournaledFiles& files, std::size_t pageSize) : files_(files), pageSize_(pageSize) {}

    /// Null when the page is not in memory.
    PageFrame* Find(PageNumber page) {
        if (page >= frameOf_.size() || frameOf_[page] == kNone) return nullptr;
        PageFrame& frame = frames_[frameOf_[page]];
        frame.used = true;
        return &frame;
    }
    /// The page, read from the file when it is not in memory, together with those that a reader who goes forward asks
    /// for next. The reference lives until the next call. Throws Error{Io}.
    PageFrame& Load(PageNumber page);
    /// A page of zeros that the file does not have yet.
    PageFrame& AddNew(PageNumber page);
    void Drop(PageNumber page) noexcept;
    void Clear() noexcept;

    void MarkDirty(PageFrame& frame) noexcept { SetDirty(frame, true); }
    void MarkClean(PageFrame& frame) noexcept { SetDirty(frame, false); }
    std::size_t DirtyCount() const { return dirtyCount_; }
    /// In page order; valid until the next call.
    const std::vector<PageNumber>& DirtyPages();

    /// A buffer of one page; its bytes are anything.
    PageBuffer TakeBuffer();
    /// It is used again when nobody else has it.
    void GiveBuffer(PageBuffer buffer) noexcept;

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    void SetDirty(PageFrame& frame, bool dirty) noexcept;
    PageFrame& Place(PageNumber page, PageBuffer bytes);
    void EvictOne() noexcept;
    PageNumber RunLength(PageNumber page);

    JournaledFiles& files_;
    std::size_t pageSize_;
    std::deque<PageFrame> frames_;
    std::vector<std::uint32_t> freeFrames_;
    std::vector<std::uint32_t> frameOf_;  ///< by page number
    std::size_t heldCount_ = 0, dirtyCount_ = 0;
    std::size_t hand_ = 0;  ///< where the search for a victim goes on
    std::vector<PageBuffer> spareBuffers_;
    std::vector<std::uint8_t> run_;  ///< pages as they come from the file
    std::vector<PageNumber> dirtyPages_;
    PageNumber expected_ = 0;  ///< behind the last run that was read
    PageNumber ahead_ = 1;     ///< pages to read at once
};

}  // namespace varnel::access
