// A table that is changed at random, held against a model in memory.
#pragma once

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "providers/access/AccessDatabase.h"

namespace varnel::access {

class RandomChanges {
public:
    /// database: over file. The table's rows as they are now are the model's first state.
    RandomChanges(std::shared_ptr<PageFile> file, AccessDatabase& database, std::string table, unsigned seed);

    /// Inserts, updates and deletes, so that the table keeps about so many rows.
    void Change(int count, std::size_t aboutRows);
    /// Commits, and fails the test when the rows or an index are not as the model has them, or the file is damaged.
    void Check();
    void DeleteAll();

    /// The model's rows as comma-separated cells, texts in quotes unless they are empty.
    std::vector<std::string> AsCsv() const;
    int Refused() const { return refused_; }

private:
    using Row = std::vector<Value>;
    /// For each index the row's key, when no other row may have it in a unique one; else "".
    using Keys = std::vector<std::string>;
    struct Kept {
        Row row;
        Keys keys;
    };
    void Insert();
    void Update();
    void Delete();
    Keys KeysOf(const Row& row, bool& refused) const;
    bool WouldCollide(const Row& row, RowId self, Keys& keys) const;
    Value RandomValue(const ColumnInfo& column);
    std::string RandomText(std::size_t length);
    std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }
    RowId NewRow() const;
    std::map<RowId, Kept>::iterator Pick();

    std::shared_ptr<PageFile> file_;
    std::string name_;
    std::mt19937 random_;
    std::unique_ptr<TableFile> table_;
    std::shared_ptr<const TableDefinition> definition_;  ///< as it was at first
    std::map<RowId, Kept> model_;
    int refused_ = 0;
};

}  // namespace varnel::access
