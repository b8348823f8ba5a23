#include "load/TargetStatements.h"

#include "ado/types/ConnectionString.h"
#include "load/ColumnSize.h"
#include "load/MapDataType.h"
#include "source/SourceQuery.h"

namespace varnel {

namespace {

bool IsFoxPro(std::string_view targetType) {
    return SessionDef.TargetDBName == "FOXPRO" && SessionDef.TargetType == targetType;
}

/// The table as DROP and DELETE write it.
std::string TableInStatement(const TableEntry& table) {
    const std::string& kind = SessionDef.TargetDBName;
    const std::string& name = table.TableName;
    if (IsFoxPro("DIR")) return "[" + SessionDef.DBFPath + name + ".dbf]";
    if (kind == "ORACLE") return name;
    if (kind == "MSSQL") return "[" + table.OwnerName + "].[" + name + "]";
    if (kind == "MySQL") return "`" + name + "`";
    return "[" + name + "]";
}

/// "Create Table " with the table's name and the opening parenthesis.
std::string CreateHead(const TableEntry& table) {
    const std::string& kind = SessionDef.TargetDBName;
    const std::string& name = table.TableName;
    const bool hasBlank = name.find(' ') != std::string::npos;
    if (IsFoxPro("DIR") && !hasBlank) return "Create Table " + SessionDef.DBFPath + name + ".dbf (";
    if (IsFoxPro("DIR") || (IsFoxPro("DBC") && hasBlank) || kind == "ACCESS" || kind == "MySQL" || kind == "MSSQL") {
        return "Create Table " + TableInStatement(table) + " (";
    }
    return "Create Table " + name + "(";
}

/// A column as its definition begins: which name, which type word, with which size behind it.
struct ColumnText {
    std::string name, type, size;
};

std::string FoxProColumn(const ColumnEntry& column, const ColumnText& text, bool fromSource) {
    const std::string& origin = fromSource ? column.SOrgDtype : column.DDType;
    if (EqualNoCase(origin, "CURRENCY")) return text.name + " Y,";
    if (EqualNoCase(origin, "DOUBLE") || EqualNoCase(text.type, "DOUBLE")) return text.name + " B,";
    if (fromSource && EqualNoCase(text.type, "CHARACTER") && column.SWidth >= 255) return text.name + " MEMO,";
    return text.name + " " + text.type + text.size + ",";
}

std::string AccessColumn(const ColumnText& text, bool fromSource) {
    const std::string name = " [" + text.name + "] ";
    if (EqualNoCase(text.type, "BINARY")) return name + (fromSource ? " oleobject," : " OLEOBJECT,");
    if (EqualNoCase(text.type, "BOOLEAN")) return name + " yesno,";
    return name + text.type + text.size + ",";
}

/// fromSource: defined by the source column, else by the stored target definition. Ends in a comma.
std::string ColumnDefinition(const ColumnEntry& column, bool fromSource) {
    const std::string& kind = SessionDef.TargetDBName;
    const ColumnText text = {fromSource ? column.SCName : column.DCName,
                             fromSource ? MapDataType(column.SOrgDtype, "DEST") : column.DDType,
                             SizeText(column, fromSource ? "O" : "N")};
    if (kind == "FOXPRO") return FoxProColumn(column, text, fromSource);
    if (kind == "ACCESS") return AccessColumn(text, fromSource);
    const std::string tail = " " + text.type + text.size + ",";
    if (kind == "MySQL") return "`" + text.name + "`" + tail;
    if (kind == "MSSQL") return "[" + text.name + "]" + tail;
    return text.name + tail;
}

/// A column as the statements that write rows name it.
std::string ColumnInList(const std::string& name) {
    const std::string& kind = SessionDef.TargetDBName;
    if (kind == "MySQL") return " `" + name + "`";
    return kind == "ACCESS" || kind == "MSSQL" ? " [" + name + "]" : name;
}

}  // namespace

std::string DropStatement(std::int16_t i) {
    return "drop table " + TableInStatement(DestTables(i));
}

std::string DeleteStatement(std::int16_t i) {
    return "delete from " + TableInStatement(DestTables(i));
}

std::string CreateStatement(std::int16_t i) {
    const bool fromSource = SourceTables(i).TableExists;
    std::string statement = CreateHead(DestTables(i));
    for (const ColumnEntry* column : SelectedColumns(SourceTables(i).TabID)) {
        statement += "\r" + ColumnDefinition(*column, fromSource);
    }
    statement.pop_back();
    return statement + "\r)";
}

std::vector<std::string> TargetColumns(std::int16_t i) {
    const bool sourceNames = SourceTables(i).LoadOption == "DROP";
    std::vector<std::string> names;
    for (const ColumnEntry* column : SelectedColumns(DestTables(i).TabID)) {
        names.push_back(sourceNames ? column->SCName : column->DCName);
    }
    return names;
}

WritingTexts BuildWritingTexts(std::int16_t i) {
    const TableEntry& table = DestTables(i);
    const std::string& kind = SessionDef.TargetDBName;
    std::string list;
    for (const std::string& name : TargetColumns(i)) list += ColumnInList(name) + ",";
    if (!list.empty()) list.pop_back();
    WritingTexts texts;
    texts.select = "Select " + list + " FROM ";
    if (kind == "MySQL") {
        texts.insert = "INSERT INTO `" + table.TableName + "` (" + list + ") VALUES ";
    } else {
        texts.insert = "INSERT INTO " + table.TableName + " (" + list + ") VALUES (";
    }
    const bool quoted = kind == "ACCESS" || kind == "MSSQL" || kind == "MySQL";
    texts.select += quoted ? TableInStatement(table) + " " : table.TableName;
    return texts;
}

}  // namespace varnel
