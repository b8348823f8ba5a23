#include "platform/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <utility>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"

namespace varnel {
namespace {

[[noreturn]] void ThrowFileError(int code, const std::string& storedPath) {
    throw Error(ErrorKind::Io, storedPath, FileErrorText(code, storedPath));
}

std::int64_t Nanoseconds(const timespec& moment) {
    return static_cast<std::int64_t>(moment.tv_sec) * 1'000'000'000 + moment.tv_nsec;
}

FileState StateFrom(const struct stat& status) {
    FileState state;
    state.device = status.st_dev;
    state.inode = status.st_ino;
    state.size = static_cast<std::uint64_t>(status.st_size);
    state.modified = Nanoseconds(status.st_mtim);
    state.changed = Nanoseconds(status.st_ctim);
    return state;
}

}  // namespace

std::optional<FileState> StateOfPath(std::string_view storedPath) {
    struct stat status {};
    const std::string local = LocalPath(storedPath);
    if (stat(local.empty() ? "." : local.c_str(), &status) != 0) return std::nullopt;
    return StateFrom(status);
}

bool FolderExists(std::string_view storedPath) {
    struct stat status {};
    const std::string local = LocalPath(storedPath);
    return stat(local.empty() ? "." : local.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

InputFile::InputFile(std::string_view storedPath) : path_(storedPath) {
    descriptor_ = open(LocalPath(storedPath).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor_ < 0) ThrowFileError(errno, path_);
    struct stat status {};
    if (fstat(descriptor_, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(std::exchange(descriptor_, -1));
        ThrowFileError(EISDIR, path_);
    }
    posix_fadvise(descriptor_, 0, 0, POSIX_FADV_SEQUENTIAL);  // only a hint: its refusal changes nothing
}

InputFile::~InputFile() {
    if (descriptor_ >= 0) close(descriptor_);
}

InputFile::InputFile(InputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(path_, other.path_);
    return *this;
}

std::size_t InputFile::ReadAt(std::uint64_t offset, std::span<char> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t count =
            pread(descriptor_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) ThrowFileError(errno, path_);
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

FileState InputFile::State() const {
    struct stat status {};
    if (fstat(descriptor_, &status) != 0) ThrowFileError(errno, path_);
    return StateFrom(status);
}

}  // namespace varnel
