#include "providers/access/Relations.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"
#include "providers/access/IndexTree.h"
#include "providers/access/TableScan.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kRelationIndex = 2;  // LogicalIndex::kind
constexpr std::uint8_t kIsReferred = 1;     // LogicalIndex::relationSide
constexpr std::uint8_t kRefersWithoutIndex = 3;

const Column* ColumnOf(const TableDefinition& table, std::uint16_t id) {
    const auto found =
        std::find_if(table.columns.begin(), table.columns.end(), [&](const Column& column) { return column.id == id; });
    return found == table.columns.end() ? nullptr : &*found;
}

/// The logical index's columns; empty when it stands for no index.
std::vector<const Column*> ColumnsOf(const TableDefinition& table, const LogicalIndex& index) {
    std::vector<const Column*> columns;
    if (index.realIndex >= table.realIndexes.size()) return columns;
    for (const IndexColumn& column : table.realIndexes[index.realIndex].columns)
        columns.push_back(ColumnOf(table, column.columnId));
    return columns;
}

}  // namespace

Relations::Relations(Schema& database, FilePages& pages, const TableDefinition& table)
    : database_(database), pages_(pages), table_(table) {
    for (const LogicalIndex& index : table.logicalIndexes)
        if (index.kind == kRelationIndex && index.partnerTable != 0) AddLink(index);
}

void Relations::ThrowBroken(const std::string& name) const {
    throw Error(ErrorKind::NotSupported, table_.name,
                "The relationship '" + name + "' of table '" + table_.name +
                    "' cannot be followed, so its rows can be read, but not changed.");
}

std::shared_ptr<const TableDefinition> Relations::Partner(PageNumber id) const {
    for (const CatalogEntry& entry : database_.Objects().Entries())
        if (entry.type == kLocalTable && static_cast<PageNumber>(entry.id) == id) return database_.DefinitionOf(entry);
    return nullptr;
}

void Relations::AddLink(const LogicalIndex& stored) {
    Link link;
    link.name = stored.name;
    link.refers = stored.relationSide != kIsReferred;
    link.partner = Partner(stored.partnerTable);
    if (link.partner == nullptr || stored.relationSide == kRefersWithoutIndex) ThrowBroken(stored.name);
    link.columns = ColumnsOf(table_, stored);
    for (const LogicalIndex& other : link.partner->logicalIndexes) {
        if (other.number != stored.partnerNumber) continue;
        if (!link.refers) link.name = other.name;  // the name on the referred side is an internal one
        if (other.realIndex < link.partner->realIndexes.size() && other.relationSide != kRefersWithoutIndex)
            link.partnerIndex = &link.partner->realIndexes[other.realIndex];
    }
    const bool hasColumns = !link.columns.empty() && std::count(link.columns.begin(), link.columns.end(), nullptr) == 0;
    if (!hasColumns || (link.refers && link.partnerIndex == nullptr) ||
        (link.partnerIndex != nullptr && link.partnerIndex->columns.size() < link.columns.size()))
        ThrowBroken(link.name);
    links_.push_back(std::move(link));
}

std::optional<std::string> Relations::PartnerKey(const Link& link, RowView& row) const {
    std::string key;
    for (std::size_t k = 0; k < link.columns.size(); ++k) {
        const Column& own = *link.columns[k];
        const IndexColumn& part = link.partnerIndex->columns[k];
        const Column* theirs = ColumnOf(*link.partner, part.columnId);
        if (theirs == nullptr || theirs->type != own.type || own.IsLong() || own.type == ColumnType::Boolean)
            ThrowBroken(link.name);
        if (!row.Has(own.id)) return std::nullopt;
        const std::optional<Bytes> cell =
            own.IsFixed() ? row.Fixed(own.fixedOffset, own.length) : row.Variable(own.variableNumber);
        if (!cell) ThrowBroken(link.name);
        AppendStoredKey(key, *cell, *theirs, part.ascending);
    }
    CutLongKey(key, 0);
    return key;
}

bool Relations::PartnerHas(const Link& link, const std::string& key) {
    return IndexTree(*database_.File(), pages_, link.partner->Id(), *link.partnerIndex).Find(key).has_value();
}

/// True when the row refers to itself: the columns that the partner's index is on are then this row's own.
bool Relations::IsOwnReference(const Link& link, RowView& row, const std::string& key) const {
    if (link.partner->Id() != table_.Id()) return false;
    Link self = link;
    for (std::size_t k = 0; k < self.columns.size(); ++k)
        self.columns[k] = ColumnOf(table_, link.partnerIndex->columns[k].columnId);
    return PartnerKey(self, row) == key;
}

void Relations::CheckReferences(RowView& row, RowView* old) {
    for (const Link& link : links_) {
        if (!link.refers) continue;
        const std::optional<std::string> key = PartnerKey(link, row);
        if (!key || (old != nullptr && PartnerKey(link, *old) == key)) continue;
        if (IsOwnReference(link, row, *key) || PartnerHas(link, *key)) continue;
        throw Error(ErrorKind::Constraint, table_.name,
                    "You cannot add or change a record because a related record is required in table '" +
                        link.partner->name + "' (relationship '" + link.name + "' of table '" + table_.name + "').");
    }
}

void Relations::ThrowReferred(const Link& link) const {
    throw Error(ErrorKind::Constraint, table_.name,
                "The record of table '" + table_.name + "' cannot be deleted or changed because table '" +
                    link.partner->name + "' includes related records (relationship '" + link.name + "').");
}

void Relations::CheckReferred(RowView& old, RowView* row) {
    for (const Link& link : links_) {
        if (link.refers) continue;
        if (link.partnerIndex == nullptr) {
            if (CountTableRows(*database_.File(), *link.partner) > 0) ThrowReferred(link);
            continue;
        }
        const std::optional<std::string> key = PartnerKey(link, old);
        if (!key || (row != nullptr && PartnerKey(link, *row) == key)) continue;
        if (PartnerHas(link, *key)) ThrowReferred(link);
    }
}

void Relations::CheckNoneReferred() {
    for (const Link& link : links_)
        if (!link.refers && link.partner->Id() != table_.Id() && CountTableRows(*database_.File(), *link.partner) > 0)
            ThrowReferred(link);
}

}  // namespace varnel::access
