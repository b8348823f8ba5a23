#include "polling/PollFolder.h"

#include <optional>
#include <vector>

#include "app/flags/SharedFlags.h"
#include "platform/Files.h"
#include "polling/SchemaIniWriter.h"
#include "repository/model/EntryFields.h"
#include "repository/model/RepositoryQuery.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

void ReportNoMatch() {
    RepoOk = false;
    if (!ShowOutput) return;
    Form14().AppendLogTxt("No Files Found Matching the Pattern:" + SessionDef.FPattern +
                          " in Folder:" + SessionDef.FolderName);
}

/// The entries of a further file, from the template row that RepoRs stands on.
void AddFile(const RowFields& row, std::int16_t i, const std::string& name) {
    SourceTables.Resize(static_cast<std::size_t>(i) + 1);
    DestTables.Resize(static_cast<std::size_t>(i) + 1);
    SourceTables(i) = {};
    SourceTables(i).TabID = i;
    SourceTables(i).TableName = name;
    ReadSourceSide(row, SourceTables(i));
    DestTables(i) = {};
    DestTables(i).TabID = i;
    ReadDestSide(row, DestTables(i));
}

}  // namespace

void PollFolderTables(std::int16_t SessionID, PolledFolder folder) {
    const std::vector<std::string> files = ListFiles(SessionDef.FolderName, SessionDef.FPattern);
    if (files.empty()) return ReportNoMatch();
    SourceTables(0).TableName = files.front();
    std::optional<SchemaIniWriter> schema;
    if (folder == PolledFolder::WriteSchemaIni) schema.emplace(SessionDef.FolderName, files);
    if (schema) schema->AddSection(SourceTables(0));

    OpenSessionRows("vrtabs", SessionID);
    const RowFields row(*RepoRs, "vrtabs", SessionID);
    for (std::size_t i = 1; i < files.size(); ++i) {
        AddFile(row, static_cast<std::int16_t>(i), files[i]);
        if (schema) schema->AddSection(SourceTables(i));
    }
    RepoRs->Close();
    if (schema) schema->Close();
}

void PollFolderColumns(std::int16_t SessionID, std::int16_t TabID, const std::string& TableName) {
    const double count = CountSessionRows("SrcDCols", SessionID);
    if (count == 0) {
        RepoOk = false;
        return;
    }
    const auto first = static_cast<std::size_t>(Columns.Count());
    Columns.Resize(first + static_cast<std::size_t>(count));
    OpenSessionRows("SrcDCols", SessionID);
    const RowFields row(*RepoRs, "SrcDCols", SessionID);
    for (std::size_t j = first; j < static_cast<std::size_t>(Columns.Count()); ++j, RepoRs->MoveNext()) {
        Columns(j).TabID = TabID;
        Columns(j).TName = TableName;
        ReadColumnMapping(row, Columns(j));
    }
    RepoRs->Close();
}

}  // namespace varnel
