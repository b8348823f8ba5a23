// The .fpt or .dbt file of a table, read as it is now; memos are appended to an .fpt.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/foxpro/MemoReader.h"

namespace varnel::foxpro {

class MemoFile : public ByteFile {
public:
    /// files: outlives this. file: the memo file among them. name: for error texts.
    MemoFile(JournaledFiles& files, JournaledFiles::Number file, MemoKind kind, std::string name);

    /// Drops what waits and reads the head anew.
    void Reset();
    const MemoReader& Reader() const { return *reader_; }

    // As it is now, waiting memos included.
    std::uint64_t Size() const override;
    std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> into) const override;

    /// Adds a memo behind the last one, in memory; returns its block, 0 for an empty one. isText: else an object.
    /// Throws Error{Constraint} at 2 GB.
    std::uint32_t Append(std::string_view bytes, bool isText);
    /// The place behind the last memo, and the way back to it: the memos appended since then are dropped.
    std::uint32_t NextBlock() const { return nextBlock_; }
    void ReturnTo(std::uint32_t nextBlock);
    bool IsFull() const;
    /// Announces the change of the head.
    void Protect();
    /// Writes what waits; the head with it. Throws Error{Io}; everything waits on then.
    void Flush();
    /// The file has no memos any more. Throws Error{Io}.
    void DeleteAll();

private:
    std::uint64_t BufferStart() const { return std::uint64_t{bufferBlock_} * blockBytes_; }

    JournaledFiles& files_;
    JournaledFiles::Number file_;
    MemoKind kind_;
    std::string name_;
    std::unique_ptr<MemoReader> reader_;
    std::uint32_t blockBytes_ = 64;
    std::uint32_t nextBlock_ = 0, bufferBlock_ = 0;  ///< behind the last memo; of the buffer's first byte
    std::uint32_t storedNext_ = 0;                   ///< as the head in the file says
    std::vector<std::uint8_t> buffer_;
};

/// The bytes of a memo file without memos.
std::vector<std::uint8_t> EmptyMemoFile();

}  // namespace varnel::foxpro
