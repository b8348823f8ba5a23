// Sorts the entries of one tag in bounded memory: what does not fit is sorted in runs, kept in a temporary file, and
// merged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "providers/foxpro/CdxNode.h"

namespace varnel::foxpro {

class KeySorter {
public:
    /// memoryBytes: of the entries held at a time.
    explicit KeySorter(std::uint16_t keyLength, std::size_t memoryBytes = std::size_t{8} << 20);

    /// Only before the first Next. Throws Error{Io} when the temporary file fails.
    void Add(KeyBytes key, std::uint32_t record);
    /// The entries by key, then record. Throws Error{Io}.
    bool Next();
    KeyBytes Key() const;
    std::uint32_t Record() const;
    std::uint32_t GreatestRecord() const { return greatest_; }

private:
    struct CloseFile {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    /// A sorted run in the file; block holds its next entries.
    struct Run {
        std::uint64_t next = 0, end = 0;  // bytes in the file
        std::vector<std::uint8_t> block;
        std::size_t at = 0;
    };

    std::size_t EntryBytes() const { return keyLength_ + std::size_t{4}; }
    void SortHeld();
    void SpillHeld();
    void BeginReading();
    bool Refill(Run& run);
    bool IsAfter(std::size_t runA, std::size_t runB) const;
    KeyBytes EntryOf(const Run& run) const { return {run.block.data() + run.at, EntryBytes()}; }

    std::uint16_t keyLength_;
    std::size_t mostHeld_;  // entries
    std::uint32_t greatest_ = 0;
    std::vector<std::uint8_t> held_;  // entries: key, record (big-endian, so that bytes order entries)
    std::vector<std::uint32_t> order_;
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::uint64_t spilled_ = 0;  // bytes
    std::vector<Run> runs_;
    std::vector<std::size_t> heap_;  // runs by their next entry, the least first
    std::size_t next_ = 0;           // of order_, when nothing was spilled
    bool reading_ = false;
};

}  // namespace varnel::foxpro
