// A table's definition as the bytes of its pages (Jet 4).
//
// The definition is one string of bytes whose first 8 bytes frame its first page: 02 01, u16 free, u32 next page. Every
// following page has such a frame of its own before the string goes on.
//   OFFSET SIZE                               OFFSET SIZE
//   0x08   4   length of the string           0x2B   2   variable columns ever
//   0x0C   4   0x659                          0x2D   2   columns
//   0x10   4   rows                           0x2F   4   logical indexes
//   0x14   4   last autonumber                0x33   4   real indexes
//   0x18   4   autonumber step                0x37   4   map of the table's pages
//   0x28   1   'N' user's, 'S' system         0x3B   4   map of those with room
//   0x29   2   highest column id + 1          0x3F       statistics, columns, names, indexes, maps of long values
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// definition.pages need not be set. Throws Error{Constraint} for a name that is longer than 64 characters.
std::string DefinitionBytes(const TableDefinition& definition);
/// How many pages a string of so many bytes takes.
std::size_t DefinitionPageCount(std::size_t bytes);
/// Puts the part of the string that belongs on the definition's page k into a page of zeros. next: the page after it,
/// 0 behind the last.
void FillDefinitionPage(std::span<std::uint8_t> page, std::size_t k, const std::string& bytes, PageNumber next);

/// Writes the whole definition onto its pages, which are as many as it takes.
void WriteDefinition(PageFile& file, const TableDefinition& definition);
/// Brings the numbers that rows change up to date: rows, autonumber, different keys.
void WriteCounts(PageFile& file, const TableDefinition& definition);

}  // namespace varnel::access
