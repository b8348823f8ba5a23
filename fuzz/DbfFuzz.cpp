// Any bytes as a table. The first two say how long the .dbf is; what follows it is its memo file. Reading must end, and
// a column's values must be of its type.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "platform/Error.h"
#include "providers/foxpro/FieldReader.h"

using namespace varnel;
using namespace varnel::foxpro;

namespace {

class MemoryFile : public ByteFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint64_t Size() const override { return bytes_.size(); }
    std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const override {
        if (offset >= bytes_.size()) return 0;
        const auto part = bytes_.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(part.size(), into.size());
        std::copy_n(part.begin(), count, into.begin());
        return count;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

bool IsOfType(const Value& value, DataTypeEnum type) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return true;
        case ValueKind::Text:
            return type == adChar || type == adVarChar || type == adLongVarChar;
        case ValueKind::Bytes:
            return type == adBinary || type == adVarBinary || type == adLongVarBinary;
        case ValueKind::Decimal:
            return type == adNumeric;
        case ValueKind::DateTime:
            return type == adDBDate || type == adDBTimeStamp;
        case ValueKind::Integer:
            return type == adInteger;
        case ValueKind::Double:
            return type == adDouble;
        case ValueKind::Currency:
            return type == adCurrency;
        case ValueKind::Boolean:
            return type == adBoolean;
        default:
            return false;
    }
}

void ReadTable(std::span<const std::uint8_t> dbf, std::span<const std::uint8_t> memos) {
    const DbfHeader header = ReadDbfHeader(ByteView(dbf, "f"), dbf.size(), "f");
    const MemoryFile file(memos);
    const auto memo = OpenMemoReader(file, header.memo);
    const FieldReader reader(header, memos.empty() ? nullptr : memo.get());
    Value value;
    for (std::size_t at = header.headerBytes; at + header.recordBytes <= dbf.size(); at += header.recordBytes) {
        for (const DbfField& field : header.fields) {
            const CellFault fault = reader.Read(field, dbf.subspan(at, header.recordBytes), value);
            if (fault != CellFault::None && !value.IsNull()) std::abort();
            if (!IsOfType(value, ColumnOfField(field, header.dialect, "f").type)) std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 16 * 1024) return 0;  // keep one run short
    const std::span<const std::uint8_t> bytes(data + 2, size - 2);
    const std::size_t dbfBytes = std::min<std::size_t>(data[0] + 256u * data[1], bytes.size());
    try {
        ReadTable(bytes.first(dbfBytes), bytes.subspan(dbfBytes));
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
