// The head of a .dbf file: which dialect it is of, how its records are cut into fields. Integers are little-endian.
//
//   OFFSET SIZE
//        0    1  version, which tells the dialect
//        1    3  year (of the century, or since 1900), month, day of the last change
//        4    4  records, deleted ones included
//        8    2  bytes before the first record
//       10    2  bytes of a record, its delete flag included
//       28    1  table flags: 01 a structural index stands beside it, 02 memo fields, 04 a database container
//       29    1  code page mark
//       32 32*n  field descriptors, ended by 0D; in Visual FoxPro files 263 bytes follow: the container's path
//
// dBASE II (version 02) and dBASE 7 (8C, some 04) have heads of their own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/ByteView.h"

namespace varnel::foxpro {

/// Position in a .dbf file, counted from 1, deleted records included.
using RecordNumber = std::uint64_t;

inline constexpr std::uint8_t kLiveFlag = 0x20, kDeletedFlag = 0x2A;  ///< first byte of a record
inline constexpr std::uint8_t kEndMark = 0x1A;                        ///< after the last record
inline constexpr std::uint8_t kHasIndex = 0x01, kHasMemo = 0x02, kIsContainer = 0x04;
inline constexpr std::size_t kTableFlagsAt = 28;
/// The largest file that FoxPro opens.
inline constexpr std::uint64_t kMaxFileBytes = 0x7FFF'FFFF;
/// More bytes than any head has: read so many, or the whole of a shorter file.
inline constexpr std::size_t kMaxHeaderBytes = 0xFFFF;

enum class DbfDialect : std::uint8_t {
    DBase2,
    DBase,         ///< dBASE III to 5, Clipper
    FoxPro2,       ///< FoxPro 2.x with memo (F5)
    VisualFoxPro,  ///< 30, 31, 32
    DBase7
};

enum class MemoKind : std::uint8_t { None, Fpt, Dbt3, Dbt4, Smt };

inline constexpr int kNoBit = -1;

struct DbfField {
    std::string name;           ///< as stored, UTF-8
    char type = 'C';            ///< the descriptor's letter
    std::uint32_t offset = 0;   ///< bytes from the start of the record; 0 is the delete flag
    std::uint32_t length = 0;   ///< bytes
    std::uint8_t decimals = 0;  ///< 0 for a C field whose high length byte stood there
    bool nullable = false;
    bool binary = false;           ///< no code page applies; means nothing for numbers and dates
    bool autoIncrement = false;    ///< its value is given by the table
    std::uint32_t nextValue = 0;   ///< of an autoincrement: the one given next
    std::uint8_t step = 0;         ///< of an autoincrement
    std::size_t descriptorAt = 0;  ///< bytes from the start of the file
    int varLengthBit = kNoBit;     ///< bit in the null flags: set when the last byte holds the value's length
    int nullBit = kNoBit;          ///< bit in the null flags: set when the value is Null
};

struct DbfHeader {
    std::uint8_t version = 0;
    DbfDialect dialect = DbfDialect::DBase;
    MemoKind memo = MemoKind::None;
    std::uint64_t records = 0;  ///< as the head says: a claim
    std::uint32_t headerBytes = 0;
    std::uint32_t recordBytes = 0;
    std::uint8_t tableFlags = 0;
    std::uint8_t codePageMark = 0;
    /// Windows number of the code page of its texts.
    int codePage = 1252;
    /// The visible fields in physical order. System fields are left out.
    std::vector<DbfField> fields;
    /// The hidden field of null and var-length bits.
    std::optional<DbfField> nullFlags;
    /// The container that the table belongs to, as stored; "" for a free table.
    std::string backLink;
    /// Why the table is only read, in words; "" for one that can be written.
    std::string readOnlyReason;

    bool IsFree() const { return backLink.empty(); }
    bool HasIndex() const { return (tableFlags & kHasIndex) != 0; }
    /// The field of this name, without regard to case; of several the first.
    const DbfField* FindField(std::string_view name) const;
};

/// bytes: the file's first kMaxHeaderBytes, or all of a shorter one. fileBytes: of the whole file.
/// codePageWhenNoneStated: Windows number; 0 takes 1252 for Visual FoxPro tables and 850 for all others.
/// Throws Error{Corrupt} "'x.dbf' is not a table: ..." when it cannot be one, Error{NotSupported} for a code page that
/// this program cannot read.
DbfHeader ReadDbfHeader(const ByteView& bytes, std::uint64_t fileBytes, const std::string& fileName,
                        int codePageWhenNoneStated = 0);

/// The Windows number of a code page mark; 0 when none is stated or the mark is unknown.
int CodePageOfMark(std::uint8_t mark);
/// The mark that Visual FoxPro writes for a code page; 0 when it has none.
std::uint8_t MarkOfCodePage(int codePage);

}  // namespace varnel::foxpro
