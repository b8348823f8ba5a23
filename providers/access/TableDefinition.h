// What a table's definition pages say, as one structure.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "providers/access/Layout.h"

namespace varnel::access {

/// The stored codes.
enum class ColumnType : std::uint8_t {
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03,
    Long = 0x04,
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    Date = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Numeric = 0x10,
    FixedBlob = 0x11,
    Complex = 0x12,
    BigInt = 0x13,
    ExtendedDate = 0x14
};

inline constexpr std::uint8_t kFixedColumn = 0x01;
inline constexpr std::uint8_t kAutonumberColumn = 0x04;
inline constexpr std::uint8_t kAutomaticGuidColumn = 0x40;

/// Which rules order a column's texts.
struct SortOrder {
    std::uint16_t language = 0x0409;
    std::uint8_t sortId = 0;
    std::uint8_t sortVersion = 0;
    bool operator==(const SortOrder&) const = default;
};

struct Column {
    std::string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t id = 0;              ///< place in the null mask; never used again after a drop
    std::uint16_t variableNumber = 0;  ///< place among the variable columns, when it is one
    std::uint16_t ordinal = 0;
    std::uint8_t precision = 0, scale = 0;  ///< NUMERIC
    SortOrder sortOrder;
    std::uint16_t codePage = 1252;  ///< Access 97 only
    std::uint8_t flags = 0, moreFlags = 0;
    std::uint16_t fixedOffset = 0;  ///< in the fixed area, when it is fixed
    std::uint16_t length = 0;       ///< bytes; a text's characters times 2 (Access 97: characters)
    RowPointer ownedMap, roomMap;   ///< a long value column's pages

    bool IsFixed() const { return (flags & kFixedColumn) != 0; }
    bool IsAutonumber() const { return (flags & kAutonumberColumn) != 0; }
    bool IsLong() const { return type == ColumnType::Memo || type == ColumnType::Ole; }
    // From the table's properties, not from its definition:
    bool required = false;
    bool zeroLengthAllowed = true;
};

struct IndexColumn {
    std::uint16_t columnId = 0;
    bool ascending = true;
};

inline constexpr std::uint8_t kUniqueIndex = 0x01;
inline constexpr std::uint8_t kIgnoreNullsIndex = 0x02;
inline constexpr std::uint8_t kRequiredIndex = 0x08;

/// An index as it is stored; several logical ones may stand for it.
struct RealIndex {
    std::vector<IndexColumn> columns;  ///< 1 to 10
    RowPointer map;
    PageNumber root = 0;
    std::uint8_t flags = 0;
    std::uint32_t differentKeys = 0;  ///< a hint
    std::string name;                 ///< the one that a user sees; "" when no logical index uses it
    bool primaryKey = false;

    bool IsUnique() const { return (flags & kUniqueIndex) != 0; }
};

struct LogicalIndex {
    std::string name;
    std::uint32_t number = 0;
    std::uint32_t realIndex = 0;
    std::uint8_t relationSide = 0;  ///< 0 none, 1 this table is referred to, 2 and 3 this table refers
    std::uint32_t partnerNumber = 0xFFFFFFFF;
    PageNumber partnerTable = 0;
    std::uint8_t onUpdate = 4, onDelete = 4;
    std::uint8_t kind = 0;  ///< 0 ordinary, 1 primary key, 2 relationship
};

struct TableDefinition {
    std::string name;               ///< from the catalog
    std::vector<PageNumber> pages;  ///< of the definition, in order; the first one is the table's id
    bool systemTable = false;
    std::uint32_t rowCount = 0;  ///< a hint
    std::uint32_t lastAutonumber = 0;
    std::int32_t autonumberStep = 1;
    std::uint16_t columnIds = 0;        ///< highest id ever + 1
    std::uint16_t variableColumns = 0;  ///< ever
    std::vector<Column> columns;        ///< in the order of the definition; users see them by ordinal
    std::vector<RealIndex> realIndexes;
    std::vector<LogicalIndex> logicalIndexes;
    RowPointer ownedMap, roomMap;

    PageNumber Id() const { return pages.front(); }
};

}  // namespace varnel::access
