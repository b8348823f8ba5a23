// The structural index of one table with what is needed to make its keys again, and how far it matches the records.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/CdxFile.h"
#include "providers/foxpro/CdxTree.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/KeyExpression.h"

namespace varnel::foxpro {

/// Finds the field that an index expression of the table names: by the long names of its container, then by its own.
/// table: needs a hold; header: outlives the function.
FindKeyField KeyFieldsOf(DbfFile& table, const DbfHeader& header);

/// Positions in the table's fields of those that make the key of a tag, when the key is nothing but fields; empty
/// when it is more, and when there is no such tag. Takes a read hold. Throws Error{Corrupt}, Error{Io}.
std::vector<std::size_t> KeyFieldsOfTag(DbfFile& table, std::string_view tag);

/// The stored path of the index that the table's head speaks of; nothing when there is none.
std::optional<std::string> FindStructuralIndex(DbfFile& table);

/// Calls visit with every record from the first to the last, deleted ones included. Needs a hold.
void VisitRecords(DbfFile& table, const std::function<void(const KeyRecord&)>& visit);

/// How the stored entries of a tag differ from what the records give, in words; "" when they do not. keys: of the tag.
/// Reads the whole tree and the whole table. Throws Error{Corrupt} for a damaged tree.
std::string DifferenceOf(CdxFile& file, std::size_t tag, TagKeys& keys, DbfFile& table);

/// What is wrong with the table's structural index, each fault in words that name file and tag; empty when all is
/// well. A tag whose keys cannot be made here is checked no further and may be sound: unchecked gets its name and the
/// reason; without unchecked they stand among the faults. Takes a read hold.
std::vector<std::string> CheckIndex(DbfFile& table, std::vector<std::string>* unchecked = nullptr);

}  // namespace varnel::foxpro
