#include "tests/providers_access/SampleFiles.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "ado/types/ValueText.h"
#include "tests/providers_access/MemoryPageFile.h"

namespace varnel::access {

std::optional<std::string> SamplePath(const std::string& name) {
    std::vector<std::string> folders = {"tests/data/access", "../shared/testdata/access",
                                        "../../shared/testdata/access"};
    if (const char* named = std::getenv("VARNEL_ACCESS_SAMPLES")) folders.insert(folders.begin(), named);
    for (const std::string& folder : folders) {
        if (std::filesystem::exists(folder + "/" + name)) return folder + "/" + name;
    }
    return std::nullopt;
}

std::vector<std::uint8_t> BytesOfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::unique_ptr<AccessDatabase> DatabaseOf(const std::vector<std::uint8_t>& bytes, const std::string& name) {
    return std::make_unique<AccessDatabase>(std::make_shared<MemoryPageFile>(bytes, LayoutOf(bytes), name),
                                            AccessOptions());
}

std::string OutputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), pipe.get()))
        output.append(block.data(), count);
    return output;
}

std::vector<std::string> LinesOf(const std::string& command) {
    std::vector<std::string> lines;
    std::istringstream stream(OutputOf(command));
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

Rows ReadColumns(TableFile& table, const std::vector<std::string>& names) {
    std::vector<std::size_t> wanted;
    for (const std::string& name : names) wanted.push_back(table.FindColumn(name).value());
    const auto reader = table.Rows(wanted);
    Rows rows;
    std::vector<Value> row(wanted.size());
    while (reader->Next(row)) rows.push_back(row);
    return rows;
}

Rows ReadTable(AccessDatabase& database, const std::string& table) {
    const auto file = database.OpenTable(table);
    std::vector<std::string> names;
    for (const ColumnInfo& column : file->Columns()) names.push_back(column.name);
    return ReadColumns(*file, names);
}

std::string Shown(const Rows& rows) {
    std::string all;
    for (const auto& row : rows) {
        for (std::size_t k = 0; k < row.size(); ++k) {
            if (k > 0) all += '|';
            const ValueKind kind = row[k].Kind();
            all += kind == ValueKind::Null      ? "~"
                   : kind == ValueKind::Failure ? "!" + std::string(row[k].FailureText())
                                                : DefaultText(row[k]);
        }
        all += '\n';
    }
    return all;
}

}  // namespace varnel::access
