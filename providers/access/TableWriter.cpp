#include "providers/access/TableWriter.h"

#include <algorithm>
#include <limits>
#include <random>

#include "platform/Error.h"
#include "providers/access/DefinitionWriter.h"
#include "providers/access/IndexImage.h"

namespace varnel::access {
namespace {

Bytes CellOf(const TableDefinition& table, const Column& column, RowView& row) {
    const std::optional<Bytes> cell =
        column.IsFixed() ? row.Fixed(column.fixedOffset, column.length) : row.Variable(column.variableNumber);
    if (cell) return *cell;
    throw Error(ErrorKind::Corrupt, table.name,
                "The table '" + table.name + "' is damaged: a row lacks its column '" + column.name + "'.");
}

RowView Attached(const TableDefinition& table, Bytes row) {
    RowView view(Version::Jet4);
    if (const Fault fault = view.Attach(row))
        throw Error(ErrorKind::Corrupt, table.name, "The table '" + table.name + "' is damaged: " + fault + ".");
    return view;
}

GuidBytes RandomGuid() {
    std::random_device random;
    GuidBytes guid;
    for (std::uint8_t& byte : guid) byte = static_cast<std::uint8_t>(random());
    guid[6] = static_cast<std::uint8_t>((guid[6] & 0x0F) | 0x40);  // version 4: made at random
    guid[8] = static_cast<std::uint8_t>((guid[8] & 0x3F) | 0x80);
    return guid;
}

}  // namespace

TableWriter::TableWriter(Schema& database, FilePages& pages, TableDefinition definition)
    : file_(*database.File()),
      pages_(pages),
      table_(std::move(definition)),
      builder_(table_),
      longValues_(file_, pages),
      rows_(file_, pages, table_),
      relations_(database, pages, table_),
      given_(table_.columns.size()),
      changed_(table_.columns.size()),
      automatic_(table_.columns.size()),
      changes_(table_.realIndexes.size()) {
    for (const RealIndex& index : table_.realIndexes) indexes_.emplace_back(file_, pages, table_, index);
}

void TableWriter::Forget() noexcept {
    rows_.Forget();
    longValues_.Forget();
    for (TableIndex& index : indexes_) index.Tree().Forget();
}

void TableWriter::Receive(const NewValues& given) {
    std::fill(given_.begin(), given_.end(), nullptr);
    for (std::size_t k = 0; k < given.positions.size(); ++k)
        if (given.assigned[k]) given_[given.positions[k]] = &given.values[k];
    for (std::size_t k = 0; k < given_.size(); ++k) changed_[k] = given_[k] != nullptr;
}

/// Numbers and GUIDs that the table gives by itself, where the row brings none.
void TableWriter::FillAutomatic() {
    for (std::size_t k = 0; k < given_.size(); ++k) {
        const Column& column = table_.columns[k];
        if (given_[k] != nullptr && !given_[k]->IsNull()) continue;
        if (column.IsAutonumber() && column.type == ColumnType::Long) {
            const std::int64_t next =
                std::int64_t{static_cast<std::int32_t>(table_.lastAutonumber)} + table_.autonumberStep;
            automatic_[k].SetInteger(next);
        } else if (column.type == ColumnType::Guid && (column.flags & kAutomaticGuidColumn) != 0) {
            automatic_[k].SetGuid(RandomGuid());
        } else {
            continue;
        }
        given_[k] = &automatic_[k];
    }
}

void TableWriter::NoteAutonumber() {
    for (std::size_t k = 0; k < given_.size(); ++k) {
        if (given_[k] == nullptr || !table_.columns[k].IsAutonumber() || given_[k]->Kind() != ValueKind::Integer)
            continue;
        const std::int64_t used = given_[k]->AsInteger();
        if (used > static_cast<std::int32_t>(table_.lastAutonumber))
            table_.lastAutonumber = static_cast<std::uint32_t>(used);
    }
}

void TableWriter::CheckRequired() const {
    for (std::size_t k = 0; k < given_.size(); ++k) {
        const Column& column = table_.columns[k];
        const Value* value = given_[k];
        if (!changed_[k]) continue;
        const bool isNull = value == nullptr || value->IsNull();
        if (column.required && isNull && column.type != ColumnType::Boolean)
            throw Error(ErrorKind::Constraint, table_.name,
                        "You must enter a value in the '" + table_.name + "." + column.name + "' field.");
        if (!column.zeroLengthAllowed && !isNull && value->Kind() == ValueKind::Text && value->AsText().empty())
            throw Error(ErrorKind::Constraint, table_.name,
                        "Field '" + table_.name + "." + column.name + "' cannot be a zero-length string.");
    }
}

/// The row's bytes: what was given, and for the rest what old has. Long values that are left out count as present.
std::span<const std::uint8_t> TableWriter::Build(LongValues longValues, RowView* old) {
    builder_.Start();
    for (const std::size_t k : builder_.Order()) {
        const Column& column = table_.columns[k];
        if (given_[k] == nullptr) {
            if (old != nullptr) PutKept(column, *old);
        } else if (column.IsLong()) {
            PutLong(column, *given_[k], longValues);
        } else {
            builder_.Put(column, *given_[k]);
        }
    }
    return builder_.Finish();
}

void TableWriter::PutKept(const Column& column, RowView& old) {
    if (!old.Has(column.id)) return;
    builder_.PutStored(column, column.type == ColumnType::Boolean ? Bytes() : CellOf(table_, column, old), true);
}

void TableWriter::PutLong(const Column& column, const Value& value, LongValues longValues) {
    if (value.IsNull()) return;
    builder_.PutStored(column, longValues == LongValues::Store ? longValues_.Store(column, value) : Bytes(), true);
}

bool TableWriter::HasNewLongValue() const {
    for (std::size_t k = 0; k < given_.size(); ++k)
        if (table_.columns[k].IsLong() && given_[k] != nullptr && !given_[k]->IsNull()) return true;
    return false;
}

/// The text of a memo in an index: the new one, or what old has.
std::span<const std::uint8_t> TableWriter::MemoOf(std::size_t position, RowView* old) {
    memo_.clear();
    if (old == nullptr || given_[position] != nullptr) {
        if (given_[position] != nullptr && given_[position]->Kind() == ValueKind::Text)
            AppendMemoText(memo_, given_[position]->AsText(), true);
    } else {
        const auto snapshot = file_.Freeze({});
        LongValueReader reader(file_, *snapshot);
        const Fault fault = reader.Read(CellOf(table_, table_.columns[position], *old), [&](Bytes piece) -> Fault {
            memo_.append(piece.begin(), piece.end());
            return nullptr;
        });
        if (fault != nullptr)
            throw Error(ErrorKind::Corrupt, table_.name, "The table '" + table_.name + "' is damaged: " + fault + ".");
    }
    return {reinterpret_cast<const std::uint8_t*>(memo_.data()), memo_.size()};
}

/// all: the row is deleted; else only indexes on changed columns matter.
void TableWriter::PlanOldKeys(RowView& old, bool all) {
    const auto memo = [&](std::size_t k) {
        const Value* const given = std::exchange(given_[k], nullptr);
        const auto text = MemoOf(k, &old);
        given_[k] = given;
        return text;
    };
    for (std::size_t k = 0; k < indexes_.size(); ++k) {
        IndexChange& change = changes_[k];
        change.touched = all || indexes_[k].Touches(changed_);
        change.oldState = change.newState = KeyState::NoEntry;
        if (!change.touched) continue;
        indexes_[k].NeedKeys();
        change.oldState = indexes_[k].BuildKey(old, memo, change.oldKey);
    }
}

/// Needs PlanOldKeys before when there was a row. self: that row.
void TableWriter::PlanNewKeys(std::span<const std::uint8_t> row, RowView* old, RowPointer self) {
    RowView view = Attached(table_, row);
    const auto memo = [&](std::size_t k) { return MemoOf(k, old); };
    for (std::size_t k = 0; k < indexes_.size(); ++k) {
        IndexChange& change = changes_[k];
        if (old == nullptr) change.touched = true, change.oldState = KeyState::NoEntry;
        if (!change.touched) continue;
        indexes_[k].NeedKeys();
        indexes_[k].NeedValues(view);
        change.newState = indexes_[k].BuildKey(view, memo, change.newKey);
        const bool had = change.oldState != KeyState::NoEntry, has = change.newState != KeyState::NoEntry;
        if (had == has && (!has || change.oldKey == change.newKey)) {
            change.touched = false;
        } else if (has) {
            CheckUnique(indexes_[k], change, self);
        }
    }
    relations_.CheckReferences(view, old);
    if (old != nullptr) relations_.CheckReferred(*old, &view);
}

void TableWriter::CheckUnique(TableIndex& index, IndexChange& change, RowPointer self) {
    const std::optional<RowPointer> found = index.Tree().Find(change.newKey);
    change.newKeyIsDifferent = !found;
    if (!found || *found == self || !index.Definition().IsUnique() || change.newState != KeyState::Whole) return;
    throw Error(ErrorKind::Constraint, table_.name,
                "The changes to table '" + table_.name +
                    "' were not made because they would create duplicate values in the index '" +
                    index.Definition().name + "' (" + index.Describe(given_) + ").");
}

void TableWriter::ApplyIndexChanges(RowPointer row) {
    const auto entry = [&](std::string& key) -> const std::string& {
        AppendRowId(key, row);
        return key;
    };
    for (std::size_t k = 0; k < indexes_.size(); ++k) {
        IndexChange& change = changes_[k];
        if (!change.touched) continue;
        IndexTree& tree = indexes_[k].Tree();
        if (change.oldState != KeyState::NoEntry && !tree.Remove(entry(change.oldKey)))
            throw Error(ErrorKind::Corrupt, table_.name,
                        "The index '" + indexes_[k].Definition().name + "' of table '" + table_.name +
                            "' lacks a row of the table. Compact the database with Access.");
        if (change.newState != KeyState::NoEntry) tree.Insert(entry(change.newKey));
    }
    for (std::size_t k = 0; k < indexes_.size(); ++k)
        if (changes_[k].touched && changes_[k].newState != KeyState::NoEntry && changes_[k].newKeyIsDifferent)
            ++table_.realIndexes[k].differentKeys;
}

RowPointer TableWriter::Insert(const NewValues& given) {
    Receive(given);
    std::fill(changed_.begin(), changed_.end(), true);
    FillAutomatic();
    CheckRequired();
    std::span<const std::uint8_t> row = Build(LongValues::LeaveOut, nullptr);
    PlanNewKeys(row, nullptr, {});
    if (HasNewLongValue()) row = Build(LongValues::Store, nullptr);
    const RowPointer at = rows_.Add(row);
    ApplyIndexChanges(at);
    NoteAutonumber();
    ++table_.rowCount;
    countsChanged_ = true;
    return at;
}

void TableWriter::Update(RowPointer row, const NewValues& given) {
    Receive(given);
    CheckRequired();
    const StoredRow stored = rows_.Read(row);
    RowView old = Attached(table_, stored.bytes);
    PlanOldKeys(old, false);
    std::span<const std::uint8_t> fresh = Build(LongValues::LeaveOut, &old);
    PlanNewKeys(fresh, &old, row);
    FreeLongValues(old, false);
    if (HasNewLongValue()) fresh = Build(LongValues::Store, &old);
    rows_.Replace(row, fresh);
    ApplyIndexChanges(row);
    NoteAutonumber();
    countsChanged_ = true;
}

void TableWriter::Delete(RowPointer row) {
    std::fill(given_.begin(), given_.end(), nullptr);
    const StoredRow stored = rows_.Read(row);
    RowView old = Attached(table_, stored.bytes);
    PlanOldKeys(old, true);
    relations_.CheckReferred(old, nullptr);
    ApplyIndexChanges(row);
    FreeLongValues(old, true);
    rows_.Delete(row);
    if (table_.rowCount > 0) --table_.rowCount;
    countsChanged_ = true;
}

void TableWriter::DeleteAll() {
    for (const TableIndex& index : indexes_) index.NeedKeys();
    relations_.CheckNoneReferred();
    Forget();
    pages_.GiveAll(table_.ownedMap);
    pages_.EmptyMap(table_.roomMap);
    for (const Column& column : table_.columns) {
        if (!column.IsLong()) continue;
        pages_.GiveAll(column.ownedMap);
        if (!column.roomMap.IsNone()) pages_.EmptyMap(column.roomMap);
    }
    for (RealIndex& index : table_.realIndexes) {
        pages_.Maps().Remove(index.map, index.root);
        pages_.GiveAll(index.map);
        pages_.Maps().Add(index.map, index.root);
        WriteLoneLeaf(file_.Change(index.root), table_.Id());
        index.differentKeys = 0;
    }
    table_.rowCount = 0;
    countsChanged_ = true;
}

/// all: of every column; else of those that are given.
void TableWriter::FreeLongValues(RowView& old, bool all) {
    for (std::size_t k = 0; k < table_.columns.size(); ++k) {
        const Column& column = table_.columns[k];
        if (column.IsLong() && (all || given_[k] != nullptr) && old.Has(column.id))
            longValues_.Free(column, CellOf(table_, column, old));
    }
}

void TableWriter::StoreCounts() {
    if (!countsChanged_) return;
    WriteCounts(file_, table_);
    countsChanged_ = false;
}

}  // namespace varnel::access
