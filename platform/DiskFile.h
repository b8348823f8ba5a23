// A file opened for reading and changing in place, by its local path; with the waits for the disk that a journal needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace varnel {

class DiskFile {
public:
    enum class Mode {
        Existing,        ///< read only when the system allows no more
        ExistingToRead,  ///< read only
        New,             ///< fails when it exists
        CreateWhenMissing
    };
    DiskFile() = default;
    /// storedPath: for error texts. Throws Error{Io} in the words of FileErrorText; a folder is refused.
    DiskFile(std::string localPath, std::string storedPath, Mode mode);
    ~DiskFile();
    DiskFile(DiskFile&& other) noexcept;
    DiskFile& operator=(DiskFile&& other) noexcept;

    bool IsOpen() const { return descriptor_ >= 0; }
    void Close() noexcept;
    /// 0, or the errno value for which the file could not be opened for writing.
    int WriteRefusal() const { return writeRefusal_; }
    const std::string& LocalPath() const { return local_; }
    const std::string& StoredPath() const { return stored_; }
    int Descriptor() const { return descriptor_; }
    /// Removes the path, if it can be; the file stays open.
    void RemoveName() noexcept;
    /// True while the path still names the file that is open.
    bool StillThere() const noexcept;

    /// A number that no other file of the folder has, now or later; as far as the file system tells.
    std::uint64_t Identity() const;

    /// All of these throw Error{Io}.
    std::uint64_t Size() const;
    /// Returns how many bytes were read; fewer than asked for only at the end.
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) const;
    /// Part of the bytes may have been written when it throws.
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes);
    void Truncate(std::uint64_t size);
    /// Waits until what was written survives a power cut.
    void Sync();

private:
    [[noreturn]] void Fail(int code) const;

    int descriptor_ = -1;
    int writeRefusal_ = 0;
    std::string local_, stored_;
};

/// Opens the file when it exists; else gives a closed one. Throws Error{Io} as above.
DiskFile OpenDiskFileIfExists(const std::string& localPath, const std::string& storedPath, DiskFile::Mode mode);
/// "/data" for "/data/x.dbf"; "." and "/" where that is the folder.
std::string FolderPart(const std::string& localPath);
/// Waits until the folder's entries survive a power cut. Throws Error{Io}.
void SyncFolder(const std::string& localFolder, const std::string& storedPath);
/// A file that does not exist counts as removed. Throws Error{Io}.
void RemoveDiskFile(const std::string& localPath, const std::string& storedPath);
/// The name of this machine, as locks and lock files tell it.
std::string MachineName();
/// The path with its links followed; as it is when that fails.
std::string PathWithoutLinks(const std::string& localPath);

}  // namespace varnel
