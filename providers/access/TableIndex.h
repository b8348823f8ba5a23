// One index of a table while the table's rows are changed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/access/FilePages.h"
#include "providers/access/IndexKey.h"
#include "providers/access/IndexTree.h"
#include "providers/access/RowView.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

class TableIndex {
public:
    /// All of these outlive the index.
    TableIndex(PageFile& file, FilePages& pages, const TableDefinition& table, const RealIndex& index)
        : table_(table), index_(index), shape_(table, index), tree_(file, pages, table.Id(), index) {}

    const RealIndex& Definition() const { return index_; }
    IndexTree& Tree() { return tree_; }
    const std::vector<std::size_t>& Positions() const { return shape_.Positions(); }
    bool Touches(const std::vector<bool>& changed) const;
    /// Throws Error{NotSupported} when the index's keys cannot be built.
    void NeedKeys() const;
    /// Throws Error{Constraint} when a column that the index requires has no value.
    void NeedValues(const RowView& row) const;
    /// Replaces key by the row's key, without its row id.
    KeyState BuildKey(RowView& row, const MemoText& memo, std::string& key) const;
    /// "Id = 5, Name = 'x'": what the row has in the index's columns.
    std::string Describe(std::span<const Value* const> values) const;

private:
    const TableDefinition& table_;
    const RealIndex& index_;
    IndexKey shape_;
    IndexTree tree_;
};

}  // namespace varnel::access
