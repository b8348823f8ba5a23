#include "app/flags/SharedFlags.h"
#include "repository/ReadSession.h"
#include "repository/model/EntryFields.h"
#include "repository/model/RepositoryQuery.h"

namespace varnel {

namespace {

void ReadSource(const RowFields& row, TableEntry& table) {
    table.TabID = row.Int16("TabID");
    table.TableName = row.RequiredText("SourceTableName");
    ReadSourceSide(row, table);
}

void ReadDest(const RowFields& row, TableEntry& table) {
    table.TabID = row.Int16("TabID");
    ReadDestSide(row, table);
}

void ReadBothSides(std::int16_t SessionID, std::int16_t count) {
    OpenSessionRows("vrtabs", SessionID);
    const RowFields row(*RepoRs, "vrtabs", SessionID);
    for (std::int16_t i = 0; i < count; ++i, RepoRs->MoveNext()) ReadSource(row, SourceTables(i));
    RepoRs->MoveFirst();
    for (std::int16_t i = 0; i < count; ++i, RepoRs->MoveNext()) ReadDest(row, DestTables(i));
    RepoRs->Close();
}

}  // namespace

void ReadTables(std::int16_t SessionID, PolledFolder folder) {
    const double count = CountSessionRows("vrtabs", SessionID);
    if (count == 0) {
        RepoOk = false;
    } else {
        SourceTables.Resize(static_cast<std::size_t>(count));
        DestTables.Resize(static_cast<std::size_t>(count));
        ReadBothSides(SessionID, SourceTables.Count());
    }
    if (SessionDef.SourceDBName == "TEXTPOLL") PollFolderTables(SessionID, folder);
}

}  // namespace varnel
