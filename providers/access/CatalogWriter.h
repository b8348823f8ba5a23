// The rows of the system tables that stand for a table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/access/Schema.h"
#include "providers/access/TableWriter.h"

namespace varnel::access {

class CatalogWriter {
public:
    /// objects, aces: writers of MSysObjects and MSysACEs. All of these outlive the object.
    CatalogWriter(Schema& schema, TableWriter& objects, TableWriter& aces)
        : schema_(schema), objects_(objects), aces_(aces) {}

    /// Adds a table of the administrator's, created now, with the rights that its container hands down. properties: its
    /// property blob; may be empty.
    void AddTable(std::string_view name, PageNumber id, const std::string& properties);
    void RemoveTable(const CatalogEntry& table);

private:
    struct Right {
        std::string account;
        std::int64_t mask = 0;
    };
    std::string Administrator();
    std::vector<Right> InheritedRights();
    void AddRow(TableWriter& table, const std::vector<std::pair<const char*, Value>>& cells);

    Schema& schema_;
    TableWriter &objects_, &aces_;
};

}  // namespace varnel::access
