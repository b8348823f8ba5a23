// The pages of an Access file in memory, without locks and without a check of the header: what a test or a fuzz target
// hands to the readers, and to writers that need no file.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "providers/access/PageFile.h"

namespace varnel::access {

class MemoryPageFile : public PageFile {
public:
    MemoryPageFile(const std::vector<std::uint8_t>& bytes, const Layout& shape, std::string name);

    const Layout& Shape() const override { return shape_; }
    const std::string& StoredPath() const override { return name_; }
    std::unique_ptr<Hold> HoldForReading() override { return std::make_unique<Hold>(); }
    std::unique_ptr<Hold> HoldForWriting() override { return std::make_unique<Hold>(); }
    std::uint64_t Generation() const override { return 1; }
    PageNumber PageCount() const override { return static_cast<PageNumber>(pages_.size()); }
    PagePin Read(PageNumber page) override { return At(page); }
    std::unique_ptr<Snapshot> Freeze(PageSet pages) override;
    std::span<std::uint8_t> Change(PageNumber page) override;
    PageNumber Append() override;
    void BeginStep() override { inStep_ = true, undo_.clear(); }
    void EndStep() override { inStep_ = false; }
    void UndoStep() noexcept override;
    void Commit() override {}
    void Rollback() override {}

    /// Direct access, for tests that damage a page. Each page is a block of its own: the sanitizers see a read beyond
    /// it.
    const std::shared_ptr<std::uint8_t[]>& At(PageNumber page) const;

private:
    std::vector<std::shared_ptr<std::uint8_t[]>> pages_;
    std::map<PageNumber, std::shared_ptr<std::uint8_t[]>> undo_;  ///< as the step found what it changed
    Layout shape_;
    std::string name_;
    bool inStep_ = false;
};

/// The layout that the byte at 0x14 of a file's header stands for.
const Layout& LayoutOf(const std::vector<std::uint8_t>& file);

}  // namespace varnel::access
