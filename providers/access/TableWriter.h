// Adds, changes and deletes the rows of one table, and keeps its indexes, long values and counts with them.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "providers/access/FilePages.h"
#include "providers/access/LongValueWriter.h"
#include "providers/access/Relations.h"
#include "providers/access/RowBuilder.h"
#include "providers/access/RowView.h"
#include "providers/access/StoredRows.h"
#include "providers/access/TableDefinition.h"
#include "providers/access/TableIndex.h"

namespace varnel::access {

/// values[k] belongs to the table's column positions[k], when assigned[k].
struct NewValues {
    std::span<const Value> values;
    const std::vector<bool>& assigned;
    std::span<const std::size_t> positions;
};

/// Every change needs a write hold and an open step, and is checked before anything is changed: Error{Constraint} for a
/// row that breaks a rule of the table, Error{Conversion} for a value that does not fit its column. After a step was
/// undone, Forget.
class TableWriter {
public:
    /// database and pages outlive the writer. definition: with the columns' properties.
    TableWriter(Schema& database, FilePages& pages, TableDefinition definition);

    const TableDefinition& Definition() const { return table_; }
    RowPointer Insert(const NewValues& given);
    void Update(RowPointer row, const NewValues& given);
    void Delete(RowPointer row);
    void DeleteAll();
    /// Writes the row count and the like into the definition, when they changed.
    void StoreCounts();
    void Forget() noexcept;

private:
    /// What happens to one index when a row changes.
    struct IndexChange {
        bool touched = false;
        KeyState oldState = KeyState::NoEntry, newState = KeyState::NoEntry;
        std::string oldKey, newKey;
        bool newKeyIsDifferent = false;  ///< from every other row's
    };
    enum class LongValues : std::uint8_t { LeaveOut, Store };

    void Receive(const NewValues& given);
    void FillAutomatic();
    void CheckRequired() const;
    std::span<const std::uint8_t> Build(LongValues longValues, RowView* old);
    void PutKept(const Column& column, RowView& old);
    void PutLong(const Column& column, const Value& value, LongValues longValues);
    bool HasNewLongValue() const;

    void PlanNewKeys(std::span<const std::uint8_t> row, RowView* old, RowPointer self);
    void PlanOldKeys(RowView& old, bool all);
    void CheckUnique(TableIndex& index, IndexChange& change, RowPointer self);
    void ApplyIndexChanges(RowPointer row);
    std::span<const std::uint8_t> MemoOf(std::size_t position, RowView* old);
    void FreeLongValues(RowView& old, bool all);
    void NoteAutonumber();

    Schema& database_;
    PageFile& file_;
    FilePages& pages_;
    TableDefinition table_;
    RowBuilder builder_;
    LongValueWriter longValues_;
    StoredRows rows_;
    std::deque<TableIndex> indexes_;
    Relations relations_;
    bool countsChanged_ = false;

    // Of the row at hand.
    std::vector<const Value*> given_;   ///< per column; null when not assigned
    std::vector<bool> changed_;         ///< per column
    std::deque<Value> automatic_;       ///< per column; what FillAutomatic made
    std::vector<IndexChange> changes_;  ///< per index
    std::string memo_;
};

}  // namespace varnel::access
