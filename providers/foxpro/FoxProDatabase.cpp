#include "providers/foxpro/FoxProDatabase.h"

#include <algorithm>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/FoxProTable.h"
#include "providers/foxpro/NewTable.h"

namespace varnel::foxpro {
namespace {

bool HasExtension(std::string_view path, std::string_view extension) {
    return path.size() > extension.size() && EqualNoCase(path.substr(path.size() - extension.size()), extension);
}

/// With the separator at its end; "" when the path has no folder.
std::string FolderPart(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\:");
    return std::string(path.substr(0, separator == std::string_view::npos ? 0 : separator + 1));
}

bool IsWholePath(std::string_view path) {
    return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

std::string JoinedPath(const std::string& folder, std::string_view name) {
    if (folder.empty() || folder.back() == '/' || folder.back() == '\\') return folder + std::string(name);
    const bool isWindows = folder.find('\\') != std::string::npos && folder.find('/') == std::string::npos;
    return folder + (isWindows ? '\\' : '/') + std::string(name);
}

/// ASCII letters only.
std::string UpperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

[[noreturn]] void ThrowNoTable(std::string_view name) {
    throw Error(ErrorKind::Constraint, std::string(name), "File '" + std::string(name) + "' does not exist.");
}

}  // namespace

FoxProDatabase::FoxProDatabase(std::string_view storedPath, DatabaseOptions options)
    : folder_(storedPath), options_(options) {
    if (FolderExists(storedPath)) return;
    if (HasExtension(storedPath, ".dbc")) container_ = OpenContainer(storedPath);
    if (!container_ && !FileExists(storedPath)) {
        throw Error(ErrorKind::Io, folder_, "Invalid path or file name: '" + folder_ + "'");
    }
    folder_ = FolderPart(storedPath);
    if (folder_.empty()) folder_ = ".";
}

std::vector<std::string> FoxProDatabase::TableNames() {
    if (container_) return container_->TableNames();
    std::vector<std::string> names = ListFiles(folder_, "*.dbf");
    for (std::string& name : names) name.resize(name.size() - 4);
    return names;
}

std::string FoxProDatabase::PathOf(std::string_view name) const {
    std::string path = IsWholePath(name) ? std::string(name) : JoinedPath(folder_, name);
    if (HasExtension(path, ".dbf")) return path;
    const bool hasOther = !FileExists(path + ".dbf") && FileExists(path);
    return hasOther ? path : path + ".dbf";
}

/// What a container says of the table that a name means.
std::optional<ContainerTable> FoxProDatabase::InContainer(std::string_view name) {
    if (!container_) return std::nullopt;
    if (auto table = container_->FindTable(name)) return table;
    return container_->FindFile(PathOf(name));
}

bool FoxProDatabase::HasTable(std::string_view name) {
    return InContainer(name) || FileExists(PathOf(name));
}

std::unique_ptr<TableFile> FoxProDatabase::OpenTable(std::string_view name) {
    std::optional<ContainerTable> table = InContainer(name);
    const std::string path = table ? table->dbfPath : PathOf(name);
    if (!FileExists(path)) ThrowNoTable(name);
    auto file = DbfFile::Open(path, options_.codePageWhenNoneStated);
    if (!table) table = ByBackLink(*file);
    return std::make_unique<FoxProTable>(std::move(file), table.value_or(ContainerTable()), options_.showDeleted);
}

/// The table in the container that its file names; nothing when it is free, or was copied here without its container.
std::optional<ContainerTable> FoxProDatabase::ByBackLink(DbfFile& file) {
    const auto hold = file.HoldForReading();
    if (file.Header().IsFree()) return std::nullopt;
    const std::string path = JoinedPath(FolderPart(file.StoredPath()), file.Header().backLink);
    if (!FileExists(path)) return std::nullopt;
    return OpenContainer(path)->FindFile(file.StoredPath());
}

void FoxProDatabase::CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) {
    std::vector<std::string> names, stored;
    for (const ColumnDefinition& column : columns) names.push_back(column.name);
    stored = container_ ? PhysicalNames(names) : names;
    std::vector<NewField> fields;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        fields.push_back(FieldOfDefinition(columns[k], UpperCase(stored[k]), options_.columnsTakeNull));
    }
    if (InContainer(name)) {
        throw Error(ErrorKind::Constraint, std::string(name), "Table '" + std::string(name) + "' already exists.");
    }
    std::string path = IsWholePath(name) ? std::string(name) : JoinedPath(folder_, name);
    if (!HasExtension(path, ".dbf")) path += ".dbf";
    const std::vector<NewFile> files =
        NewTableFiles(path, fields, container_ ? container_->BackLink() : "", options_.newTableCodePage);
    if (container_) {
        container_->AddTable(name, path, names, files);
    } else {
        PlaceNewFiles(files);
    }
}

void FoxProDatabase::DropTable(std::string_view name) {
    const std::optional<ContainerTable> table = InContainer(name);
    const std::string path = table ? table->dbfPath : PathOf(name);
    if (!FileExists(path)) ThrowNoTable(name);
    if (!table) return DbfFile::Open(path)->Drop();
    std::vector<std::string> files = {path};
    for (const std::string_view extension : {"fpt", "cdx"}) {
        if (auto companion = FindCompanion(path, extension)) files.push_back(std::move(*companion));
    }
    container_->RemoveTable(table->name, files);
}

}  // namespace varnel::foxpro
