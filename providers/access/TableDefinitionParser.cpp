#include "providers/access/TableDefinitionParser.h"

#include <algorithm>

#include "platform/ByteView.h"
#include "platform/Error.h"
#include "providers/access/StoredBytes.h"
#include "providers/access/UnicodeText.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kDefinitionPage = 2;
constexpr std::size_t kFrameSize = 8, kNextPageAt = 4, kLengthAt = 8;
constexpr std::size_t kMostColumns = 255;
constexpr std::size_t kMostPages = 256;  // 255 columns and 32 indexes with the longest names fill 25
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr std::size_t kColumnsOfIndex = 10;

/// Where the versions keep what; offsets in bytes from the start of the definition, of a block, or of a block's entry.
struct DefinitionShape {
    std::size_t rowCountAt, autonumberAt, stepAt, kindAt, columnIdsAt, variableAt, columnsAt, logicalAt, realAt,
        ownedMapAt, roomMapAt, bodyAt;
    std::size_t statisticsSize, columnSize, realSize, logicalSize;
    std::size_t idAt, numberAt, ordinalAt, precisionAt, languageAt, codePageAt, flagsAt, fixedAt, lengthAt;
    std::size_t indexColumnsAt, indexMapAt, rootAt, indexFlagsAt;
    std::size_t logicalNumberAt;  ///< the fields of a logical index lie alike from here on
};
constexpr DefinitionShape kJet4Shape{0x10, 0x14, 0x18, 0x28, 0x29, 0x2B, 0x2D, 0x2F, 0x33, 0x37, 0x3B, 0x3F,  //
                                     12,   25,   52,   28,                                                    //
                                     5,    7,    9,    11,   11,   0,    15,   0x15, 0x17,                    //
                                     4,    0x22, 0x26, 0x2E,                                                  //
                                     4};
constexpr DefinitionShape kJet3Shape{0x0C, 0x10, 0,    0x14, 0x15, 0x17, 0x19, 0x1B, 0x1F, 0x23, 0x27, 0x2B,  //
                                     8,    18,   39,   20,                                                    //
                                     1,    3,    5,    11,   9,    11,   13,   14,   16,                      //
                                     0,    0x1E, 0x22, 0x26,                                                  //
                                     0};

/// Reads on from block to block.
class Parser {
public:
    Parser(const ByteView& bytes, const Layout& shape, const CodePage* names, std::string place)
        : bytes_(bytes),
          isJet3_(shape.version == Version::Jet3),
          at_(isJet3_ ? kJet3Shape : kJet4Shape),
          names_(names),
          place_(std::move(place)) {}

    TableDefinition Parse();

private:
    void ParseHeader();
    void ParseStatistics();
    void ParseColumns();
    Column ParseColumn() const;
    void ParseRealIndexes();
    void ParseLogicalIndexes();
    void ParseLongValueMaps();
    void NameRealIndexes();
    std::string ParseName();
    RowPointer PointerAt(std::size_t at) const { return UnpackRowPointer(bytes_.U32(at)); }
    std::size_t CountAt(std::size_t at, std::size_t entrySize) const;
    [[noreturn]] void Throw(const std::string& what) const {
        throw Error(ErrorKind::Corrupt, place_, place_ + ": the definition of a table cannot be read: " + what);
    }

    const ByteView& bytes_;
    const bool isJet3_;
    const DefinitionShape& at_;
    const CodePage* names_;
    std::string place_;
    std::size_t next_ = 0;
    TableDefinition table_;
    std::vector<std::uint32_t> differentKeys_;
};

/// A u32 number of entries that have to fit into the definition.
std::size_t Parser::CountAt(std::size_t at, std::size_t entrySize) const {
    const std::size_t count = bytes_.U32(at);
    if (count > bytes_.Size() / entrySize) Throw(std::to_string(count) + " entries do not fit into it");
    return count;
}

TableDefinition Parser::Parse() {
    ParseHeader();
    ParseStatistics();
    ParseColumns();
    ParseRealIndexes();
    ParseLogicalIndexes();
    ParseLongValueMaps();
    NameRealIndexes();
    return std::move(table_);
}

void Parser::ParseHeader() {
    const std::uint8_t kind = bytes_.U8(at_.kindAt);
    if (kind != 'N' && kind != 'S') Throw("it is of no known kind");
    table_.systemTable = kind == 'S';
    table_.rowCount = bytes_.U32(at_.rowCountAt);
    table_.lastAutonumber = bytes_.U32(at_.autonumberAt);
    if (!isJet3_) table_.autonumberStep = static_cast<std::int32_t>(bytes_.U32(at_.stepAt));
    table_.columnIds = bytes_.U16(at_.columnIdsAt);
    table_.variableColumns = bytes_.U16(at_.variableAt);
    table_.columns.resize(bytes_.U16(at_.columnsAt));
    if (table_.columns.size() > kMostColumns) Throw(std::to_string(table_.columns.size()) + " columns");
    table_.ownedMap = PointerAt(at_.ownedMapAt);
    table_.roomMap = PointerAt(at_.roomMapAt);
    table_.realIndexes.resize(CountAt(at_.realAt, at_.realSize));
    table_.logicalIndexes.resize(CountAt(at_.logicalAt, at_.logicalSize));
    next_ = at_.bodyAt;
}

void Parser::ParseStatistics() {
    for (RealIndex& index : table_.realIndexes) {
        index.differentKeys = bytes_.U32(next_ + 4);
        next_ += at_.statisticsSize;
    }
}

void Parser::ParseColumns() {
    for (Column& column : table_.columns) {
        column = ParseColumn();
        next_ += at_.columnSize;
    }
    for (Column& column : table_.columns) column.name = ParseName();
}

Column Parser::ParseColumn() const {
    Column column;
    column.type = static_cast<ColumnType>(bytes_.U8(next_));
    column.id = bytes_.U16(next_ + at_.idAt);
    column.variableNumber = bytes_.U16(next_ + at_.numberAt);
    column.ordinal = bytes_.U16(next_ + at_.ordinalAt);
    column.flags = bytes_.U8(next_ + at_.flagsAt);
    column.fixedOffset = bytes_.U16(next_ + at_.fixedAt);
    column.length = bytes_.U16(next_ + at_.lengthAt);
    if (column.type == ColumnType::Numeric) {
        column.precision = bytes_.U8(next_ + at_.precisionAt);
        column.scale = bytes_.U8(next_ + at_.precisionAt + 1);
    } else {
        column.sortOrder.language = bytes_.U16(next_ + at_.languageAt);
    }
    if (isJet3_) {
        column.codePage = bytes_.U16(next_ + at_.codePageAt);
    } else {
        column.sortOrder.sortId = bytes_.U8(next_ + 0x0D);
        column.sortOrder.sortVersion = bytes_.U8(next_ + 0x0E);
        column.moreFlags = bytes_.U8(next_ + 0x10);
    }
    return column;
}

/// Length in bytes (u16, in Access 97 u8), then the name.
std::string Parser::ParseName() {
    const std::size_t length = isJet3_ ? bytes_.U8(next_) : bytes_.U16(next_);
    next_ += isJet3_ ? 1 : 2;
    const Bytes stored = bytes_.Part(next_, length);
    next_ += length;
    std::string name;
    if (isJet3_) {
        const std::string_view text(reinterpret_cast<const char*>(stored.data()), stored.size());
        if (names_ == nullptr || names_->DecodeSome(name, text) != text.size()) Throw("a name is no text");
    } else if (const Fault fault = AppendUnicodeText(stored, name)) {
        Throw(std::string("a name: ") + fault);
    }
    return name;
}

void Parser::ParseRealIndexes() {
    for (RealIndex& index : table_.realIndexes) {
        for (std::size_t k = 0; k < kColumnsOfIndex; ++k) {
            const std::size_t at = next_ + at_.indexColumnsAt + 3 * k;
            const std::uint16_t id = bytes_.U16(at);
            if (id != kNoColumn) index.columns.push_back({id, bytes_.U8(at + 2) != 0});
        }
        index.map = PointerAt(next_ + at_.indexMapAt);
        index.root = bytes_.U32(next_ + at_.rootAt);
        index.flags = bytes_.U8(next_ + at_.indexFlagsAt);
        next_ += at_.realSize;
    }
}

void Parser::ParseLogicalIndexes() {
    for (LogicalIndex& index : table_.logicalIndexes) {
        const std::size_t at = next_ + at_.logicalNumberAt;
        index.number = bytes_.U32(at);
        index.realIndex = bytes_.U32(at + 4);
        index.relationSide = bytes_.U8(at + 8);
        index.partnerNumber = bytes_.U32(at + 9);
        index.partnerTable = bytes_.U32(at + 13);
        index.onUpdate = bytes_.U8(at + 17);
        index.onDelete = bytes_.U8(at + 18);
        index.kind = bytes_.U8(at + 19);
        if (index.realIndex >= table_.realIndexes.size()) Throw("an index has no pages");
        next_ += at_.logicalSize;
    }
    for (LogicalIndex& index : table_.logicalIndexes) index.name = ParseName();
}

/// u16 column id and two row pointers per long value column; FF FF ends the list.
void Parser::ParseLongValueMaps() {
    while (next_ < bytes_.Size()) {
        const std::uint16_t id = bytes_.U16(next_);
        if (id == kNoColumn) return;
        for (Column& column : table_.columns) {
            if (column.id != id) continue;
            column.ownedMap = PointerAt(next_ + 2);
            column.roomMap = PointerAt(next_ + 6);
        }
        next_ += 10;
    }
}

/// A real index has the name of its primary key, else of its ordinary index, else of its relationship.
void Parser::NameRealIndexes() {
    constexpr std::uint8_t kKindsByRank[] = {1, 0, 2};
    for (const std::uint8_t kind : kKindsByRank) {
        for (const LogicalIndex& logical : table_.logicalIndexes) {
            RealIndex& real = table_.realIndexes[logical.realIndex];
            if (logical.kind != kind) continue;
            if (kind == 1) real.primaryKey = true;
            if (real.name.empty()) real.name = logical.name;
        }
    }
}

std::string PlaceOf(const PageFile& file, PageNumber page) {
    return file.StoredPath() + ", page " + std::to_string(page);
}

}  // namespace

TableDefinition ParseTableDefinition(std::span<const std::uint8_t> bytes, const Layout& shape, const CodePage* names,
                                     const std::string& place) {
    const ByteView all(bytes, place);
    const ByteView view(all.Part(0, all.U32(kLengthAt)), place);
    return Parser(view, shape, names, place).Parse();
}

TableDefinition ReadTableDefinition(PageFile& file, PageNumber id, const CodePage* names) {
    const std::size_t pageSize = file.Shape().pageSize;
    std::vector<std::uint8_t> bytes;
    std::vector<PageNumber> pages;
    for (PageNumber page = id; page != 0;) {
        const std::string place = PlaceOf(file, page);
        if (pages.size() == kMostPages || std::find(pages.begin(), pages.end(), page) != pages.end())
            throw Error(ErrorKind::Corrupt, place, place + ": the definition of a table has no end");
        const PagePin pin = file.Read(page);
        const ByteView view({pin.get(), pageSize}, place);
        if (view.U8(0) != kDefinitionPage || view.U8(1) != 1)
            throw Error(ErrorKind::Corrupt, place, place + " holds no definition of a table");
        const auto part = pages.empty() ? view.Part(0, pageSize) : view.Part(kFrameSize, pageSize - kFrameSize);
        bytes.insert(bytes.end(), part.begin(), part.end());
        pages.push_back(page);
        page = view.U32(kNextPageAt);
    }
    TableDefinition table = ParseTableDefinition(bytes, file.Shape(), names, PlaceOf(file, id));
    table.pages = std::move(pages);
    return table;
}

}  // namespace varnel::access
