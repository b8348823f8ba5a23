#include "app/flags/SharedFlags.h"
#include "polling/PollFolder.h"
#include "repository/ReadSession.h"
#include "repository/model/EntryFields.h"
#include "repository/model/RepositoryQuery.h"

namespace varnel {

namespace {

void ReadAllColumns(std::int16_t SessionID, std::int16_t count) {
    OpenSessionRows("SrcDCols", SessionID);
    const RowFields row(*RepoRs, "SrcDCols", SessionID);
    for (std::int16_t j = 0; j < count; ++j, RepoRs->MoveNext()) {
        Columns(j).TabID = row.Number("TabID");
        Columns(j).TName = row.TextOr("TName", "");
        ReadColumnMapping(row, Columns(j));
    }
    RepoRs->Close();
}

}  // namespace

void ReadColumns(std::int16_t SessionID) {
    const double count = CountSessionRows("SrcDCols", SessionID);
    if (count == 0) {
        RepoOk = false;
    } else {
        Columns.Resize(static_cast<std::size_t>(count));
        ReadAllColumns(SessionID, Columns.Count());
    }
    if (SessionDef.SourceDBName != "TEXTPOLL") return;
    for (std::int16_t i = 1; i < SourceTables.Count(); ++i) {
        PollFolderColumns(SessionID, SourceTables(i).TabID, SourceTables(i).TableName);
    }
}

}  // namespace varnel
