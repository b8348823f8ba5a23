// Page 0 of an Access file. Little-endian; offsets from the start of the file.
//
//   OFFSET  SIZE
//        0     4  00 01 00 00
//        4    16  "Standard Jet DB", "Standard ACE DB" or "Jet System DB", zero-padded
//     0x14     1  version: 0 is Jet 3, 1 is Jet 4, above are those of .accdb
//     0x18   128  masked with a constant stream (Jet 3: 126 bytes); what follows is unmasked
//     0x18     4  row pointer: usage map of the free pages
//     0x1C     4  row pointer: usage map of the released pages
//     0x20     4  page of the definition of the catalog table
//     0x3A     2  Jet 3: language of the sort order
//     0x3C     2  code page
//     0x3E     4  key of the pages' encryption; 0: none
//     0x42    40  password, masked once more with the date (Jet 3: 20 bytes, not masked again)
//     0x6E     4  Jet 4: sort order (u16 language, u8 id, u8 version)
//     0x72     8  Jet 4: creation date
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "providers/access/Layout.h"
#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

struct FileHeader {
    const Layout* layout = &kJet4Layout;
    std::uint8_t storedVersion = 1;
    RowPointer freePages, releasedPages;
    PageNumber catalog = 2;
    int codePage = 1252;
    SortOrder sortOrder;
    bool encrypted = false;
    std::string password;  ///< UTF-8; "" when there is none
};

/// How many bytes of the file ParseFileHeader wants to see.
inline constexpr std::size_t kFileHeaderSize = 0x98;

/// start: the first bytes of the file, kFileHeaderSize of them if it has so many. fileSize: bytes. storedPath: for
/// error texts. Throws Error{Corrupt} for a file that is none of ours, Error{NotSupported} for an unknown version.
FileHeader ParseFileHeader(std::span<const std::uint8_t> start, std::uint64_t fileSize, const std::string& storedPath);
/// The header of an open file, which must be held. Throws as above.
FileHeader ReadFileHeader(PageFile& file);
/// True when bytes are the start of an Access file of any version.
bool LooksLikeAccessFile(std::span<const std::uint8_t> start);

/// given: the password of the connection string, "" when it has none. Throws Error{Connection} in the words that users
/// of such files know.
void CheckPassword(const FileHeader& header, const std::string& given, const std::string& storedPath);

}  // namespace varnel::access
