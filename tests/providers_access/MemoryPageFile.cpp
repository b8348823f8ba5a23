#include "tests/providers_access/MemoryPageFile.h"

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

[[noreturn]] void ThrowReadOnly(const std::string& name) {
    throw Error(ErrorKind::NotSupported, name, "Cannot update. Database or object is read-only.");
}

}  // namespace

MemoryPageFile::MemoryPageFile(std::vector<std::uint8_t> bytes, const Layout& shape, std::string name)
    : bytes_(std::make_shared<std::vector<std::uint8_t>>(std::move(bytes))), shape_(shape), name_(std::move(name)) {}

std::unique_ptr<PageFile::Hold> MemoryPageFile::HoldForWriting() {
    ThrowReadOnly(name_);
}

PagePin MemoryPageFile::Read(PageNumber page) {
    if (page >= PageCount())
        throw Error(ErrorKind::Corrupt, name_, name_ + ": there is no page " + std::to_string(page));
    // Shares the file's bytes: nothing is copied, and a read beyond the file is seen by the sanitizers.
    return PagePin(bytes_, bytes_->data() + std::size_t{page} * shape_.pageSize);
}

std::unique_ptr<PageFile::Snapshot> MemoryPageFile::Freeze(PageSet /*pages*/) {
    return std::make_unique<MemorySnapshot>(*this);
}

std::span<std::uint8_t> MemoryPageFile::Change(PageNumber /*page*/) {
    ThrowReadOnly(name_);
}

PageNumber MemoryPageFile::Append() {
    ThrowReadOnly(name_);
}

const Layout& LayoutOf(const std::vector<std::uint8_t>& file) {
    const std::uint8_t version = file.size() > 0x14 ? file[0x14] : 1;
    return version == 0 ? kJet3Layout : version == 1 ? kJet4Layout : kAceLayout;
}

}  // namespace varnel::access
