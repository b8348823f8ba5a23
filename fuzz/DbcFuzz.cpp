// Any bytes as a container: two bytes say how many of the rest are its table, what follows is its memo file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "platform/Error.h"
#include "providers/foxpro/DbcCatalog.h"

using namespace varnel;
using namespace varnel::foxpro;

namespace {

class MemoryBytes : public ByteFile {
public:
    explicit MemoryBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint64_t Size() const override { return bytes_.size(); }
    std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const override {
        if (offset >= bytes_.size()) return 0;
        const auto part = bytes_.subspan(offset, std::min<std::size_t>(into.size(), bytes_.size() - offset));
        std::copy(part.begin(), part.end(), into.begin());
        return part.size();
    }

private:
    std::span<const std::uint8_t> bytes_;
};

void GiveRecords(const DbfHeader& header, std::span<const std::uint8_t> table,
                 const std::function<void(const KeyRecord&)>& visit) {
    RecordNumber number = 1;
    for (std::size_t at = header.headerBytes; at + header.recordBytes <= table.size(); at += header.recordBytes) {
        visit({table.subspan(at, header.recordBytes), number++});
    }
}

void ReadAll(std::span<const std::uint8_t> table, std::span<const std::uint8_t> memo) {
    const DbfHeader header = ReadDbfHeader(ByteView(table, "f"), table.size(), "f");
    const MemoryBytes bytes(memo);
    const auto reader = OpenMemoReader(bytes, MemoKind::Fpt);
    const DbcCatalog catalog(
        header, [&](const auto& visit) { GiveRecords(header, table, visit); }, reader.get());
    for (const DbcObject* object : catalog.Tables()) {
        catalog.ColumnsOf(*object);
        catalog.FindTable(object->name);
        catalog.PathOf(*object);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 32 * 1024) return 0;  // keep one run short
    const std::span<const std::uint8_t> rest(data + 2, size - 2);
    const std::size_t tableBytes = std::min<std::size_t>(data[0] + 256U * data[1], rest.size());
    try {
        ReadAll(rest.first(tableBytes), rest.subspan(tableBytes));
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
