#include "app/flags/SharedFlags.h"
#include "polling/PollFolder.h"
#include "repository/ReadSession.h"
#include "repository/RepositoryQuery.h"
#include "repository/model/RowFields.h"
#include "repository/model/SessionModel.h"

namespace varnel {

namespace {

/// What both sides of a table read from the same columns.
void ReadOptions(const RowFields& row, TableEntry& table) {
    table.TableExists = row.Boolean("TableExists");
    table.WhereCond = row.RequiredText("WhereCond");
    table.LoadOption = row.RequiredText("LoadOption");
    table.FirstTimeLoadOpt = row.TextOr("FirstTimeLoadOpt", "");
}

void ReadTextSource(const RowFields& row, TableEntry& table) {
    row.TextOr("TrimTname", "");
    row.TextOr("FileName", "");
    table.SFormat = row.RequiredText("SFormat");
    table.SFirstColLine = row.Int16("SFirstColLine");
    table.TextQ = row.TextOr("TextQ", "1");
}

std::string QualifierOf(const std::string& code) {
    if (code == "DQ") return "\"";
    if (code == "SQ") return "'";
    return code;
}

/// Each row overwrites the session's settings; the last row's stay.
void ReadTextTarget(const RowFields& row) {
    SessionDef.DFormat = row.TextOr("DFormat", "");
    SessionDef.TextDirDest = row.TextOr("TextDirDest", "");
    SessionDef.FileFormat = row.TextOr("FileFormat", "");
    SessionDef.FileExt = row.TextOr("FileExt", "");
    SessionDef.DFirstColLine = row.IsOne("DFirstColLine");
    SessionDef.DTextQ = QualifierOf(row.TextOr("DTextQ", ""));
}

void ReadSourceSide(const RowFields& row, TableEntry& table) {
    table.TabID = row.Int16("TabID");
    table.TableName = row.RequiredText("SourceTableName");
    table.OwnerName = row.RequiredText("SourceOwnerName");
    ReadOptions(row, table);
    if (SessionDef.SourceDBName == "TEXT" || SessionDef.SourceDBName == "TEXTPOLL") ReadTextSource(row, table);
    if (SessionDef.TargetDBName == "TEXT") ReadTextTarget(row);
}

void ReadDestSide(const RowFields& row, TableEntry& table) {
    table.TabID = row.Int16("TabID");
    table.TableName = row.RequiredText("DestTableName");
    table.OwnerName = row.RequiredText("DestOwnerName");
    ReadOptions(row, table);
}

void ReadBothSides(std::int16_t SessionID, std::int16_t count) {
    OpenSessionRows("vrtabs", SessionID);
    const RowFields row(*RepoRs, "vrtabs", SessionID);
    for (std::int16_t i = 0; i < count; ++i, RepoRs->MoveNext()) ReadSourceSide(row, SourceTables(i));
    RepoRs->MoveFirst();
    for (std::int16_t i = 0; i < count; ++i, RepoRs->MoveNext()) ReadDestSide(row, DestTables(i));
    RepoRs->Close();
}

}  // namespace

void ReadTables(std::int16_t SessionID) {
    const double count = CountSessionRows("vrtabs", SessionID);
    if (count == 0) {
        RepoOk = false;
    } else {
        SourceTables.Resize(static_cast<std::size_t>(count));
        DestTables.Resize(static_cast<std::size_t>(count));
        ReadBothSides(SessionID, SourceTables.Count());
    }
    if (SessionDef.SourceDBName == "TEXTPOLL") PollFolderTables(SessionID);
}

}  // namespace varnel
