// Files opened for reading, by stored path (StoredPath.h). Reads name their place in the file, so that several readers
// share one open file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace varnel {

/// What tells one state of a file's content from another without reading it.
struct FileState {
    std::uint64_t device = 0, inode = 0;
    std::uint64_t size = 0;     ///< bytes
    std::int64_t modified = 0;  ///< nanoseconds since 1970, of the last write
    std::int64_t changed = 0;   ///< the same, of the last change of the file's entry
    bool operator==(const FileState&) const = default;
};

/// The state of the file or folder that the path names; nothing when there is none.
std::optional<FileState> StateOfPath(std::string_view storedPath);
/// True when the path names a folder.
bool FolderExists(std::string_view storedPath);

class InputFile {
public:
    /// Throws Error{Io} in the words of FileErrorText; a folder is refused.
    explicit InputFile(std::string_view storedPath);
    ~InputFile();
    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;

    /// Reads bytes from offset (bytes from the file's start) on; returns how many, fewer than asked for only at the
    /// end of the file. Throws Error{Io}.
    std::size_t ReadAt(std::uint64_t offset, std::span<char> into) const;
    /// Of the file as it is now. Throws Error{Io}.
    FileState State() const;

private:
    int descriptor_ = -1;
    std::string path_;
};

}  // namespace varnel
