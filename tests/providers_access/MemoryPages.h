// Pages in memory in place of a file, and an allocator that keeps account of them.
#pragma once

#include <cassert>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "providers/access/PageAllocator.h"
#include "providers/access/PageFile.h"

namespace varnel::access {

class MemoryPages : public PageFile, public PageAllocator {
public:
    explicit MemoryPages(const Layout& layout = kJet4Layout, PageNumber pages = 1) : layout_(layout) {
        for (PageNumber k = 0; k < pages; ++k) Append();
    }

    const Layout& Shape() const override { return layout_; }
    const std::string& StoredPath() const override { return path_; }
    std::unique_ptr<Hold> HoldForReading() override { return std::make_unique<Hold>(); }
    std::unique_ptr<Hold> HoldForWriting() override { return std::make_unique<Hold>(); }
    std::uint64_t Generation() const override { return 1; }
    PageNumber PageCount() const override { return static_cast<PageNumber>(pages_.size()); }
    PagePin Read(PageNumber page) override {
        std::shared_ptr<std::uint8_t[]> copy(new std::uint8_t[layout_.pageSize]);
        std::memcpy(copy.get(), At(page).data(), layout_.pageSize);
        return copy;
    }
    std::unique_ptr<Snapshot> Freeze(PageSet) override { return nullptr; }

    std::span<std::uint8_t> Change(PageNumber page) override {
        assert(inStep_);
        undo_.try_emplace(page, At(page));
        return At(page);
    }
    PageNumber Append() override {
        pages_.emplace_back(layout_.pageSize);
        return PageCount() - 1;
    }
    void BeginStep() override { inStep_ = true, undo_.clear(), takenBefore_ = taken; }
    void EndStep() override { inStep_ = false; }
    void UndoStep() noexcept override {
        inStep_ = false;
        for (const auto& [page, bytes] : undo_) At(page) = bytes;
        taken = takenBefore_;
    }
    void Commit() override {}
    void Rollback() override {}

    PageNumber Take(RowPointer) override {
        PageNumber page = 1;
        while (page < PageCount() && taken.Has(page)) ++page;
        if (page == PageCount()) Append();
        const auto bytes = Change(page);
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        taken.Add(page);
        return page;
    }
    void Give(RowPointer, PageNumber page) override {
        if (!taken.Has(page)) throw Error(ErrorKind::Misuse, "", "page " + std::to_string(page) + " is free already");
        taken.Remove(page);
    }

    /// Direct access, for tests that damage a page.
    std::vector<std::uint8_t>& At(PageNumber page) {
        if (page >= pages_.size()) throw Error(ErrorKind::Corrupt, path_, "no page " + std::to_string(page));
        return pages_[page];
    }

    PageSet taken;

private:
    Layout layout_;
    std::string path_ = "memory.mdb";
    std::vector<std::vector<std::uint8_t>> pages_;
    std::map<PageNumber, std::vector<std::uint8_t>> undo_;
    PageSet takenBefore_;
    bool inStep_ = false;
};

}  // namespace varnel::access
