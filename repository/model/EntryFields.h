// Which columns of a repository row make up a table entry or a column entry of the session model.
#pragma once

#include "repository/model/RowFields.h"
#include "repository/model/SessionModel.h"

namespace varnel {

/// TableExists, WhereCond, LoadOption and FirstTimeLoadOpt: what both sides of a table read alike.
void ReadOptions(const RowFields& row, TableEntry& table);
/// OwnerName and the options of the source side, the file settings of a text source, and the settings of a text
/// target, which go into SessionDef. TabID and TableName are the caller's.
void ReadSourceSide(const RowFields& row, TableEntry& table);
/// TableName, OwnerName and the options of the target side. TabID is the caller's.
void ReadDestSide(const RowFields& row, TableEntry& table);
/// Everything of a column mapping but TabID and TName, which are the caller's.
void ReadColumnMapping(const RowFields& row, ColumnEntry& column);

}  // namespace varnel
