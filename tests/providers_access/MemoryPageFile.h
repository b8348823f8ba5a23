// The pages of an Access file in memory, only read, without locks and without a check of the header: what a test or a
// fuzz target hands to the readers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "providers/access/PageFile.h"

namespace varnel::access {

class MemoryPageFile : public PageFile {
public:
    MemoryPageFile(std::vector<std::uint8_t> bytes, const Layout& shape, std::string name);

    const Layout& Shape() const override { return shape_; }
    const std::string& StoredPath() const override { return name_; }
    std::unique_ptr<Hold> HoldForReading() override { return std::make_unique<Hold>(); }
    std::unique_ptr<Hold> HoldForWriting() override;
    std::uint64_t Generation() const override { return 1; }
    PageNumber PageCount() const override { return static_cast<PageNumber>(bytes_->size() / shape_.pageSize); }
    PagePin Read(PageNumber page) override;
    std::unique_ptr<Snapshot> Freeze(PageSet pages) override;
    std::span<std::uint8_t> Change(PageNumber page) override;
    PageNumber Append() override;
    void BeginStep() override {}
    void EndStep() override {}
    void UndoStep() noexcept override {}
    void Commit() override {}
    void Rollback() override {}

private:
    std::shared_ptr<std::vector<std::uint8_t>> bytes_;
    Layout shape_;
    std::string name_;
};

/// The layout that the byte at 0x14 of a file's header stands for.
const Layout& LayoutOf(const std::vector<std::uint8_t>& file);

}  // namespace varnel::access
