// The session that this process carries out, and the database objects that its steps share. The readers of the
// repository fill it before any table is touched; afterwards it is only read, except for CreatedTables.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ado/Ado.h"
#include "repository/model/ModelArray.h"

namespace varnel {

/// The settings of a session, from its row in the table sessions and, for a text target, from vrtabs.
struct SessionDefinition {
    std::string SessionName;
    std::string SourceConnStr, TargetConnStr;
    std::string SourceDBName, TargetDBName;  ///< kind words: "ACCESS", "FOXPRO", "ORACLE", "MySQL", "MSSQL", "TEXT" …
    std::string SourceType, TargetType;      ///< of a FoxPro side: "DIR" or "DBC"
    std::string SrcDBFPath, DBFPath;         ///< folders of free FoxPro tables, with their trailing separator
    std::string LogFileName;                 ///< empty: no log is written
    std::string FPattern, FRename, FolderName;
    std::string DFormat, TextDirDest, FileFormat, FileExt;
    bool DFirstColLine = false;
    std::string DTextQ;  ///< the text qualifier itself
};

/// One side of one table of the session.
struct TableEntry {
    std::int16_t TabID = 0;
    std::string TableName;
    std::string OwnerName;
    std::string WhereCond;
    std::string LoadOption;  ///< "DROP", "DELETE" or any other text: append
    bool TableExists = false;
    std::string FirstTimeLoadOpt;    ///< "CREATE", "CREATED" or other text
    std::int16_t SFirstColLine = 0;  ///< text sources: 1 when the first line holds the column names
    std::string SFormat;             ///< text sources: the delimiter
    std::string TextQ;               ///< text sources: the raw qualifier code
};

/// One column mapping. It belongs to the table with an equal TabID and takes part when SSelected is 1.
struct ColumnEntry {
    double TabID = 0;
    std::string TName;
    std::string SCName, DCName;
    std::int16_t SCCount = 0, DCCount = 0;
    std::string SDtype, DDType;
    std::int32_t SWidth = 0, DWidth = 0;
    std::int16_t SScale = 0, DScale = 0;
    bool ignor = false;
    std::int16_t Pos = 0, CPos = 0, SSelected = 0;
    std::string SOrgDtype;  ///< the source column's ADO type name without "ad"
};

extern SessionDefinition SessionDef;          ///< the readers write, all read
extern ModelArray<TableEntry> SourceTables;   ///< the readers write, all read; same index as DestTables
extern ModelArray<TableEntry> DestTables;     ///< the readers write, all read
extern ModelArray<ColumnEntry> Columns;       ///< the readers write, all read
extern ModelArray<TableEntry> CreatedTables;  ///< the load driver writes, the runner reads; same index as SourceTables

extern std::unique_ptr<Connection> RepoConn;  ///< the repository; the runner opens and closes it
extern std::unique_ptr<Recordset> RepoRs;     ///< every read of the repository; each reader leaves it closed
extern std::unique_ptr<Connection> SrcConn;   ///< of the current table; the transfers write
extern std::unique_ptr<Recordset> SrcRs;      ///< of the current table; the transfers and the export write
extern std::unique_ptr<Connection> DestConn;  ///< of the current table; the transfers write
extern std::unique_ptr<Recordset> DestRs;     ///< of the current table; the transfers write

/// Releases the shared database objects, rows before connections.
void ReleaseDatabaseObjects();
/// Empties all of the above; for tests.
void ResetSessionModel();

}  // namespace varnel
