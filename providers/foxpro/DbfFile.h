// One .dbf file with its companions (memo, structural index), opened once in the process however many tables,
// readers and writers name it.
//
// Records that were appended or changed wait in bounded buffers and are then written under a journal; reads see them at
// once. A commit point writes the buffers, the head's count and the index, in that order, and makes them lasting.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"
#include "platform/JournaledFiles.h"
#include "providers/foxpro/DbfHeader.h"
#include "providers/foxpro/IndexKeeper.h"
#include "providers/foxpro/MemoReader.h"

namespace varnel::foxpro {

class DbfFile : public std::enable_shared_from_this<DbfFile> {
public:
    /// While it lives the process holds the file for reading or writing; holds nest.
    class Hold {
    public:
        virtual ~Hold() = default;
    };

    /// The file's object in this process. Throws Error{Io}, Error{Corrupt}.
    static std::shared_ptr<DbfFile> Open(std::string_view storedPath, int codePageWhenNoneStated = 0);

    virtual ~DbfFile() = default;

    virtual const std::string& StoredPath() const = 0;
    /// "orders.dbf"
    virtual const std::string& Name() const = 0;
    virtual JournaledFiles& Files() = 0;

    virtual std::unique_ptr<Hold> HoldForReading() = 0;
    /// Throws Error{NotSupported} for a dialect that is only read. What is not committed when the last write hold ends
    /// is rolled back.
    virtual std::unique_ptr<Hold> HoldForWriting() = 0;

    /// Removes the file with its memo and index, whatever its dialect; a commit point. Nobody may use the object after.
    virtual void Drop() = 0;

    /// Told before records that existed are changed, or all rows and memos go.
    class Watcher {
    public:
        virtual ~Watcher() = default;
        /// memosGo: the memo file's content is about to be dropped as well. Throws to refuse the change.
        virtual void BeforeChange(bool memosGo) = 0;
    };
    virtual void AddWatcher(Watcher& watcher) = 0;
    virtual void RemoveWatcher(Watcher& watcher) noexcept = 0;

    // Everything below needs a hold.

    /// As it is now, pending changes included. The reference stays; its content may change with a hold or a change.
    virtual const DbfHeader& Header() = 0;
    /// Whole records, pending ones included.
    virtual RecordNumber Records() = 0;
    /// Reads count records from first on into a buffer of count * recordBytes bytes. Throws Error.
    virtual void ReadRecords(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) = 0;
    /// Null when there is no memo file. Valid as long as this object.
    virtual const MemoReader* Memo() = 0;
    /// The memo file's bytes; null when there is none.
    virtual const ByteFile* MemoBytes() = 0;
    /// "" or, in words, why the file has other records than its head says. Records that are not whole are not counted.
    virtual const std::string& Damage() = 0;

    // These need a write hold.

    /// values: one per visible field; assigned: which of them were set. A refused row leaves no trace.
    virtual void Append(std::span<const Value> values, const std::vector<bool>& assigned) = 0;
    virtual void Update(RecordNumber number, std::span<const Value> values, const std::vector<bool>& assigned) = 0;
    virtual void Delete(RecordNumber number) = 0;
    virtual void DeleteAll() = 0;
    virtual void Commit() = 0;
    /// The head's flag that says a structural index stands beside the file.
    virtual void SetIndexFlag(bool hasIndex) = 0;
};

/// The stored path beside storedPath with another extension ("fpt", "cdx"), found without regard to case; nothing when
/// there is no such file.
std::optional<std::string> FindCompanion(std::string_view storedPath, std::string_view extension);

}  // namespace varnel::foxpro
