#include "fuzz/SparseFile.h"

#include <algorithm>

namespace varnel {

std::vector<std::uint8_t> ExpandSparseFile(std::span<const std::uint8_t> bytes, std::size_t pageSize) {
    constexpr std::size_t kRecordHeader = 4;
    std::vector<std::uint8_t> file;
    while (bytes.size() >= kRecordHeader) {
        const std::size_t page = bytes[0];
        const std::size_t offset = (bytes[1] | bytes[2] << 8) % pageSize;
        const std::size_t count =
            std::min({std::size_t{bytes[3]} + 1, bytes.size() - kRecordHeader, pageSize - offset});
        if (file.size() < (page + 1) * pageSize) file.resize((page + 1) * pageSize);
        std::copy_n(bytes.begin() + kRecordHeader, count,
                    file.begin() + static_cast<std::ptrdiff_t>(page * pageSize + offset));
        bytes = bytes.subspan(kRecordHeader + count);
    }
    return file;
}

}  // namespace varnel
