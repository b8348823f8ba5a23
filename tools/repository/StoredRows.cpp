#include "tools/repository/StoredRows.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

/// Per stored column, the place of the repository's column of that name, or the number of those.
std::vector<std::size_t> FieldPlaces(Recordset& rows, const StoredTable& stored) {
    StoredTable fields;
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) fields.columns.push_back(rows.Fields(k).Name());
    std::vector<std::size_t> places;
    for (const std::string& column : stored.columns) places.push_back(fields.PlaceOf(column));
    return places;
}

void AppendTable(Recordset& rows, const StoredTable& stored, const RepositoryTable& known) {
    const std::vector<std::size_t> places = FieldPlaces(rows, stored);
    for (const std::vector<Value>& row : stored.rows) {
        rows.AddNew();
        for (std::size_t k = 0; k < places.size(); ++k) {
            if (places[k] < rows.FieldCount())
                rows.Fields(places[k]).SetValue(row[k]);
            else if (!row[k].IsNull())
                throw Error(ErrorKind::Misuse, std::string(known.name),
                            "the table " + std::string(known.name) + " of this repository has no column " +
                                stored.columns[k] + "; add it, or use a repository made by varnel-admin new");
        }
        rows.Update();
    }
}

}  // namespace

std::size_t StoredTable::PlaceOf(std::string_view column) const {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const std::string& name) { return EqualNoCase(name, column); });
    return static_cast<std::size_t>(found - columns.begin());
}

const Value& StoredTable::At(std::size_t row, std::string_view column) const {
    static const Value null;
    const std::size_t place = PlaceOf(column);
    return place < columns.size() ? rows[row][place] : null;
}

std::string OfSession(const RepositoryTable& table, std::int16_t id) {
    return std::string(table.columns.front().name) + "=" + std::to_string(id);
}

StoredTable ReadStored(const std::string& query, const Connection& repository) {
    StoredTable stored;
    Recordset rows;
    rows.Open(query, repository);
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) stored.columns.push_back(rows.Fields(k).Name());
    for (; !rows.Eof(); rows.MoveNext()) {
        std::vector<Value>& row = stored.rows.emplace_back(rows.FieldCount());
        for (std::size_t k = 0; k < row.size(); ++k) row[k] = rows.Fields(k).GetValue();
    }
    return stored;
}

StoredRows KeepRows(const Connection& repository, std::int16_t id) {
    StoredRows kept;
    for (std::size_t t = 0; t < kept.size(); ++t) {
        const RepositoryTable& table = kRepositoryTables[t];
        kept[t] = ReadStored("SELECT * FROM " + std::string(table.name) + " WHERE " + OfSession(table, id), repository);
    }
    return kept;
}

void RequireSession(const StoredRows& rows, std::int16_t id, const std::string& file) {
    if (rows[kSessions].empty())
        throw Error(ErrorKind::Misuse, file,
                    "there is no session " + std::to_string(id) + " in " + file +
                        "; the numbers are shown by: varnel-admin list --repository " + file);
}

void DeleteRows(Connection& repository, std::int16_t id) {
    for (const RepositoryTable& table : kRepositoryTables)
        repository.Execute("DELETE FROM " + std::string(table.name) + " WHERE " + OfSession(table, id));
}

void AppendRows(const Connection& repository, const StoredRows& rows) {
    for (std::size_t t = kRepositoryTables.size(); t-- > 0;) {
        if (rows[t].empty()) continue;
        Recordset table;
        table.Open("SELECT * FROM " + std::string(kRepositoryTables[t].name), repository, adOpenKeyset,
                   adLockOptimistic);
        AppendTable(table, rows[t], kRepositoryTables[t]);
        table.Close();
    }
}

}  // namespace varnel::admin
