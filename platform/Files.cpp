#include "platform/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/StoredPath.h"
#include "platform/Wildcard.h"

namespace varnel {
namespace {

[[noreturn]] void ThrowFileError(int code, std::string_view storedPath, bool folderMissing = false) {
    throw Error(ErrorKind::Io, std::string(storedPath), FileErrorText(code, storedPath, folderMissing));
}

bool IsOrdinaryFile(int folder, const dirent& entry) {
    if (entry.d_type == DT_REG) return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
    struct stat status {};
    return fstatat(folder, entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

bool NameExists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

std::string FolderOf(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    if (separator == std::string::npos) return ".";
    return separator == 0 ? "/" : path.substr(0, separator);
}

/// The last component of a stored path.
std::string_view LastName(std::string_view storedPath) {
    const std::size_t separator = storedPath.find_last_of("/\\:");
    return separator == std::string_view::npos ? storedPath : storedPath.substr(separator + 1);
}

/// Renames by a second name and removing the first; where the file system has no second names, by an exclusive
/// placeholder that the rename then replaces. Returns 0 or the errno value.
int RenameWithoutFlags(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) == 0) return unlink(from.c_str()) == 0 ? 0 : errno;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) return errno;
    const int placeholder = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (placeholder < 0) return errno;
    close(placeholder);
    if (rename(from.c_str(), to.c_str()) == 0) return 0;
    const int code = errno;
    unlink(to.c_str());
    return code;
}

/// Returns 0 or the errno value; EEXIST when to exists.
int RenameNeverReplacing(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    return errno == EINVAL || errno == ENOSYS ? RenameWithoutFlags(from, to) : errno;
}

int AccessRefusal(const std::string& path, int rights) {
    return access(path.c_str(), rights) == 0 ? 0 : errno;
}

}  // namespace

std::string FileErrorText(int code, std::string_view storedPath, bool folderMissing) {
    const auto words = [&]() -> std::string {
        switch (code) {
            case ENOENT:
                return folderMissing ? "Path not found" : "File not found";
            case EEXIST:
                return "File already exists";
            case EACCES:
            case EPERM:
            case EBUSY:
            case ETXTBSY:
                return "Permission denied";
            case EISDIR:
            case ENOTDIR:
            case EROFS:
                return "Path/File access error";
            case ENOSPC:
            case EDQUOT:
                return "Disk full";
            case EMFILE:
            case ENFILE:
                return "Too many files";
            case EIO:
                return "Device I/O error";
            case EXDEV:
                return "Can't rename with different drive";
            case ENOMEM:
                return "Out of memory";
            default:
                return "Path/File access error (" + std::generic_category().message(code) + ")";
        }
    };
    return words() + ": '" + std::string(storedPath) + "'";
}

std::vector<std::string> ListFiles(std::string_view storedFolder, std::string_view pattern) {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(LocalPath(storedFolder).c_str()), closedir);
    if (!listing) ThrowFileError(errno, storedFolder, true);
    std::vector<std::pair<std::string, std::string>> names;  // folded, as it is
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(listing.get());
        if (entry == nullptr) break;
        const std::string_view name = entry->d_name;
        if (name.starts_with('.') || !MatchesWildcard(name, pattern)) continue;
        if (IsOrdinaryFile(dirfd(listing.get()), *entry)) names.emplace_back(FoldCase(name), name);
    }
    if (errno != 0) ThrowFileError(errno, storedFolder, true);
    std::sort(names.begin(), names.end());
    std::vector<std::string> sorted;
    sorted.reserve(names.size());
    for (auto& [folded, name] : names) sorted.push_back(std::move(name));
    return sorted;
}

void RenameFile(std::string_view storedFrom, std::string_view storedTo) {
    const std::string from = LocalPath(storedFrom);
    std::string to = LocalPath(storedTo);
    if (from == to) {  // only the case of the name changes, or nothing
        to = FolderOf(from) == "." ? std::string(LastName(storedTo))
                                   : FolderOf(from) + "/" + std::string(LastName(storedTo));
        if (from == to && NameExists(from)) return;
    }
    const int code = RenameNeverReplacing(from, to);
    if (code == 0) return;
    const bool isTargets = code == EEXIST || (code == ENOENT && NameExists(from));
    const std::string_view place = isTargets ? storedTo : storedFrom;
    ThrowFileError(code, place, isTargets || !NameExists(FolderOf(from)));
}

std::string WhyNotWritable(std::string_view storedPath) {
    const std::string path = LocalPath(storedPath);
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        const int refusal = S_ISDIR(status.st_mode) ? EISDIR : AccessRefusal(path, W_OK);
        return refusal == 0 ? "" : FileErrorText(refusal, storedPath);
    }
    const int refusal = AccessRefusal(FolderOf(path), W_OK | X_OK);
    return refusal == 0 ? "" : FileErrorText(refusal, storedPath, refusal == ENOENT);
}

bool FileExists(std::string_view storedPath) {
    struct stat status {};
    return stat(LocalPath(storedPath).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

OutputFile::OutputFile(std::string_view storedPath, Mode mode) : path_(storedPath) {
    const bool isPrivate = mode == Mode::NewPrivate;
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_APPEND | (mode == Mode::Truncate ? O_TRUNC : 0) |
                      (isPrivate ? O_EXCL : 0);
    const std::string local = LocalPath(storedPath);
    do {
        descriptor_ = open(local.c_str(), flags, isPrivate ? 0600 : 0666);
    } while (descriptor_ < 0 && errno == EINTR);
    if (descriptor_ < 0) ThrowFileError(errno, storedPath, true);
}

OutputFile::~OutputFile() {
    if (IsOpen()) close(descriptor_);
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(path_, other.path_);
    return *this;
}

/// One successful write; throws when the system refuses it.
std::size_t OutputFile::WriteSome(std::string_view bytes) {
    if (!IsOpen()) throw Error(ErrorKind::Misuse, path_, "Bad file name or number: '" + path_ + "'");
    while (true) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        if (written >= 0) return static_cast<std::size_t>(written);
        if (errno != EINTR) ThrowFileError(errno, path_);
    }
}

void OutputFile::Write(std::string_view bytes) {
    while (!bytes.empty()) bytes.remove_prefix(WriteSome(bytes));
}

void OutputFile::Drain(std::string& buffer) {
    std::size_t done = 0;
    try {
        while (done < buffer.size()) done += WriteSome(std::string_view(buffer).substr(done));
    } catch (const Error&) {
        buffer.erase(0, done);
        throw;
    }
    buffer.clear();
}

void OutputFile::Close() {
    if (!IsOpen()) return;
    const int result = close(std::exchange(descriptor_, -1));
    if (result != 0 && errno != EINTR) ThrowFileError(errno, path_);
}

}  // namespace varnel
