#include "tools/repository/ColumnOrder.h"

#include <algorithm>
#include <string>

#include "ado/types/ValueConvert.h"
#include "tools/repository/HeldRows.h"

namespace varnel::admin {
namespace {

bool IsKept(const StoredRows& given, const StoredRows& kept) {
    std::vector<std::string> ignored;
    return HeldRows(kept, ignored)[kColumns].rows == HeldRows(given, ignored)[kColumns].rows;
}

void Rewrite(Connection& repository, const StoredTable& others, const StoredTable& last) {
    repository.Execute("DELETE FROM " + std::string(kRepositoryTables[kColumns].name));
    for (const StoredTable& table : {others, last}) {
        StoredRows rows;
        rows[kColumns] = table;
        AppendRows(repository, rows);
    }
}

}  // namespace

void KeepColumnOrder(Connection& repository, std::int16_t id, const StoredRows& given, const StoredRows& kept) {
    if (IsKept(given, kept)) return;
    const StoredTable all = ReadStored("SELECT * FROM " + std::string(kRepositoryTables[kColumns].name), repository);
    const std::size_t number = all.PlaceOf(kRepositoryTables[kColumns].columns.front().name);
    StoredTable others = all;
    const auto isOurs = [&](const std::vector<Value>& row) {
        return !row[number].IsNull() && ToDouble(row[number]) == id;
    };
    others.rows.erase(std::remove_if(others.rows.begin(), others.rows.end(), isOurs), others.rows.end());
    try {
        Rewrite(repository, others, given[kColumns]);
    } catch (const Error&) {
        Rewrite(repository, all, {});
        throw;
    }
}

}  // namespace varnel::admin
