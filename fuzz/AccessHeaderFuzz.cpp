// Any bytes as the first page of an Access file.
#include <cstddef>
#include <cstdint>

#include "platform/Error.h"
#include "providers/access/FileHeader.h"

using namespace varnel;
using namespace varnel::access;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096) return 0;  // keep one run short
    constexpr std::uint64_t kFileSize = 65'536;
    try {
        LooksLikeAccessFile({data, size});
        CheckPassword(ParseFileHeader({data, size}, kFileSize, "fuzz"), "secret", "fuzz");
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
