// A session that moves tables of one database into another, made from what the source says of its tables.
// Start here: SourceTables.h reads the source, TargetNames.h and TargetTypes.h know the targets.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

struct DefineSide {
    std::string kind;  ///< as on the command line: "ACCESS", "FOXPRO DIR", "FOXPRO DBC", …
    std::string connection;
    std::string folder;  ///< of free FoxPro tables or text files; "": the one that the connection names
};

struct DefineOptions {
    DefineSide source, target;
    std::vector<std::string> tables;  ///< patterns with * and ?, of a name or of owner.name; none: all tables, no views
    std::string name, log;            ///< "": usual ones
    std::string targetOwner = "dbo";  ///< of SQL Server's tables
    std::string pattern = "*.csv", rename = "done";  ///< of a polled folder
    std::string targetTable;                         ///< of a polled folder; "": named after its first file
    TargetText targetText;
    std::int16_t id = 1;
};

/// Everything that the target cannot hold or that loses something stands in the comments of columns, tables and
/// session. Throws Error: the source's own, and when no table matches.
SessionDefinition DefineSession(const DefineOptions& options);

}  // namespace varnel::admin
