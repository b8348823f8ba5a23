#include "providers/text/TableName.h"

#include <algorithm>
#include <array>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"

namespace varnel::text {
namespace {

constexpr std::string_view kSeparators = "/\\";

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

bool IsFullPath(std::string_view path) {
    const bool hasDrive = path.size() >= 2 && path[1] == ':';
    return hasDrive || (!path.empty() && IsSeparator(path[0]));
}

/// Takes "[...]" off the front of rest; "" when it does not begin so.
std::string_view TakeBracketed(std::string_view& rest) {
    const std::size_t end = rest.find(']');
    if (!rest.starts_with('[') || end == std::string_view::npos) return "";
    const std::string_view inner = rest.substr(1, end - 1);
    rest.remove_prefix(end + 1);
    return inner;
}

/// "[a].[b]": both parts. False for anything else.
bool SplitBracketPair(std::string_view name, std::string_view& first, std::string_view& second) {
    first = TakeBracketed(name);
    if (first.empty() || !name.starts_with('.')) return false;
    name.remove_prefix(1);
    second = TakeBracketed(name);
    return !second.empty() && name.empty();
}

/// The folder that "Text;DATABASE=C:\data;HDR=No" names.
std::string DatabaseOf(std::string_view options) {
    constexpr std::string_view kKey = "DATABASE=";
    while (!options.empty()) {
        const std::string_view part = TrimBlanks(options.substr(0, options.find(';')));
        if (EqualNoCase(part.substr(0, kKey.size()), kKey)) return std::string(TrimBlanks(part.substr(kKey.size())));
        options.remove_prefix(std::min(options.find(';'), options.size() - 1) + 1);
    }
    return "";
}

/// Whether a component of a relative path leads upward.
bool LeadsOut(std::string_view path) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(kSeparators), path.size());
        if (path.substr(0, end) == "..") return true;
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return false;
}

/// Folder and file of a path; the folder keeps a separator that is all of it ("/").
void SplitPath(std::string_view path, TableName& table) {
    const std::size_t separator = path.find_last_of(kSeparators);
    table.file = path.substr(separator == std::string_view::npos ? 0 : separator + 1);
    if (separator == std::string_view::npos) return;
    table.folder = path.substr(0, std::max<std::size_t>(separator, 1));
    if (table.folder.ends_with(':')) table.folder += path[separator];
    table.isWhole = IsFullPath(path);
}

/// The name of the file as the system has it; "" when a file of that name, in this case, is not there.
std::string ExactName(std::string_view storedFolder, const std::string& name, bool anyCase) {
    const std::string path = JoinedPath(storedFolder, name);
    if (!FileExists(path)) return "";
    const std::string local = LocalPath(path);
    const std::string actual = local.substr(local.rfind('/') + 1);
    return anyCase || actual == name ? actual : "";
}

}  // namespace

TableName ReadTableName(std::string_view name) {
    TableName table;
    std::string_view place, file;
    if (SplitBracketPair(name, place, file)) {
        table.file = file;
        table.isWhole = true;
        constexpr std::string_view kText = "Text;";
        const bool hasOptions = EqualNoCase(place.substr(0, kText.size()), kText);
        if (hasOptions) table.options = place;
        table.folder = hasOptions ? DatabaseOf(place) : std::string(place);
        table.isWhole = IsFullPath(table.folder);
        if (table.file.find_first_of(kSeparators) != std::string::npos) ThrowNoTable(name);
    } else {
        const std::string_view inner = TakeBracketed(name);
        SplitPath(inner.empty() || !name.empty() ? name : inner, table);
    }
    if (!table.isWhole && LeadsOut(table.folder)) {
        throw Error(ErrorKind::Syntax, table.file,
                    "'" + table.folder + "' leads out of the folder that holds the text files");
    }
    return table;
}

std::optional<std::string> FindTableFile(std::string_view storedFolder, std::string_view written) {
    if (written.empty() || written == "." || written == "..") return std::nullopt;
    std::array<std::string, 3> names;
    names.fill(std::string(written));
    const std::size_t last = written.rfind('#');
    if (last != std::string_view::npos) names[1][last] = '.';
    std::replace(names[2].begin(), names[2].end(), '#', '.');
    for (const bool anyCase : {false, true}) {
        for (const std::string& name : names) {
            std::string found = ExactName(storedFolder, name, anyCase);
            if (!found.empty()) return found;
        }
    }
    return std::nullopt;
}

std::string JoinedPath(std::string_view storedFolder, std::string_view name) {
    std::string path(storedFolder);
    const bool usesBackslash = path.find('\\') != std::string::npos;
    if (!path.empty() && !IsSeparator(path.back())) path += usesBackslash ? '\\' : '/';
    return path += name;
}

void ThrowNoTable(std::string_view name) {
    throw Error(ErrorKind::Constraint, std::string(name),
                "The Jet database engine cannot find the input table or query '" + std::string(name) + "'.");
}

}  // namespace varnel::text
