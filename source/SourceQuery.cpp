#include "source/SourceQuery.h"

namespace varnel {

namespace {

std::string ColumnPiece(const std::string& name) {
    const std::string& kind = SessionDef.SourceDBName;
    if (kind == "ORACLE") return "\"" + name + "\",";
    if (kind == "FOXPRO") return name + ",";
    if (kind == "MySQL") return "`" + name + "`,";
    return "[" + name + "],";
}

std::string FromPart(const TableEntry& table, MySqlFrom mySqlFrom) {
    const std::string& kind = SessionDef.SourceDBName;
    if (kind == "ORACLE") return " FROM " + table.OwnerName + "." + table.TableName;
    if (kind == "MySQL") {
        const std::string owner = mySqlFrom == MySqlFrom::OwnerAndTable ? "`" + table.OwnerName + "`." : "";
        return " FROM " + owner + "`" + table.TableName + "`";
    }
    if (kind == "FOXPRO" && SessionDef.SourceType == "DIR") {
        return " FROM \"" + SessionDef.SrcDBFPath + table.TableName + "\"";
    }
    if (kind == "MSSQL") return " FROM [" + table.OwnerName + "].[" + table.TableName + "]";
    return " FROM [" + table.TableName + "]";
}

}  // namespace

std::vector<const ColumnEntry*> SelectedColumns(std::int16_t TabID) {
    std::vector<const ColumnEntry*> selected;
    for (const ColumnEntry& column : Columns) {
        if (column.TabID == TabID && column.SSelected == 1) selected.push_back(&column);
    }
    return selected;
}

SourceQueries BuildSourceQueries(std::int16_t i, std::string_view countHead, MySqlFrom mySqlFrom) {
    const TableEntry& table = SourceTables(i);
    SourceQueries queries{"SELECT ", std::string(countHead)};
    for (const ColumnEntry* column : SelectedColumns(table.TabID)) queries.select += ColumnPiece(column->SCName);
    queries.select.pop_back();
    std::string tail = FromPart(table, mySqlFrom);
    if (!table.WhereCond.empty()) tail += " WHERE " + table.WhereCond;
    queries.select += tail;
    queries.count += tail;
    return queries;
}

}  // namespace varnel
