#include "app/flags/SharedFlags.h"
#include "polling/PollFolder.h"
#include "repository/ReadSession.h"
#include "repository/RepositoryQuery.h"
#include "repository/model/RowFields.h"
#include "repository/model/SessionModel.h"

namespace varnel {

namespace {

void ReadColumn(const RowFields& row, ColumnEntry& column) {
    column.TabID = row.Number("TabID");
    column.TName = row.TextOr("TName", "");
    column.SCName = row.RequiredText("SCName");
    column.SCCount = row.Int16("SCCount");
    column.SDtype = row.RequiredText("SDtype");
    column.SWidth = row.Int32("SWidth");
    column.SScale = row.Int16("SScale");
    column.SOrgDtype = row.RequiredText("SOrgDtype");
    column.DCName = row.RequiredText("DCName");
    column.DCCount = row.Int16("DCCount");
    column.DDType = row.RequiredText("DDType");
    column.DWidth = row.Int32("DWidth");
    column.DScale = row.Int16("DScale");
    column.Pos = row.Int16("Pos");
    column.CPos = row.Int16("CPos");
    column.ignor = row.Boolean("ignor");
    column.SSelected = row.Int16("SSelected");
}

void ReadAllColumns(std::int16_t SessionID, std::int16_t count) {
    OpenSessionRows("SrcDCols", SessionID);
    const RowFields row(*RepoRs, "SrcDCols", SessionID);
    for (std::int16_t j = 0; j < count; ++j, RepoRs->MoveNext()) ReadColumn(row, Columns(j));
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
