// A usage map out of its row: the set of pages that belong to something.
//
//   inline:     u8 0, u32 first page, bits (lowest first)
//   reference:  u8 1, u32 numbers of bitmap pages (0: none), each for as many pages as it has bits
//
// A bitmap page begins with 05 01 00 00; its bits follow.
#pragma once

#include "providers/access/PageFile.h"
#include "providers/access/PageSet.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {

/// Row pointers have three bytes for the page, so no page has a higher number.
inline constexpr PageNumber kHighestPage = 0xFFFFFF;

/// The set at a map's row, pages beyond the file's end included; empty for a pointer that is none. Throws
/// Error{Corrupt} for anything but a map.
PageSet ReadUsageMap(PageFile& file, RowPointer at);

/// The same from the row's bytes; file: for the bitmap pages of a reference map.
PageSet ReadUsageMapRow(PageFile& file, Bytes row, RowPointer at);

}  // namespace varnel::access
