// The four tables with which a Jet 4 file describes itself, as a new file has them.
#pragma once

#include <cstdint>
#include <string_view>

#include "providers/access/TableDefinition.h"

namespace varnel::access {

inline constexpr PageNumber kObjectsTable = 2, kAcesTable = 3, kQueriesTable = 4, kRelationshipsTable = 5;
inline constexpr PageNumber kSystemTables[] = {kObjectsTable, kAcesTable, kQueriesTable, kRelationshipsTable};

/// Ids of MSysObjects' rows that are no tables: where things are kept.
inline constexpr std::uint32_t kContainersParent = 0x0F000000, kTablesContainer = 0x0F000001,
                               kDatabasesContainer = 0x0F000002, kRelationshipsContainer = 0x0F000003,
                               kDatabaseDocument = 0x10000000;

/// MSysObjects.Type
inline constexpr std::int16_t kTableObject = 1, kDocumentObject = 2, kContainerObject = 3, kOdbcLinkObject = 4,
                              kQueryObject = 5, kLinkObject = 6, kRelationshipObject = 8;
inline constexpr std::uint32_t kSystemObjectFlag = 0x80000000;

/// Page 6 of a new file holds the usage maps of the system tables; 14 and 15 the rows of the first two.
inline constexpr PageNumber kSystemMapsPage = 6, kFirstObjectsPage = 14, kFirstAcesPage = 15;

/// id: one of kSystemTables. Rows, numbers of keys, maps and root pages are those of a new file.
TableDefinition SystemTable(PageNumber id);

/// The position of a column in the definition; the name must be one of its columns.
std::size_t ColumnAt(const TableDefinition& definition, std::string_view name);

}  // namespace varnel::access
