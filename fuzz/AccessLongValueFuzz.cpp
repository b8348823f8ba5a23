// Any pages as those of a long value. The first byte chooses the version, the second the length of the cell, which
// follows; the rest is a sparse file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "fuzz/SparseFile.h"
#include "platform/Error.h"
#include "providers/access/LongValueReader.h"
#include "tests/providers_access/MemoryPageFile.h"

using namespace varnel;
using namespace varnel::access;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kChoice = 2;
    if (size < kChoice || size > 16 * 1024) return 0;  // keep one run short
    const Layout& shape = data[0] % 2 == 0 ? kJet4Layout : kJet3Layout;
    const std::size_t cellSize = data[1] % 64;
    if (size < kChoice + cellSize) return 0;
    const std::vector<std::uint8_t> cell(data + kChoice, data + kChoice + cellSize);
    const std::span<const std::uint8_t> rest(data + kChoice + cellSize, size - kChoice - cellSize);
    MemoryPageFile file(ExpandSparseFile(rest, shape.pageSize), shape, "fuzz");
    const auto pages = file.Freeze({});
    LongValueReader reader(file, *pages);
    std::size_t delivered = 0;
    const auto take = [&](Bytes piece) -> Fault {
        delivered += piece.size();
        return nullptr;
    };
    const Fault fault = reader.Read(cell, take);
    // What is delivered as sound is as long as it was announced.
    if (fault == nullptr && !cell.empty() && delivered != (LoadU32(cell, 0) & 0x3FFFFFFF)) std::abort();
    return 0;
}
