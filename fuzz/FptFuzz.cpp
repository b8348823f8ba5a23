// Any bytes as a memo file, behind a byte for its kind: every block is read. A memo is never longer than the file, and
// what is read as a whole does not depend on how many bytes one read gives.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "providers/foxpro/MemoReader.h"

using namespace varnel::foxpro;

namespace {

class MemoryFile : public ByteFile {
public:
    MemoryFile(std::span<const std::uint8_t> bytes, std::size_t atOnce) : bytes_(bytes), atOnce_(atOnce) {}
    std::uint64_t Size() const override { return bytes_.size(); }
    std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const override {
        if (offset >= bytes_.size()) return 0;
        const auto part = bytes_.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min({part.size(), into.size(), atOnce_});
        std::copy_n(part.begin(), count, into.begin());
        return count;
    }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t atOnce_;
};

bool ReadMemo(const ByteFile& file, MemoKind kind, std::uint64_t block, std::string& memo) {
    memo.clear();
    return OpenMemoReader(file, kind)->Read(block, [&](std::string_view piece) { memo.append(piece); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr MemoKind kKinds[] = {MemoKind::Fpt, MemoKind::Dbt3, MemoKind::Dbt4, MemoKind::Smt};
    if (size < 1 || size > 8 * 1024) return 0;  // keep one run short
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    const MemoKind kind = kKinds[data[0] % 4];
    const MemoryFile whole(bytes, ~std::size_t{0}), slow(bytes, 600);
    std::string memo, again;
    for (std::uint64_t block = 1; block < 64; ++block) {
        const bool isRead = ReadMemo(whole, kind, block, memo);
        if (memo.size() > bytes.size()) std::abort();
        if (isRead != ReadMemo(slow, kind, block, again) || (isRead && memo != again)) std::abort();
    }
    ReadMemo(whole, kind, 0xFFFF'FFFF, memo);
    return 0;
}
