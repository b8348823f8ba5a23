#include "load/ColumnSize.h"

#include <algorithm>
#include <initializer_list>

#include "ado/types/ConnectionString.h"
#include "load/MapDataType.h"

namespace varnel {

namespace {

/// What the rules look at: the type word trimmed and in upper case, width and scale, of one definition mode.
struct Definition {
    std::string key;
    std::int32_t width;
    std::int16_t scale;

    bool IsOneOf(std::initializer_list<std::string_view> words) const {
        return std::find(words.begin(), words.end(), key) != words.end();
    }
    std::string Width() const { return "(" + std::to_string(width) + ")"; }
    std::string WidthAndScale(int shownScale) const {
        return "(" + std::to_string(width) + "," + std::to_string(shownScale) + ")";
    }
};

std::string KeyOf(std::string_view word) {
    return AsciiUpper(TrimBlanks(word));
}

Definition Define(const ColumnEntry& column, std::string_view mode) {
    if (mode == "N") return {KeyOf(column.DDType), column.DWidth, column.DScale};
    return {KeyOf(MapDataType(column.SOrgDtype, "DEST")), column.SWidth, column.SScale};
}

std::string AccessSize(const Definition& type) {
    return type.key == "TEXT" && type.width <= 255 ? type.Width() : "";
}

std::string FoxProSize(const Definition& type) {
    if (type.key == "NUMERIC") return type.WidthAndScale(type.scale);
    return type.key == "CHARACTER" ? type.Width() : "";
}

/// A number whose source type has no stated precision stays without one.
bool IsOpenNumber(const std::string& sourceType) {
    constexpr std::string_view kWords[] = {"LONG",  "DOUBLE",   "INTEGER", "SINGLE", "CURRENCY", "INT",
                                           "MONEY", "SMALLINT", "TINYINT", "REAL",   "FLOAT",    "DECIMAL"};
    return std::find(std::begin(kWords), std::end(kWords), KeyOf(sourceType)) != std::end(kWords);
}

std::string OracleSize(const Definition& type, const ColumnEntry& column) {
    if (SessionDef.SourceDBName == "ORACLE" && KeyOf(column.SOrgDtype) == "VARNUMERIC") return "";
    if (type.IsOneOf({"CHAR", "VARCHAR", "VARCHAR2"})) return type.Width();
    if (type.key == "NUMBER" && !IsOpenNumber(column.SDtype)) return type.WidthAndScale(type.scale);
    return "";
}

std::string MSSQLSize(const Definition& type) {
    return type.IsOneOf({"CHAR", "VARCHAR", "VARBINARY", "NCHAR", "NVARCHAR", "BINARY"}) ? type.Width() : "";
}

std::string MySQLSize(const Definition& type) {
    constexpr std::int32_t kMaxDigits = 65;
    constexpr std::int16_t kMaxScale = 20;
    if (type.IsOneOf({"CHAR", "VARCHAR", "TEXT"})) return type.Width();
    if (type.IsOneOf({"INTEGER", "INT"}) && type.width >= 0) return type.Width();
    if (type.IsOneOf({"DECIMAL", "FLOAT"}) && type.width >= 0 && type.width <= kMaxDigits) {
        return type.WidthAndScale(std::min(type.scale, kMaxScale));
    }
    return "";
}

}  // namespace

std::string SizeText(const ColumnEntry& column, std::string_view mode) {
    const std::string& kind = SessionDef.TargetDBName;
    const Definition type = Define(column, mode);
    if (kind == "FOXPRO") return FoxProSize(type);
    if (mode != "N" && mode != "O") return "";
    if (kind == "ACCESS") return AccessSize(type);
    if (kind == "ORACLE") return OracleSize(type, column);
    if (kind == "MSSQL") return MSSQLSize(type);
    if (kind == "MySQL") return MySQLSize(type);
    return "";
}

std::string ColumnSizeText(std::int16_t j, std::string_view mode) {
    return SizeText(Columns(j), mode);
}

}  // namespace varnel
