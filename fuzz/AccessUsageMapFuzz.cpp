// Any bytes as a usage map: the first byte chooses the version, the second the row of page 1; the rest is a sparse
// file.
#include <cstddef>
#include <cstdint>

#include "fuzz/SparseFile.h"
#include "platform/Error.h"
#include "providers/access/UsageMapReader.h"
#include "tests/providers_access/MemoryPageFile.h"

using namespace varnel;
using namespace varnel::access;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kChoice = 2;
    if (size < kChoice || size > 16 * 1024) return 0;  // keep one run short
    const Layout& shape = data[0] % 2 == 0 ? kJet4Layout : kJet3Layout;
    MemoryPageFile file(ExpandSparseFile({data + kChoice, size - kChoice}, shape.pageSize), shape, "fuzz");
    try {
        const PageSet pages = ReadUsageMap(file, {1, data[1]});
        for (auto page = pages.Next(0); page; page = pages.Next(*page + 1)) {
        }
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
