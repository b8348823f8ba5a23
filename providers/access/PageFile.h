// The pages of one Access file: read through a bounded cache, changed in memory, written under a journal.
//
//   holds     every read and change happens under a hold; while the process has none, nothing is cached, because
//   another
//             program may change the file. Holds nest; a write hold is granted while the process itself reads.
//   pins      PagePin keeps one state of a page's bytes, whatever is changed afterwards.
//   steps     a row's changes are one step: all of them stay, or UndoStep takes all of them back.
//   commits   what was changed since the last commit point is lost with the process, whole; never a part of it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/ByteView.h"
#include "providers/access/Layout.h"
#include "providers/access/PageSet.h"

namespace varnel::access {

/// One state of one page; cheap to copy. Empty until assigned.
using PagePin = std::shared_ptr<const std::uint8_t[]>;

class PageFile {
public:
    /// Where pages come from when a reader must not see what is changed after it began.
    class Snapshot {
    public:
        virtual ~Snapshot() = default;
        /// The page as it was when the snapshot was taken, if it is one of the snapshot's pages; else as it is now.
        /// Throws Error{Corrupt} for a page beyond the file's end.
        virtual PagePin Read(PageNumber page) = 0;
    };
    /// While it lives the process holds the file.
    class Hold {
    public:
        virtual ~Hold() = default;
    };

    virtual ~PageFile() = default;

    virtual const Layout& Shape() const = 0;
    /// The path as the connection string has it, for error texts.
    virtual const std::string& StoredPath() const = 0;

    /// Waits up to 60 s for another process of ours that writes; then throws Error{Io} naming file and holder. A
    /// journal that a killed process left is played back first. Any number of holders at once.
    virtual std::unique_ptr<Hold> HoldForReading() = 0;
    /// The same, alone in the system but for this process. Throws Error{NotSupported} for a version that is only read,
    /// Error{Io} when the file or its folder cannot be written, or a foreign program has the database open. The end of
    /// the last write hold commits nothing: what was not committed is rolled back.
    virtual std::unique_ptr<Hold> HoldForWriting() = 0;
    /// Grows whenever the file may have been changed by others, or a rollback changed it: whoever keeps something read
    /// from pages keeps this beside it.
    virtual std::uint64_t Generation() const = 0;

    /// Whole pages of the file, new ones of the process included.
    virtual PageNumber PageCount() const = 0;
    /// Throws Error{Corrupt} for a page beyond the end, Error{Io}.
    virtual PagePin Read(PageNumber page) = 0;
    /// The same bytes with their name for error texts ("x.mdb, page 12"); the pin must outlive the view.
    ByteView View(const PagePin& pin, PageNumber page) const;
    virtual std::unique_ptr<Snapshot> Freeze(PageSet pages) = 0;

    /// The page's bytes to be changed in place; valid until the step ends. Needs a write hold and an open step.
    virtual std::span<std::uint8_t> Change(PageNumber page) = 0;
    /// A new page of zeros behind the last one. Throws Error{Constraint} at 2 GB.
    virtual PageNumber Append() = 0;

    virtual void BeginStep() = 0;
    /// The changes stay. May write changed pages to the file (under the journal) to bound memory; throws Error{Io} when
    /// that fails: the changes then stay in memory, and the next EndStep or Commit tries again.
    virtual void EndStep() = 0;
    virtual void UndoStep() noexcept = 0;
    /// A commit point. Throws Error{Io}; what was changed then stays pending and may be committed later.
    virtual void Commit() = 0;
    /// Back to the last commit point.
    virtual void Rollback() = 0;
};

/// readOnly: HoldForWriting is refused. Looks at the header; throws Error{Corrupt} for a file that is none of ours,
/// Error{NotSupported} for an encrypted one, Error{Io}.
std::shared_ptr<PageFile> OpenPageFile(std::string_view storedPath, bool readOnly);

/// Undoes the step when it ends without Keep.
class Step {
public:
    explicit Step(PageFile& file) : file_(file) { file_.BeginStep(); }
    ~Step() {
        if (!kept_) file_.UndoStep();
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    void Keep() {
        kept_ = true;
        file_.EndStep();
    }

private:
    PageFile& file_;
    bool kept_ = false;
};

}  // namespace varnel::access
