#include "repository/model/EntryFields.h"

namespace varnel {

namespace {

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

}  // namespace

void ReadOptions(const RowFields& row, TableEntry& table) {
    table.TableExists = row.Boolean("TableExists");
    table.WhereCond = row.RequiredText("WhereCond");
    table.LoadOption = row.RequiredText("LoadOption");
    table.FirstTimeLoadOpt = row.TextOr("FirstTimeLoadOpt", "");
}

void ReadSourceSide(const RowFields& row, TableEntry& table) {
    table.OwnerName = row.RequiredText("SourceOwnerName");
    ReadOptions(row, table);
    if (SessionDef.SourceDBName == "TEXT" || SessionDef.SourceDBName == "TEXTPOLL") ReadTextSource(row, table);
    if (SessionDef.TargetDBName == "TEXT") ReadTextTarget(row);
}

void ReadDestSide(const RowFields& row, TableEntry& table) {
    table.TableName = row.RequiredText("DestTableName");
    table.OwnerName = row.RequiredText("DestOwnerName");
    ReadOptions(row, table);
}

void ReadColumnMapping(const RowFields& row, ColumnEntry& column) {
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

}  // namespace varnel
