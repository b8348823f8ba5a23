#include "platform/DiskFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel {
namespace {

[[noreturn]] void ThrowFileError(int code, const std::string& storedPath, bool folderMissing = false) {
    throw Error(ErrorKind::Io, storedPath, FileErrorText(code, storedPath, folderMissing));
}

int OpenRetrying(const std::string& path, int flags) {
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int FlagsOf(DiskFile::Mode mode) {
    switch (mode) {
        case DiskFile::Mode::ExistingToRead:
            return O_RDONLY;
        case DiskFile::Mode::New:
            return O_RDWR | O_CREAT | O_EXCL;
        case DiskFile::Mode::CreateWhenMissing:
            return O_RDWR | O_CREAT;
        default:
            return O_RDWR;
    }
}

bool MayStillBeRead(int code) {
    return code == EACCES || code == EPERM || code == EROFS || code == ETXTBSY;
}

}  // namespace

DiskFile::DiskFile(std::string localPath, std::string storedPath, Mode mode)
    : local_(std::move(localPath)), stored_(std::move(storedPath)) {
    descriptor_ = OpenRetrying(local_, FlagsOf(mode));
    if (descriptor_ < 0 && mode == Mode::Existing && MayStillBeRead(errno)) {
        writeRefusal_ = errno;
        descriptor_ = OpenRetrying(local_, O_RDONLY);
    }
    if (descriptor_ < 0) ThrowFileError(errno, stored_, mode == Mode::New);
    struct stat status {};
    if (fstat(descriptor_, &status) == 0 && S_ISDIR(status.st_mode)) {
        Close();
        Fail(EISDIR);
    }
}

DiskFile::~DiskFile() {
    Close();
}

DiskFile::DiskFile(DiskFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      writeRefusal_(other.writeRefusal_),
      local_(std::move(other.local_)),
      stored_(std::move(other.stored_)) {}

DiskFile& DiskFile::operator=(DiskFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(writeRefusal_, other.writeRefusal_);
    std::swap(local_, other.local_);
    std::swap(stored_, other.stored_);
    return *this;
}

void DiskFile::Close() noexcept {
    if (IsOpen()) close(std::exchange(descriptor_, -1));
}

void DiskFile::RemoveName() noexcept {
    unlink(local_.c_str());
}

bool DiskFile::StillThere() const noexcept {
    struct stat named {
    }, opened{};
    return stat(local_.c_str(), &named) == 0 && fstat(descriptor_, &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

std::uint64_t DiskFile::Identity() const {
    struct statx status {};
    if (statx(descriptor_, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0) Fail(errno);
    const auto born = static_cast<std::uint64_t>(status.stx_btime.tv_sec) * 1'000'000'000 + status.stx_btime.tv_nsec;
    return status.stx_ino * 0x9E3779B97F4A7C15 ^ born;
}

std::uint64_t DiskFile::Size() const {
    struct stat status {};
    if (fstat(descriptor_, &status) != 0) Fail(errno);
    return static_cast<std::uint64_t>(status.st_size);
}

std::size_t DiskFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t count =
            pread(descriptor_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) Fail(errno);
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void DiskFile::WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            pwrite(descriptor_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) Fail(errno);
        done += static_cast<std::size_t>(count);
    }
}

void DiskFile::Truncate(std::uint64_t size) {
    int result = 0;
    do {
        result = ftruncate(descriptor_, static_cast<off_t>(size));
    } while (result != 0 && errno == EINTR);
    if (result != 0) Fail(errno);
}

void DiskFile::Sync() {
    if (fdatasync(descriptor_) != 0) Fail(errno);
}

/// EFBIG is the file size limit of the user or the file system: to the reader of the log the disk is full.
void DiskFile::Fail(int code) const {
    ThrowFileError(code == EFBIG ? ENOSPC : code, stored_);
}

DiskFile OpenDiskFileIfExists(const std::string& localPath, const std::string& storedPath, DiskFile::Mode mode) {
    struct stat status {};
    if (stat(localPath.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR)) return {};
    return {localPath, storedPath, mode};
}

std::string FolderPart(const std::string& localPath) {
    const std::size_t separator = localPath.rfind('/');
    if (separator == std::string::npos) return ".";
    return separator == 0 ? "/" : localPath.substr(0, separator);
}

void SyncFolder(const std::string& localFolder, const std::string& storedPath) {
    const int descriptor = OpenRetrying(localFolder, O_RDONLY | O_DIRECTORY);
    if (descriptor < 0) ThrowFileError(errno, storedPath);
    const int code = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    // Some file systems keep their entries without being asked, and say so by refusing.
    if (code != 0 && code != EINVAL && code != ENOTSUP) ThrowFileError(code, storedPath);
}

void RemoveDiskFile(const std::string& localPath, const std::string& storedPath) {
    if (unlink(localPath.c_str()) != 0 && errno != ENOENT) ThrowFileError(errno, storedPath);
}

std::string MachineName() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

std::string PathWithoutLinks(const std::string& localPath) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(localPath.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : localPath;
}

}  // namespace varnel
