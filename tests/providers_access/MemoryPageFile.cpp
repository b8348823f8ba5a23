#include "tests/providers_access/MemoryPageFile.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"

namespace varnel::access {
namespace {

class MemorySnapshot : public PageFile::Snapshot {
public:
    explicit MemorySnapshot(PageFile& file) : file_(file) {}
    PagePin Read(PageNumber page) override { return file_.Read(page); }

private:
    PageFile& file_;
};

}  // namespace

MemoryPageFile::MemoryPageFile(const std::vector<std::uint8_t>& bytes, const Layout& shape, std::string name)
    : shape_(shape), name_(std::move(name)) {
    for (std::size_t at = 0; at + shape.pageSize <= bytes.size(); at += shape.pageSize)
        std::copy_n(bytes.data() + at, shape.pageSize, At(Append()).get());
}

std::unique_ptr<PageFile::Snapshot> MemoryPageFile::Freeze(PageSet /*pages*/) {
    return std::make_unique<MemorySnapshot>(*this);
}

std::span<std::uint8_t> MemoryPageFile::Change(PageNumber page) {
    if (!inStep_) throw Error(ErrorKind::Misuse, name_, name_ + " is changed outside a step");
    if (undo_.try_emplace(page, At(page)).second) {
        pages_[page].reset(new std::uint8_t[shape_.pageSize]);
        std::copy_n(undo_[page].get(), shape_.pageSize, pages_[page].get());
    }
    return {pages_[page].get(), shape_.pageSize};
}

PageNumber MemoryPageFile::Append() {
    pages_.emplace_back(new std::uint8_t[shape_.pageSize]{});
    return PageCount() - 1;
}

void MemoryPageFile::UndoStep() noexcept {
    inStep_ = false;
    for (const auto& [page, bytes] : undo_) pages_[page] = bytes;
}

const std::shared_ptr<std::uint8_t[]>& MemoryPageFile::At(PageNumber page) const {
    if (page >= PageCount())
        throw Error(ErrorKind::Corrupt, name_, name_ + ": there is no page " + std::to_string(page));
    return pages_[page];
}

const Layout& LayoutOf(const std::vector<std::uint8_t>& file) {
    const std::uint8_t version = file.size() > 0x14 ? file[0x14] : 1;
    return version == 0 ? kJet3Layout : version == 1 ? kJet4Layout : kAceLayout;
}

}  // namespace varnel::access
