// Files that are changed in place and together (a database; a table with its memo and index files), safe against the
// end of the process, a full disk or a power cut at any moment: what is on the disk is always some commit point, or
// becomes one when the files are next opened.
//
// One journal lies beside the first file (its path with "-journal" behind it). Before bytes that existed at the last
// commit point are changed, they are copied into it; a commit makes the files lasting and empties it; whoever opens
// the files next plays a journal that was left behind back into them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace varnel {

class JournaledFiles {
public:
    /// A file of the group; 0 is the first one.
    using Number = std::size_t;
    /// While it lives the process holds the files: they are locked, through the first one.
    class Hold {
    public:
        virtual ~Hold() = default;
    };
    /// What is about to be done to the disk, for tests that end the process there.
    enum class Moment { JournalWrite, JournalSync, FileWrite, FileSync, JournalReset, FileRemoval };

    virtual ~JournaledFiles() = default;

    /// Another existing file of the same folder, changed together with the first. Throws Error{Io}.
    virtual Number Attach(std::string_view storedPath) = 0;
    /// A new file of the same folder, which a rollback removes (its number then means nothing any more). Throws
    /// Error{Constraint} when it exists. Needs a write hold.
    virtual Number Create(std::string_view storedPath) = 0;
    /// The file is deleted at the next commit point; until then it reads as ever. Needs a write hold.
    virtual void Remove(Number file) = 0;
    /// The file is changed with the others no more, and may be dropped by anybody. It has no pending changes; its
    /// number stands for nothing from here on. Not for the first file.
    virtual void Detach(Number file) noexcept = 0;

    /// Waits up to 60 s for a process of ours that writes; then throws Error{Io} naming file and holder. Plays a left
    /// journal back first. Holds nest and are counted; readers of several processes hold the files side by side.
    virtual std::unique_ptr<Hold> HoldForReading() = 0;
    /// The same, alone in the system but for this process, which may be reading. Throws Error{Io} when a file or its
    /// folder cannot be written. What is not committed when the last write hold ends is rolled back.
    virtual std::unique_ptr<Hold> HoldForWriting() = 0;
    virtual bool HeldForWriting() const = 0;
    /// Grows with every first hold and every rollback: what was read before it grew may be stale.
    virtual std::uint64_t Generation() const = 0;

    /// Bytes, changes of this process included. Throws Error{Io}.
    virtual std::uint64_t Size(Number file) const = 0;
    /// Reads from offset on; returns how many bytes, fewer than asked for only at the end. Throws Error{Io}.
    virtual std::size_t Read(Number file, std::uint64_t offset, std::span<std::uint8_t> into) const = 0;
    /// Announces a change of these bytes. Many announcements before the first Write cost one wait for the disk, else
    /// every Write of unannounced old bytes costs one.
    virtual void Protect(Number file, std::uint64_t offset, std::uint64_t count) = 0;
    /// Writes at offset; behind the end the file grows (a gap is zeros). Throws Error{Io} ("Disk full: …"); the caller
    /// may try again, go on, commit, or roll back.
    virtual void Write(Number file, std::uint64_t offset, std::span<const std::uint8_t> bytes) = 0;
    virtual void Truncate(Number file, std::uint64_t size) = 0;
    /// Throws Error{Io}; the changes are then still pending.
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
};

/// storedPath: the first file, which exists. readOnly: write holds are refused. A process opens a group once: two
/// openings of the same files wait for each other like strangers. Throws Error{Io}.
std::unique_ptr<JournaledFiles> OpenJournaledFiles(std::string_view storedPath, bool readOnly);

/// Called before each step on the disk, by every group of the process; for tests. An empty function calls nothing.
void WatchJournaledFiles(std::function<void(JournaledFiles::Moment)> watcher);

}  // namespace varnel
