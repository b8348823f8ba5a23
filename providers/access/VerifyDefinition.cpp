#include "providers/access/VerifyDefinition.h"

#include <algorithm>
#include <set>
#include <span>

#include "platform/ByteView.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {
namespace {

constexpr std::size_t kFrame = 8, kFreeAt = 2, kLengthAt = 8, kLongValueEntry = 10;
constexpr std::uint16_t kListEnd = 0xFFFF;

struct Sizes {
    std::size_t header, statistics, column, realIndex, logicalIndex, nameLength;
};
constexpr Sizes kJet4Sizes{0x3F, 12, 25, 52, 28, 2}, kJet3Sizes{0x2B, 8, 18, 39, 20, 1};

/// Bytes of a definition with so many names of what lengths; the names are walked over.
class LengthCheck {
public:
    LengthCheck(const ByteView& bytes, const TableDefinition& table, const Sizes& sizes)
        : bytes_(bytes), table_(table), sizes_(sizes) {}

    std::size_t Length() {
        std::size_t at = sizes_.header + table_.realIndexes.size() * sizes_.statistics;
        at = SkipNames(at + table_.columns.size() * sizes_.column, table_.columns.size());
        at += table_.realIndexes.size() * sizes_.realIndex;
        at = SkipNames(at + table_.logicalIndexes.size() * sizes_.logicalIndex, table_.logicalIndexes.size());
        while (bytes_.U16(at) != kListEnd) at += kLongValueEntry;
        return at + 2;
    }

private:
    std::size_t SkipNames(std::size_t at, std::size_t count) const {
        for (std::size_t k = 0; k < count; ++k) {
            at += sizes_.nameLength + (sizes_.nameLength == 1 ? bytes_.U8(at) : bytes_.U16(at));
        }
        return at;
    }

    const ByteView& bytes_;
    const TableDefinition& table_;
    const Sizes& sizes_;
};

/// The definition's length, and the free space of its pages.
void CheckPages(VerifyContext& context, const TableDefinition& table) {
    const std::size_t pageSize = context.file.Shape().pageSize;
    const bool old = context.file.Shape().version == Version::Jet3;
    std::vector<std::uint8_t> all;
    std::vector<std::size_t> free;
    for (const PageNumber page : table.pages) {
        const PagePin pin = context.file.Read(page);
        const Bytes bytes(pin.get(), pageSize);
        free.push_back(LoadU16(bytes, kFreeAt));
        const Bytes body = all.empty() ? bytes : bytes.subspan(kFrame);
        all.insert(all.end(), body.begin(), body.end());
    }
    const ByteView view(all, PlaceOf(table));
    const std::size_t length = view.U32(kLengthAt);
    if (LengthCheck(view, table, old ? kJet3Sizes : kJet4Sizes).Length() != length) {
        context.Find(PlaceOf(table, table.Id()) + ": the length of the definition is not the noted one.");
    }
    std::size_t left = length, room = pageSize;  // each page's room, the frame of the first one counts as content
    for (std::size_t k = 0; k < table.pages.size(); ++k) {
        const std::size_t used = std::min(left, room);
        const std::size_t expected = room - used < kFrame ? 0 : room - used - kFrame;
        if (!old && free[k] != expected) {
            context.Find(PlaceOf(table, table.pages[k]) + ": the free space of the definition is noted wrongly.");
        }
        if (used == 0) context.Find(PlaceOf(table, table.pages[k]) + ": the definition does not need this page.");
        left -= used;
        room = pageSize - kFrame;
    }
}

void CheckColumns(VerifyContext& context, const TableDefinition& table) {
    std::set<std::uint16_t> ids, numbers;
    std::set<std::string> names;
    std::vector<std::pair<std::size_t, std::size_t>> fixed;
    for (const Column& column : table.columns) {
        const std::string place = PlaceOf(table) + ", column '" + column.name + "': ";
        if (column.id >= table.columnIds || !ids.insert(column.id).second)
            context.Find(place + "its id is not its own.");
        if (!names.insert(FoldCase(column.name)).second) context.Find(place + "another one has the same name.");
        if (!column.IsFixed()) {
            const bool isOwn = numbers.insert(column.variableNumber).second;
            if (column.variableNumber >= table.variableColumns || !isOwn) {
                context.Find(place + "its place among the columns of varying length is not its own.");
            }
        } else if (column.type != ColumnType::Boolean) {
            fixed.emplace_back(column.fixedOffset, column.fixedOffset + column.length);
        }
    }
    std::sort(fixed.begin(), fixed.end());
    for (std::size_t k = 1; k < fixed.size(); ++k) {
        if (fixed[k].first < fixed[k - 1].second) context.Find(PlaceOf(table) + ": columns of fixed length overlap.");
    }
}

void CheckIndexes(VerifyContext& context, const TableDefinition& table) {
    std::set<std::uint32_t> numbers, used;
    std::string before;
    for (const LogicalIndex& index : table.logicalIndexes) {
        const std::string place = PlaceOf(table) + ", index '" + index.name + "': ";
        if (!numbers.insert(index.number).second) context.Find(place + "another one has the same number.");
        used.insert(index.realIndex);
    }
    for (std::size_t k = 0; k < table.realIndexes.size(); ++k) {
        const RealIndex& index = table.realIndexes[k];
        if (!used.contains(static_cast<std::uint32_t>(k))) context.Find(PlaceOf(table) + ": an index has no name.");
        if (index.columns.empty()) context.Find(PlaceOf(table) + ", index '" + index.name + "': it has no columns.");
    }
}

}  // namespace

void VerifyDefinition(VerifyContext& context, const TableDefinition& table) {
    const PageLedger::Use use = context.ledger.NewUse("the definition of table '" + table.name + "'");
    for (const PageNumber page : table.pages) {
        std::string fault = context.ledger.Claim(page, use, context.file.PageCount());
        if (!fault.empty()) context.Find(std::move(fault));
    }
    context.Try([&] { CheckPages(context, table); });
    CheckColumns(context, table);
    CheckIndexes(context, table);
}

}  // namespace varnel::access
