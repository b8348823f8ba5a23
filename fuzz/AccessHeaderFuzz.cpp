// Any bytes as the header of an Access file: its signature is put in front, so that no luck is needed to get past it.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/Error.h"
#include "providers/access/FileHeader.h"

using namespace varnel;
using namespace varnel::access;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::string_view kStart("\0\1\0\0Standard Jet DB\0", 20);
    if (size < 1 || size > 4096) return 0;  // keep one run short
    std::vector<std::uint8_t> bytes(kStart.begin(), kStart.end());
    bytes.push_back(data[0] % 8);  // the version
    bytes.insert(bytes.end(), data + 1, data + size);
    try {
        const FileHeader header = ParseFileHeader(bytes, std::uint64_t{size} * 1000, "fuzz");
        CheckPassword(header, "secret", "fuzz");
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
