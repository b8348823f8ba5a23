#include "providers/access/TableProperties.h"

#include <algorithm>
#include <vector>

#include "platform/ByteView.h"
#include "platform/Error.h"
#include "providers/access/StoredBytes.h"
#include "providers/access/UnicodeText.h"

namespace varnel::access {
namespace {

constexpr std::size_t kSignatureSize = 4, kBlockHeader = 6, kEntryHeader = 8;
constexpr std::uint16_t kNameList = 0x80, kColumnBlock = 1;
constexpr std::uint8_t kBooleanProperty = 1;

class PropertyReader {
public:
    PropertyReader(const CodePage* names, const std::string& place, TableDefinition& table)
        : codePage_(names), place_(place), table_(table) {}

    void ReadBlocks(const ByteView& blob);

private:
    void ReadNames(const ByteView& block);
    void ReadColumn(const ByteView& block);
    void Apply(const ByteView& entry, Column& column) const;
    std::string Text(Bytes stored) const;
    ByteView Within(const ByteView& outer, std::size_t at, std::size_t size) const {
        return ByteView(outer.Part(at, size), place_);
    }
    [[noreturn]] void Throw(const std::string& what) const {
        throw Error(ErrorKind::Corrupt, place_, place_ + ": the properties of a table cannot be read: " + what);
    }

    const CodePage* codePage_;
    const std::string& place_;
    TableDefinition& table_;
    std::vector<std::string> propertyNames_;
};

std::string PropertyReader::Text(Bytes stored) const {
    std::string text;
    if (codePage_ != nullptr) {
        codePage_->DecodeSome(text, {reinterpret_cast<const char*>(stored.data()), stored.size()});
    } else if (const Fault fault = AppendUnicodeText(stored, text)) {
        Throw(fault);
    }
    return text;
}

void PropertyReader::ReadBlocks(const ByteView& blob) {
    std::size_t at = kSignatureSize;
    while (at < blob.Size()) {
        const std::size_t length = blob.U32(at);
        const std::uint16_t kind = blob.U16(at + 4);
        if (length < kBlockHeader) Throw("a part of them has no length");
        const ByteView block = Within(blob, at + kBlockHeader, length - kBlockHeader);
        if (kind == kNameList) ReadNames(block);
        if (kind == kColumnBlock) ReadColumn(block);
        at += length;
    }
}

void PropertyReader::ReadNames(const ByteView& block) {
    for (std::size_t at = 0; at < block.Size();) {
        const std::size_t length = block.U16(at);
        propertyNames_.push_back(Text(block.Part(at + 2, length)));
        at += 2 + length;
    }
}

void PropertyReader::ReadColumn(const ByteView& block) {
    const std::size_t nameLength = block.U16(4);
    const std::string name = Text(block.Part(6, nameLength));
    const auto column = std::find_if(table_.columns.begin(), table_.columns.end(),
                                     [&](const Column& candidate) { return candidate.name == name; });
    if (column == table_.columns.end()) return;
    for (std::size_t at = 6 + nameLength; at < block.Size();) {
        const std::size_t length = block.U16(at);
        if (length < kEntryHeader) Throw("one of them has no length");
        Apply(Within(block, at, length), *column);
        at += length;
    }
}

void PropertyReader::Apply(const ByteView& entry, Column& column) const {
    const std::size_t name = entry.U16(4);
    if (entry.U8(3) != kBooleanProperty || name >= propertyNames_.size() || entry.U16(6) == 0) return;
    const bool isSet = entry.U8(kEntryHeader) != 0;
    if (propertyNames_[name] == "Required") column.required = isSet;
    if (propertyNames_[name] == "AllowZeroLength") column.zeroLengthAllowed = isSet;
}

}  // namespace

void ApplyProperties(std::span<const std::uint8_t> blob, const CodePage* names, const std::string& place,
                     TableDefinition& table) {
    const ByteView view(blob, place);
    using namespace std::string_view_literals;
    if (!view.StartsWithAt(0, "MR2\0"sv) && !view.StartsWithAt(0, "KKD\0"sv)) return;
    PropertyReader(names, place, table).ReadBlocks(view);
}

}  // namespace varnel::access
