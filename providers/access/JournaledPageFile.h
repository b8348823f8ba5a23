// The implementation of PageFile over a group of journaled files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/access/PageFile.h"
#include "providers/access/PageFrames.h"
#include "providers/access/UserLockFile.h"

namespace varnel::access {

class JournaledPageFile : public PageFile, public std::enable_shared_from_this<JournaledPageFile> {
public:
    JournaledPageFile(std::string_view storedPath, bool readOnly);
    ~JournaledPageFile() override;

    const Layout& Shape() const override { return *layout_; }
    const std::string& StoredPath() const override { return storedPath_; }
    std::unique_ptr<Hold> HoldForReading() override;
    std::unique_ptr<Hold> HoldForWriting() override;
    std::uint64_t Generation() const override { return files_->Generation() + discards_; }
    PageNumber PageCount() const override { return pageCount_; }
    PagePin Read(PageNumber page) override;
    std::unique_ptr<Snapshot> Freeze(PageSet pages) override;
    std::span<std::uint8_t> Change(PageNumber page) override;
    PageNumber Append() override;
    void BeginStep() override;
    void EndStep() override;
    void UndoStep() noexcept override;
    void Commit() override;
    void Rollback() override;

private:
    class CountedHold;
    class FrozenPages;
    /// A page as it was before the open step.
    struct OldPage {
        PageNumber page = 0;
        PageBuffer bytes;
        bool dirty = false;
    };

    void Refresh();
    void TakePageCount() noexcept;
    void EndWriting() noexcept;
    PageFrame& Frame(PageNumber page);
    void RequireStep() const;
    void KeepOldBytes(PageFrame& frame);
    void WriteDirtyPages();
    void Discard() noexcept;
    void Unregister(const FrozenPages* frozen) noexcept;

    std::string storedPath_;
    std::unique_ptr<JournaledFiles> files_;
    const Layout* layout_ = nullptr;
    std::optional<PageFrames> frames_;
    std::unique_ptr<UserLockFile> userLock_;
    PageNumber pageCount_ = 0;
    std::uint64_t seen_ = 0;      ///< the generation of files_ that frames_ and pageCount_ belong to
    std::uint64_t discards_ = 0;  ///< how often changes in memory were dropped
    int writeHolds_ = 0;

    std::uint64_t step_ = 0;
    bool stepOpen_ = false;
    PageNumber pageCountBefore_ = 0;  ///< the open step
    std::vector<OldPage> oldPages_;   ///< of the open step
    PageSet written_;                 ///< to the file, since the last commit point
    std::vector<FrozenPages*> frozen_;
};

}  // namespace varnel::access
