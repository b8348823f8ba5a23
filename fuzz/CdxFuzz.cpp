// Any bytes as a compound index. Every tree is walked; one without a fault must take and give up entries and stay
// without. The tags' expressions are read, and evaluated on a record of zeros.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/MemoryFiles.h"
#include "platform/Error.h"
#include "providers/foxpro/CdxTree.h"
#include "providers/foxpro/KeyExpression.h"

using namespace varnel;
using namespace varnel::foxpro;

namespace {

/// A broken promise is a crash, which the fuzzer reports.
void Require(bool isKept) {
    if (!isKept) std::abort();
}

DbfHeader HeaderOfAnyTable() {
    DbfHeader header;
    header.recordBytes = 1;
    for (const char type : {'C', 'N', 'D', 'T', 'I', 'B', 'Y', 'L'}) {
        DbfField field;
        field.name = type;
        field.type = type;
        field.offset = header.recordBytes;
        field.length = type == 'I' ? 4 : type == 'L' ? 1 : 8;
        header.recordBytes += field.length;
        header.fields.push_back(field);
    }
    return header;
}

/// The field of the first letter, so that expressions of samples are read whole.
void EvaluateExpressions(const CdxTag& tag) {
    const DbfHeader header = HeaderOfAnyTable();
    const FindKeyField fields = [&](std::string_view name) {
        const DbfField* field = header.FindField(name.substr(0, 1));
        return field != nullptr ? field : &header.fields[0];
    };
    try {
        TagKeys keys(tag, header, fields);
        std::vector<std::uint8_t> record(header.recordBytes), key;
        if (keys.KeyOf({record, 1}, key)) Require(key.size() == tag.keyLength);
    } catch (const Error&) {  // beyond the grammar
    }
}

std::uint64_t CountEntries(const CdxFile& file, CdxPage root, KeyShape shape) {
    std::uint64_t count = 0;
    for (CdxWalk walk(file, root, shape); walk.Next();) ++count;
    return count;
}

void ChangeTree(CdxFile& file, std::size_t tag, KeyShape shape) {
    std::uint64_t count = CountEntries(file, file.Tags()[tag].root, shape);
    if (!FaultInTree(file, file.Tags()[tag].root, shape).empty()) return;
    CdxTree tree(file, tag, shape);
    std::vector<std::uint8_t> key(shape.length);
    for (std::uint32_t k = 0; k < 60; ++k) {
        for (std::size_t b = 0; b < key.size(); ++b)
            key[b] = static_cast<std::uint8_t>(b < k % 40 ? 65 + k % 7 : k * b);
        if (!tree.Has(key, k)) ++count;
        tree.Insert(key, k);
        Require(tree.Has(key, k));
        if (k % 3 != 0) continue;
        --count;
        Require(tree.Remove(key, k));
    }
    Require(FaultInTree(file, file.Tags()[tag].root, shape).empty());
    Require(CountEntries(file, file.Tags()[tag].root, shape) == count);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 32 * 1024) return 0;  // keep one run short
    const std::uint8_t pad = data[0] % 2 == 0 ? ' ' : 0;
    MemoryFiles files({data + 1, size - 1});
    try {
        CdxFile file(files, 0, "f");
        for (std::size_t k = 0; k < file.Tags().size() && k < 4; ++k) {
            EvaluateExpressions(file.Tags()[k]);
            ChangeTree(file, k, {file.Tags()[k].keyLength, pad});
        }
        file.Flush();
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
    return 0;
}
