#include "repository/model/SessionModel.h"

namespace varnel {

SessionDefinition SessionDef;
ModelArray<TableEntry> SourceTables("tables");
ModelArray<TableEntry> DestTables("tables");
ModelArray<ColumnEntry> Columns("columns");
ModelArray<TableEntry> CreatedTables("tables");

std::unique_ptr<Connection> RepoConn;
std::unique_ptr<Recordset> RepoRs;
std::unique_ptr<Connection> SrcConn;
std::unique_ptr<Recordset> SrcRs;
std::unique_ptr<Connection> DestConn;
std::unique_ptr<Recordset> DestRs;

void ReleaseDatabaseObjects() {
    DestRs.reset();
    DestConn.reset();
    SrcRs.reset();
    SrcConn.reset();
    RepoRs.reset();
    RepoConn.reset();
}

void ResetSessionModel() {
    ReleaseDatabaseObjects();
    SessionDef = {};
    SourceTables.Clear();
    DestTables.Clear();
    Columns.Clear();
    CreatedTables.Clear();
}

}  // namespace varnel
