#include "platform/StoredPath.h"

#include <dirent.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel {
namespace {

std::string CurrentFolder() {
    char folder[PATH_MAX];
    return getcwd(folder, sizeof folder) != nullptr ? folder : ".";
}

std::string& StoredApplicationFolder() {
    static std::string folder = CurrentFolder();
    return folder;
}

/// True when the name itself exists, be it a link that leads nowhere.
bool NameExists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

/// The one name in a folder that equals name without regard to case; "" when there is none, or several.
std::string OnlyNameWithoutCase(const std::string& folder, std::string_view name) {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.empty() ? "." : folder.c_str()), closedir);
    if (!listing) return "";
    const std::string wanted = FoldCase(name);
    std::string found, folded;
    while (const dirent* entry = readdir(listing.get())) {
        folded.clear();
        AppendFoldedCase(folded, entry->d_name);
        if (folded != wanted) continue;
        if (!found.empty()) return "";
        found = entry->d_name;
    }
    return found;
}

std::string Joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.empty() && path.back() != '/') path += '/';
    return path += name;
}

/// Takes the first component off rest, which holds only forward slashes; "" when nothing is left.
std::string_view TakeComponent(std::string_view& rest) {
    while (!rest.empty() && rest.front() == '/') rest.remove_prefix(1);
    const std::string_view component = rest.substr(0, rest.find('/'));
    rest.remove_prefix(component.size());
    return component;
}

/// base with the components of rest added, each as it exists.
std::string Resolved(std::string base, std::string_view rest) {
    bool known = true;  // base exists, so its names can be looked up
    for (std::string_view part = TakeComponent(rest); !part.empty(); part = TakeComponent(rest)) {
        if (part == ".") continue;
        std::string path = Joined(base, part);
        if (known && !NameExists(path)) {
            const std::string name = OnlyNameWithoutCase(base, part);
            known = !name.empty();
            if (known) path = Joined(base, name);
        }
        base = std::move(path);
    }
    return base;
}

/// The folder or link name, as it exists in folder of the application folder, that stands for a drive or a share.
std::string Mounted(std::string_view stored, const std::string& folder, const std::string& name) {
    std::string path = Resolved(ApplicationFolder(), folder + "/" + name);
    if (!NameExists(path)) {
        throw Error(ErrorKind::Io, std::string(stored),
                    "Path not found: '" + std::string(stored) + "'; make '" + folder + "/" + name + "' in '" +
                        ApplicationFolder() + "' a folder, or a link to one");
    }
    return path;
}

std::string PathWithoutDots(const std::string& path) {
    const std::string base = path.empty() || path.front() != '/' ? CurrentFolder() : "/";
    std::string plain = base;
    std::string_view rest = path;
    for (std::string_view part = TakeComponent(rest); !part.empty(); part = TakeComponent(rest)) {
        if (part != ".") plain = Joined(plain, part);
    }
    return plain;
}

/// The program's file as the shell would find it along PATH; "" when it is not there.
std::string FoundAlongPath(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::string_view rest = variable != nullptr ? variable : "";
    while (!name.empty()) {
        const std::size_t end = rest.find(':');
        const std::string folder(rest.substr(0, end));
        std::string candidate = Joined(folder.empty() ? "." : folder, name);
        struct stat status {};
        if (stat(candidate.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }
    return "";
}

}  // namespace

const std::string& ApplicationFolder() {
    return StoredApplicationFolder();
}

void SetApplicationFolder(std::string folder) {
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    StoredApplicationFolder() = std::move(folder);
}

std::string FolderOfProgram(const std::string& argv0) {
    const std::string program = argv0.find('/') != std::string::npos ? argv0 : FoundAlongPath(argv0);
    if (program.empty()) return CurrentFolder();
    const std::string path = PathWithoutDots(program);
    const std::size_t separator = path.rfind('/');
    return separator == 0 ? "/" : path.substr(0, separator);
}

std::string FolderOfExecutable() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) return "";
    const std::string_view file(path, static_cast<std::size_t>(length));
    return std::string(file.substr(0, file.rfind('/')));
}

std::string LocalPath(std::string_view stored) {
    std::string path(stored);
    std::replace(path.begin(), path.end(), '\\', '/');
    std::string_view rest = path;
    if (path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0) {
        rest.remove_prefix(2);
        return Resolved(Mounted(stored, "drives", path.substr(0, 1)), rest);
    }
    // "/\x" is a file in the root folder: a folder "/" with a Windows separator joined to it.
    if (stored.size() > 2 && path.starts_with("//") && stored[0] == stored[1]) {
        const std::string server(TakeComponent(rest));
        const std::string share(TakeComponent(rest));
        return Resolved(Mounted(stored, "shares", share.empty() ? server : server + "/" + share), rest);
    }
    return Resolved(path.starts_with('/') ? "/" : "", rest);
}

}  // namespace varnel
