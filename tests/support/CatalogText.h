// What a database says of its tables, as lines that tests compare.
#pragma once

#include <string>

#include "ado/types/Provider.h"

namespace varnel {

/// "owner.name; view:owner.name"
inline std::string TablesText(ProviderSession& session) {
    std::string text;
    for (const TableInfo& table : session.Tables()) {
        text += (text.empty() ? "" : "; ") + std::string(table.isView ? "view:" : "");
        text += (table.owner.empty() ? "" : table.owner + ".") + table.name;
    }
    return text;
}

/// A line per column: "name Numeric(10,2) decimal", then key, assigned, required where that holds. A text's or byte
/// string's size stands where numbers have digits and scale; a number that states no scale shows none.
inline std::string ColumnsText(ProviderSession& session, const std::string& owner, const std::string& table) {
    std::string text;
    for (const TableColumn& column : session.Columns(owner, table)) {
        const ColumnInfo& info = column.info;
        const bool isNumber = info.precision != kNotStated;
        text += info.name + " " + TypeName(info.type) + "(";
        text += isNumber ? std::to_string(info.precision) : std::to_string(info.definedSize);
        if (isNumber && info.numericScale != kNotStated) text += "," + std::to_string(info.numericScale);
        text += ") " + column.typeName + (column.isKey ? " key" : "") + (column.isAssigned ? " assigned" : "");
        text += info.nullable ? "\n" : " required\n";
    }
    return text;
}

}  // namespace varnel
