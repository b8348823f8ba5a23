// Files and folders, named by stored paths (StoredPath.h). Failures carry the texts that users of such tools know
// ("Path not found", "Permission denied", "Disk full"), followed by the path as stored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnel {

/// Names, without folder, of the ordinary files of a folder that match pattern (Wildcard.h), sorted by name without
/// regard to case; names that begin with a dot are hidden and left out. Throws Error{Io} when the folder can't be read.
std::vector<std::string> ListFiles(std::string_view storedFolder, std::string_view pattern);

/// Renames a file within one file system; never overwrites. Throws Error{Io}: "File not found", "File already exists"
/// ...
void RenameFile(std::string_view storedFrom, std::string_view storedTo);

bool FileExists(std::string_view storedPath);

/// "" when a file at the path could be made or written to, else why not, in the words of FileErrorText. Touches
/// nothing. Throws Error{Io} for a drive or share that is not there.
std::string WhyNotWritable(std::string_view storedPath);

/// "Path not found: '/data/x.log'": the text for errno value code at a stored path. folderMissing: whether ENOENT is
/// the folder's (Path not found) or the file's (File not found).
std::string FileErrorText(int code, std::string_view storedPath, bool folderMissing = false);

/// A text file opened for writing. Every write goes to the system at once, so that a reader of the file sees each line.
class OutputFile {
public:
    /// NewPrivate: the file may not exist, and only its owner can read it.
    enum class Mode { Append, Truncate, NewPrivate };
    OutputFile() = default;
    /// Throws Error{Io}.
    OutputFile(std::string_view storedPath, Mode mode);
    ~OutputFile();
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&& other) noexcept;

    bool IsOpen() const { return descriptor_ >= 0; }
    /// Writes all bytes. Throws Error{Io}; what was written before the failure stays.
    void Write(std::string_view bytes);
    /// Writes all of buffer and empties it. Throws as above; what was written is then gone from buffer's front, so
    /// that the rest can be tried again.
    void Drain(std::string& buffer);
    /// Throws Error{Io} when the system reports a late write failure; the file is closed all the same.
    void Close();

private:
    std::size_t WriteSome(std::string_view bytes);

    int descriptor_ = -1;
    std::string path_;
};

}  // namespace varnel
