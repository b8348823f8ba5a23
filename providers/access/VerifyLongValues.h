// Memos and OLE objects against the pages that their columns own.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "providers/access/VerifyPages.h"

namespace varnel::access {

/// One long value column.
class VerifyLongValues {
public:
    /// Enters the column's maps and pages into the ledger and checks the pages.
    VerifyLongValues(VerifyContext& context, const TableDefinition& table, const Column& column);

    /// A cell of the column in the row at that place: its pieces must lie on the column's pages, and be its own.
    void Cell(Bytes cell, const std::string& place);
    /// After the last row: says which pieces belong to no row.
    void Finish();

private:
    void CheckChain(RowPointer first, std::size_t length, std::uint32_t stamp, const std::string& place);
    /// The piece's bytes; empty, and reported, when there is none or another value has it.
    Bytes TakePiece(RowPointer at, const std::string& place);

    VerifyContext& context_;
    std::string name_;  ///< "column 'A' of table 'B'"
    PageSet roomPages_;
    VerifiedPage open_;  ///< the page of the last piece
    PageSet chainPages_, sharedPages_;
    std::map<std::uint32_t, bool> pieces_;  ///< by packed row pointer: true when a row has it
};

}  // namespace varnel::access
