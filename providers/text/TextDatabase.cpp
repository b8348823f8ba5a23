#include "providers/text/TextDatabase.h"

#include <utility>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "providers/text/ConnectionOptions.h"
#include "providers/text/TableName.h"
#include "providers/text/TextTable.h"

namespace varnel::text {
namespace {

constexpr std::string_view kSchemaFile = "Schema.ini";

/// The folder that a path names: itself, or the one of the file it names.
std::string FolderOf(std::string_view storedPath) {
    if (!storedPath.empty() && FolderExists(storedPath)) return std::string(storedPath);
    if (!storedPath.empty() && FileExists(storedPath)) {
        const std::size_t separator = storedPath.find_last_of("/\\");
        if (separator == std::string_view::npos) return ".";
        return std::string(storedPath.substr(0, separator + 1));
    }
    throw Error(ErrorKind::Io, std::string(storedPath), "'" + std::string(storedPath) + "' is not a valid path.");
}

std::string AllBytes(const InputFile& file) {
    constexpr std::size_t kBlock = 64 * 1024;
    std::string bytes;
    for (std::size_t count = kBlock; count == kBlock;) {
        const std::size_t held = bytes.size();
        bytes.resize(held + kBlock);
        count = file.ReadAt(held, {bytes.data() + held, kBlock});
        bytes.resize(held + count);
    }
    return bytes;
}

}  // namespace

TextDatabase::TextDatabase(std::string_view storedPath, std::string_view extendedProperties, std::size_t bufferBytes)
    : folder_(FolderOf(storedPath)), options_(ReadConnectionOptions(extendedProperties)), bufferBytes_(bufferBytes) {}

std::vector<std::string> TextDatabase::TableNames() {
    std::vector<std::string> names = ListFiles(folder_, "*");
    std::erase_if(names, [](const std::string& name) { return EqualNoCase(name, kSchemaFile); });
    return names;
}

std::unique_ptr<TableFile> TextDatabase::OpenTable(std::string_view name) {
    const TableName table = ReadTableName(name);
    std::string folder = table.isWhole ? table.folder : folder_;
    if (!table.isWhole && !table.folder.empty()) folder = JoinedPath(folder_, table.folder);
    const std::optional<std::string> file = FindTableFile(folder, table.file);
    if (!file) ThrowNoTable(name);
    const TextFormat options = table.options.empty() ? options_ : ReadConnectionOptions(table.options);
    return std::make_unique<TextTable>(JoinedPath(folder, *file), *file, SchemaOf(folder).FormatOf(*file, options),
                                       bufferBytes_);
}

void TextDatabase::CreateTable(std::string_view name, std::span<const ColumnDefinition> /*columns*/) {
    ThrowReadOnly(name);
}

void TextDatabase::DropTable(std::string_view name) {
    ThrowReadOnly(name);
}

void TextDatabase::RequireWritable() {
    ThrowReadOnly(folder_);
}

/// Read anew only when the file has changed: a folder of many files has a long one.
const SchemaIni& TextDatabase::SchemaOf(const std::string& folder) {
    const std::string path = JoinedPath(folder, kSchemaFile);
    if (!FileExists(path)) {
        schemaPath_.clear();
        return schema_ = SchemaIni();
    }
    const InputFile file(path);
    const FileState state = file.State();
    if (path == schemaPath_ && state == schemaState_) return schema_;
    schema_ = SchemaIni(AllBytes(file));
    schemaPath_ = path;
    schemaState_ = state;
    return schema_;
}

}  // namespace varnel::text
