// Stored cells into values.
#pragma once

#include <string>

#include "ado/types/Value.h"
#include "platform/CodePage.h"
#include "providers/access/LongValueReader.h"
#include "providers/access/RowView.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// What decoding a column's cells needs of its definition.
struct CellPlan {
    ColumnType type = ColumnType::Text;
    bool fixed = false;
    bool calculated = false;
    std::uint16_t id = 0;
    std::uint16_t place = 0;  ///< offset of a fixed cell, number of a variable one
    std::uint16_t size = 0;   ///< bytes that the cell has; 0: as many as it happens to have
    std::uint8_t scale = 0;   ///< of decimals
};

CellPlan PlanCell(const Column& column);

class CellDecoder {
public:
    /// names: the code page of Access 97's texts, null for other versions. All must outlive this.
    CellDecoder(PageFile& file, PageFile::Snapshot& pages, const CodePage* codePage)
        : longValues_(file, pages), codePage_(codePage) {}

    /// What value holds after a fault is not to be used.
    Fault Decode(const CellPlan& plan, RowView& row, Value& value);

private:
    Fault DecodeCell(const CellPlan& plan, Bytes cell, Value& value);
    Fault DecodeMemo(Bytes cell, Value& value);
    Fault DecodeOle(Bytes cell, Value& value);
    Fault DecodeCalculated(const CellPlan& plan, Bytes cell, Value& value);
    Fault AppendText(Bytes stored, std::string& out) const;

    LongValueReader longValues_;
    const CodePage* codePage_;
    std::string joined_;  ///< the pieces of a long value whose parts mean nothing alone
};

}  // namespace varnel::access
