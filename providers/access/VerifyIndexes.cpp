#include "providers/access/VerifyIndexes.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

#include "providers/access/IndexKey.h"
#include "providers/access/VerifyIndexTree.h"

namespace varnel::access {
namespace {

constexpr std::size_t kMostShown = 5;  // of each sort of difference in one index

class IndexCheck {
public:
    IndexCheck(VerifyContext& context, const TableDefinition& table, const RealIndex& index, VerifyRows& rows)
        : context_(context),
          table_(table),
          index_(index),
          rows_(rows),
          place_(PlaceOf(table) + ", index '" + index.name + "'"),
          key_(table, index),
          canCompare_(key_.Obstacle().empty() && !HasOldTexts()) {}

    void Run() {
        CheckTree();
        CollectRows();
        CheckUnique();
        std::sort(stored_.begin(), stored_.end(), ByRow);
        CompareWithRows();
        context_.entries += stored_.size();
        ++context_.indexes;
    }

private:
    /// A row and its key.
    struct Entry {
        RowPointer row;
        std::string key;
    };
    static bool ByRow(const Entry& a, const Entry& b) {
        return PackRowPointer(a.row) != PackRowPointer(b.row) ? PackRowPointer(a.row) < PackRowPointer(b.row)
                                                              : a.key < b.key;
    }

    /// Access 97 weighs texts in a way of its own.
    bool HasOldTexts() const {
        if (context_.file.Shape().version != Version::Jet3) return false;
        return std::any_of(key_.Positions().begin(), key_.Positions().end(), [&](std::size_t at) {
            return table_.columns[at].type == ColumnType::Text || table_.columns[at].type == ColumnType::Memo;
        });
    }

    void CheckTree() {
        const PageSet owned =
            VerifyMap(context_, index_.map, "index '" + index_.name + "' of table '" + table_.name + "'", true);
        const auto report = [&](PageNumber page, const std::string& what) {
            context_.Find(place_ + ", page " + std::to_string(page) + ": " + what);
        };
        const auto onEntry = [&](std::string_view entry) {
            stored_.push_back({RowIdOf(entry), std::string(KeyOf(entry))});
        };
        const IndexTreeFindings tree = VerifyIndexTree(context_.file, table_.Id(), index_.root, report, onEntry);
        if (tree.pages != owned) context_.Find(place_ + ": its map of pages does not name the pages of its tree.");
        if (tree.looseKeys > 0)
            context_.Note(place_ + ": " + std::to_string(tree.looseKeys) + " keys of nodes are not exact.");
    }

    void CollectRows() {
        rows_.ForEach([&](RowPointer where, RowView& row) {
            Entry entry{where, ""};
            if (HasNull(row)) rowsWithNull_.insert(PackRowPointer(where));
            context_.Try([&] {
                if (!canCompare_ ? HasEntry(row) : BuildKey(entry.key, row)) {
                    built_.push_back(std::move(entry));
                }
            });
        });
    }

    /// False when the row has no entry.
    bool BuildKey(std::string& key, RowView& row) {
        const auto memo = [&](std::size_t position) { return rows_.LongValue(position, row); };
        return key_.BuildStored(key, row, memo) != KeyState::NoEntry;
    }

    bool HasNull(const RowView& row) const {
        return std::any_of(key_.Positions().begin(), key_.Positions().end(), [&](std::size_t at) {
            return table_.columns[at].type != ColumnType::Boolean && !row.Has(table_.columns[at].id);
        });
    }

    /// Rows with a null may have equal keys. The entries are in the order of the tree.
    void CheckUnique() {
        if (!index_.IsUnique()) return;
        for (std::size_t k = 1; k < stored_.size(); ++k) {
            if (stored_[k].key != stored_[k - 1].key || rowsWithNull_.contains(PackRowPointer(stored_[k].row)))
                continue;
            context_.Find(place_ + ": it is unique, but " + Shown(stored_[k].row) + " has the key of another row.");
            return;
        }
    }

    /// False when the index leaves the row out because all of its columns are null.
    bool HasEntry(const RowView& row) const {
        if ((index_.flags & kIgnoreNullsIndex) == 0) return true;
        return std::any_of(key_.Positions().begin(), key_.Positions().end(), [&](std::size_t at) {
            return table_.columns[at].type == ColumnType::Boolean || row.Has(table_.columns[at].id);
        });
    }

    /// Both lists are in the order of the rows.
    void CompareWithRows() {
        std::vector<RowPointer> missing, extra, differing;
        std::size_t s = 0, b = 0;
        while (s < stored_.size() || b < built_.size()) {
            const std::uint64_t inIndex = s < stored_.size() ? PackRowPointer(stored_[s].row) : UINT64_MAX;
            const std::uint64_t inTable = b < built_.size() ? PackRowPointer(built_[b].row) : UINT64_MAX;
            if (inIndex < inTable) {
                extra.push_back(stored_[s++].row);
            } else if (inTable < inIndex) {
                missing.push_back(built_[b++].row);
            } else {
                if (canCompare_ && stored_[s].key != built_[b].key) differing.push_back(stored_[s].row);
                ++s, ++b;
            }
        }
        Report(missing, "has no entry");
        Report(extra, "has an entry but is no such row");
        Report(differing, "has an entry with another key");
    }

    void Report(const std::vector<RowPointer>& rows, const std::string& what) {
        for (std::size_t k = 0; k < rows.size() && k < kMostShown; ++k) {
            context_.Find(place_ + ": " + Shown(rows[k]) + " " + what + ".");
        }
        if (rows.size() > kMostShown) {
            context_.Find(place_ + ": so it is with " + std::to_string(rows.size() - kMostShown) + " more rows.");
        }
    }

    static std::string Shown(RowPointer row) {
        return "row " + std::to_string(row.row) + " of page " + std::to_string(row.page);
    }

    VerifyContext& context_;
    const TableDefinition& table_;
    const RealIndex& index_;
    VerifyRows& rows_;
    std::string place_;
    IndexKey key_;
    bool canCompare_;
    std::vector<Entry> stored_, built_;
    std::set<std::uint32_t> rowsWithNull_;  ///< packed row pointers
};

}  // namespace

void VerifyIndexes(VerifyContext& context, const TableDefinition& table, VerifyRows& rows) {
    for (const RealIndex& index : table.realIndexes) {
        context.Try([&] { IndexCheck(context, table, index, rows).Run(); });
    }
}

}  // namespace varnel::access
