#include "providers/sql/TableUse.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::sql {
namespace {

void AddOnce(std::vector<std::string>& names, const char* name) {
    if (name == nullptr) return;
    std::string lower = AsciiLower(name);
    if (std::find(names.begin(), names.end(), lower) == names.end()) names.push_back(std::move(lower));
}

}  // namespace

TableUse::TableUse(sqlite3* database) {
    sqlite3_set_authorizer(database, &TableUse::Note, this);
}

int TableUse::Note(void* self, int action, const char* first, const char*, const char*, const char*) {
    TablesTouched* into = static_cast<TableUse*>(self)->into_;
    if (into == nullptr) return SQLITE_OK;
    if (action == SQLITE_READ) AddOnce(into->reads, first);
    if (action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE) AddOnce(into->writes, first);
    return SQLITE_OK;
}

}  // namespace varnel::sql
