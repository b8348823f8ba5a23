// What keeps a table's structural index in step with its records. The table's writer asks it before each change and at
// each commit point.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "providers/foxpro/DbfHeader.h"

namespace varnel::foxpro {

class DbfFile;

/// Every Before... throws Error to refuse the change (a key that must be unique exists): nothing is changed then, and
/// the keeper has taken back its own part. A record's bytes begin with its delete flag.
class IndexKeeper {
public:
    virtual ~IndexKeeper() = default;
    /// The first write hold after a time without one: table and index may have been changed by others. Throws as
    /// OpenIndexKeeper does.
    virtual void Resumed() = 0;
    virtual void BeforeAppend(RecordNumber number, std::span<const std::uint8_t> record) = 0;
    virtual void BeforeUpdate(RecordNumber number, std::span<const std::uint8_t> before,
                              std::span<const std::uint8_t> after) = 0;
    virtual void BeforeDelete(RecordNumber number, std::span<const std::uint8_t> record) = 0;
    /// The table has no records any more. Files still hold the old index.
    virtual void Emptied() = 0;
    /// Part of a commit point: brings the index into the state of the records, through DbfFile::Files. The records are
    /// in the files, the files are committed afterwards. Throws Error; the commit is then tried again later.
    virtual void Commit() = 0;
    /// Everything since the last commit point was taken back.
    virtual void RolledBack() = 0;
};

/// The keeper of a table about to be written for the first time, under a write hold; null when there is no index to
/// keep. Throws Error when the table may not be written because its index cannot be kept. table: outlives the keeper.
std::unique_ptr<IndexKeeper> OpenIndexKeeper(DbfFile& table);

}  // namespace varnel::foxpro
