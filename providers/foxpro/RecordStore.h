// The records of a .dbf file as they are now: in the file, or waiting in bounded memory to be written there.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/foxpro/DbfHeader.h"

namespace varnel::foxpro {

class RecordStore {
public:
    /// files: outlives the store; its first file is the .dbf.
    explicit RecordStore(JournaledFiles& files) : files_(files) {}

    /// Drops what waits and takes the file to hold this many records.
    void Reset(std::uint32_t headerBytes, std::uint32_t recordBytes, RecordNumber records);

    RecordNumber Records() const { return inFile_ + tail_.size() / recordBytes_; }
    /// Bytes of the file up to the end of its last record, waiting ones included.
    std::uint64_t EndOfRecords() const { return OffsetOf(Records() + 1); }
    /// Reads count records from first on. Throws Error{Io}; Error{Corrupt} when there are not so many.
    void Read(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) const;

    /// These keep the record in memory. Nothing is written, nothing fails.
    void Append(std::span<const std::uint8_t> record);
    void Change(RecordNumber number, std::span<const std::uint8_t> record);
    /// True when so much waits that Flush is due before anything is added.
    bool IsFull() const;
    /// Writes what waits. Throws Error{Io}; everything waits on then.
    void Flush();

private:
    std::uint64_t OffsetOf(RecordNumber number) const { return headerBytes_ + (number - 1) * recordBytes_; }
    void FlushChanged();
    void FlushTail();
    void Overlay(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) const;

    JournaledFiles& files_;
    std::uint64_t headerBytes_ = 0, recordBytes_ = 1;
    RecordNumber inFile_ = 0;
    std::vector<std::uint8_t> tail_;                             ///< records behind inFile_
    std::map<RecordNumber, std::vector<std::uint8_t>> changed_;  ///< records of the file with new content
};

}  // namespace varnel::foxpro
