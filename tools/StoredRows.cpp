#include "tools/StoredRows.h"

namespace varnel::admin {

std::string OfSession(const RepositoryTable& table, std::int16_t id) {
    return std::string(table.columns.front().name) + "=" + std::to_string(id);
}

StoredRows KeepRows(const Connection& repository, std::int16_t id) {
    StoredRows kept;
    for (std::size_t t = 0; t < kRepositoryTables.size(); ++t) {
        const RepositoryTable& table = kRepositoryTables[t];
        Recordset rows;
        rows.Open(SelectAllColumns(table) + " WHERE " + OfSession(table, id), repository);
        for (; !rows.Eof(); rows.MoveNext()) {
            std::vector<Value>& row = kept[t].emplace_back(table.columns.size());
            for (std::size_t k = 0; k < row.size(); ++k) row[k] = rows.Fields(k).GetValue();
        }
        rows.Close();
    }
    return kept;
}

void DeleteRows(Connection& repository, std::int16_t id) {
    for (const RepositoryTable& table : kRepositoryTables)
        repository.Execute("DELETE FROM " + std::string(table.name) + " WHERE " + OfSession(table, id));
}

void AppendRows(const Connection& repository, const StoredRows& rows) {
    for (std::size_t t = kRepositoryTables.size(); t-- > 0;) {
        if (rows[t].empty()) continue;
        Recordset table;
        table.Open(SelectAllColumns(kRepositoryTables[t]), repository, adOpenKeyset, adLockOptimistic);
        for (const std::vector<Value>& row : rows[t]) {
            table.AddNew();
            for (std::size_t k = 0; k < row.size(); ++k) table.Fields(k).SetValue(row[k]);
            table.Update();
        }
        table.Close();
    }
}

}  // namespace varnel::admin
