#include "providers/access/DefinitionWriter.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {
namespace {

constexpr std::uint32_t kBlockMark = 0x659, kRealIndexMark = 0x783;
constexpr std::size_t kRowsAt = 0x10, kAutonumberAt = 0x14, kStatisticsAt = 0x3F, kStatisticsBytes = 12;
constexpr std::size_t kFrameBytes = 8, kLongestName = 64, kIndexColumns = 10;
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr std::uint8_t kStoredFlag = 0x80;  ///< set in every real index of Jet 4

void AppendName(std::string& bytes, const std::string& name) {
    std::string utf16;
    AppendUtf16FromUtf8(utf16, name);
    if (utf16.size() > 2 * kLongestName)
        throw Error(ErrorKind::Constraint, name, "The name '" + name + "' is longer than 64 characters.");
    AppendU16(bytes, utf16.size());
    bytes += utf16;
}

void AppendHeader(std::string& bytes, const TableDefinition& definition) {
    bytes.assign(kFrameBytes, '\0');
    bytes[0] = 2;
    bytes[1] = 1;
    AppendU32(bytes, 0);  // the length, set at the end
    AppendU32(bytes, kBlockMark);
    AppendU32(bytes, definition.rowCount);
    AppendU32(bytes, definition.lastAutonumber);
    AppendU32(bytes, static_cast<std::uint32_t>(definition.autonumberStep));
    bytes.append(12, '\0');
    AppendU8(bytes, definition.systemTable ? 'S' : 'N');
    AppendU16(bytes, definition.columnIds);
    AppendU16(bytes, definition.variableColumns);
    AppendU16(bytes, definition.columns.size());
    AppendU32(bytes, static_cast<std::uint32_t>(definition.logicalIndexes.size()));
    AppendU32(bytes, static_cast<std::uint32_t>(definition.realIndexes.size()));
    AppendU32(bytes, PackRowPointer(definition.ownedMap));
    AppendU32(bytes, PackRowPointer(definition.roomMap));
    for (const RealIndex& index : definition.realIndexes) {
        AppendU32(bytes, 0);
        AppendU32(bytes, index.differentKeys);
        AppendU32(bytes, 0);
    }
}

//   OFFSET SIZE                                        OFFSET SIZE
//   0      1   type                                    0x0B   4   precision, scale; or language, sort id and version
//   1      4   0x659                                   0x0F   2   flags
//   5      2   column id                               0x11   4   0
//   7      2   number among the variable columns       0x15   2   offset in the fixed area
//   9      2   ordinal                                 0x17   2   length
void AppendColumn(std::string& bytes, const Column& column) {
    AppendU8(bytes, static_cast<std::uint8_t>(column.type));
    AppendU32(bytes, kBlockMark);
    AppendU16(bytes, column.id);
    AppendU16(bytes, column.variableNumber);
    AppendU16(bytes, column.ordinal);
    if (column.type == ColumnType::Numeric) {
        AppendU8(bytes, column.precision);
        AppendU8(bytes, column.scale);
        AppendU16(bytes, 0);
    } else {
        AppendU16(bytes, column.sortOrder.language);
        AppendU8(bytes, column.sortOrder.sortId);
        AppendU8(bytes, column.sortOrder.sortVersion);
    }
    AppendU8(bytes, column.flags);
    AppendU8(bytes, column.moreFlags);
    AppendU32(bytes, 0);
    AppendU16(bytes, column.IsFixed() ? column.fixedOffset : 0);
    AppendU16(bytes, column.length);
}

//   OFFSET SIZE
//   0      4    0x783
//   4      30   ten columns: u16 id, u8 ascending
//   0x22   4    map of the index's pages
//   0x26   4    root page
//   0x2E   1    flags
void AppendRealIndex(std::string& bytes, const RealIndex& index) {
    AppendU32(bytes, kRealIndexMark);
    for (std::size_t k = 0; k < kIndexColumns; ++k) {
        const bool used = k < index.columns.size();
        AppendU16(bytes, used ? index.columns[k].columnId : kNoColumn);
        AppendU8(bytes, used && index.columns[k].ascending ? 1 : 0);
    }
    AppendU32(bytes, PackRowPointer(index.map));
    AppendU32(bytes, index.root);
    AppendU32(bytes, 0);
    AppendU8(bytes, index.flags | kStoredFlag);
    bytes.append(5, '\0');
}

void AppendLogicalIndex(std::string& bytes, const LogicalIndex& index) {
    AppendU32(bytes, kBlockMark);
    AppendU32(bytes, index.number);
    AppendU32(bytes, index.realIndex);
    AppendU8(bytes, index.relationSide);
    AppendU32(bytes, index.partnerNumber);
    AppendU32(bytes, index.partnerTable);
    AppendU8(bytes, index.onUpdate);
    AppendU8(bytes, index.onDelete);
    AppendU8(bytes, index.kind);
    AppendU32(bytes, 0);
}

void AppendIndexes(std::string& bytes, const TableDefinition& definition) {
    for (const RealIndex& index : definition.realIndexes) AppendRealIndex(bytes, index);
    std::vector<const LogicalIndex*> sorted;
    for (const LogicalIndex& index : definition.logicalIndexes) sorted.push_back(&index);
    std::stable_sort(sorted.begin(), sorted.end(), [](const LogicalIndex* a, const LogicalIndex* b) {
        return FoldCase(a->name) < FoldCase(b->name);
    });
    for (const LogicalIndex* index : sorted) AppendLogicalIndex(bytes, *index);
    for (const LogicalIndex* index : sorted) AppendName(bytes, index->name);
}

}  // namespace

std::string DefinitionBytes(const TableDefinition& definition) {
    std::string bytes;
    AppendHeader(bytes, definition);
    for (const Column& column : definition.columns) AppendColumn(bytes, column);
    for (const Column& column : definition.columns) AppendName(bytes, column.name);
    AppendIndexes(bytes, definition);
    for (const Column& column : definition.columns) {
        if (!column.IsLong()) continue;
        AppendU16(bytes, column.id);
        AppendU32(bytes, PackRowPointer(column.ownedMap));
        AppendU32(bytes, PackRowPointer(column.roomMap));
    }
    AppendU16(bytes, 0xFFFF);  // Access refuses a definition that ends without it
    for (std::size_t k = 0; k < 4; ++k) bytes[kFrameBytes + k] = static_cast<char>(bytes.size() >> (8 * k));
    return bytes;
}

std::size_t DefinitionPageCount(std::size_t bytes) {
    const std::size_t perPage = kJet4Layout.pageSize - kFrameBytes;
    return (bytes - kFrameBytes + perPage - 1) / perPage;
}

void FillDefinitionPage(std::span<std::uint8_t> page, std::size_t k, const std::string& bytes, PageNumber next) {
    const std::size_t perPage = page.size() - kFrameBytes, from = kFrameBytes + k * perPage;
    const std::size_t count = std::min(perPage, bytes.size() - from);
    page[0] = 2;
    page[1] = 1;
    StoreU16(page, 2, count + kFrameBytes < perPage ? perPage - kFrameBytes - count : 0);
    StoreU32(page, 4, next);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), count, page.begin() + kFrameBytes);
}

void WriteDefinition(PageFile& file, const TableDefinition& definition) {
    const std::string bytes = DefinitionBytes(definition);
    for (std::size_t k = 0; k < definition.pages.size(); ++k) {
        const std::span<std::uint8_t> page = file.Change(definition.pages[k]);
        std::fill(page.begin(), page.end(), std::uint8_t{0});
        FillDefinitionPage(page, k, bytes, k + 1 < definition.pages.size() ? definition.pages[k + 1] : 0);
    }
}

void WriteCounts(PageFile& file, const TableDefinition& definition) {
    const std::span<std::uint8_t> page = file.Change(definition.Id());
    StoreU32(page, kRowsAt, definition.rowCount);
    StoreU32(page, kAutonumberAt, definition.lastAutonumber);
    for (std::size_t k = 0; k < definition.realIndexes.size(); ++k)
        StoreU32(page, kStatisticsAt + k * kStatisticsBytes + 4, definition.realIndexes[k].differentKeys);
}

}  // namespace varnel::access
