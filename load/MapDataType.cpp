#include "load/MapDataType.h"

#include "repository/model/SessionModel.h"

namespace varnel {

namespace {

struct TypeRow {
    std::string_view name, access, foxPro, oracle, msSql, mySql;
};

constexpr TypeRow kTypes[] = {
    // clang-format off
    {"Binary",          "",         "",          "",         "binary",           ""},
    {"Boolean",         "Boolean",  "Logical",   "Varchar2", "bit",              "TinyInt"},
    {"Char",            "Text",     "Character", "Varchar2", "char",             "Varchar"},
    {"Currency",        "Currency", "Currency",  "Number",   "money",            "Double"},
    {"Date",            "DateTime", "DateTime",  "Date",     "datetime",         "Date"},
    {"DBDate",          "DateTime", "DateTime",  "Date",     "datetime",         "Date"},
    {"DBTime",          "",         "",          "",         "datetime",         ""},
    {"DBTimeStamp",     "DateTime", "DateTime",  "Date",     "datetime",         "Timestamp"},
    {"Double",          "Double",   "Double",    "Number",   "float",            "Double"},
    {"GUID",            "",         "",          "",         "uniqueidentifier", ""},
    {"Integer",         "Long",     "Integer",   "Number",   "int",              "Int"},
    {"LongVarBinary",   "Binary",   "General",   "BLOB",     "image",            "BLOB"},
    {"LongVarChar",     "Memo",     "Memo",      "CLOB",     "text",             "MediumText"},
    {"LongVarWChar",    "Memo",     "Memo",      "CLOB",     "ntext",            "MediumText"},
    {"Numeric",         "Double",   "Numeric",   "Number",   "decimal",          "Decimal"},
    {"Single",          "Single",   "Integer",   "Number",   "real",             "Int"},
    {"SmallInt",        "Integer",  "Integer",   "Number",   "smallint",         "SmallInt"},
    {"TinyInt",         "",         "",          "",         "Bit",              ""},
    {"UnsignedTinyInt", "Byte",     "Integer",   "Number",   "tinyint",          "SmallInt"},
    {"VarBinary",       "Binary",   "General",   "BLOB",     "varbinary",        "BLOB"},
    {"Varchar",         "Text",     "Character", "Varchar2", "varchar",          "Varchar"},
    {"VarNumeric",      "Double",   "Double",    "Number",   "numeric",          "Decimal"},
    {"VarWchar",        "Text",     "Character", "Varchar2", "nvarchar",         "Varchar"},
    {"Wchar",           "",         "",          "",         "nchar",            ""},
    // clang-format on
};

std::string Look(std::string_view name, std::string_view TypeRow::*kind) {
    for (const TypeRow& row : kTypes) {
        if (row.name == name) return std::string(row.*kind);
    }
    return "";
}

}  // namespace

std::string MapAccessType(std::string_view TypeName) {
    return Look(TypeName, &TypeRow::access);
}

std::string MapFoxProType(std::string_view TypeName) {
    return Look(TypeName, &TypeRow::foxPro);
}

std::string MapOracleType(std::string_view TypeName) {
    return Look(TypeName, &TypeRow::oracle);
}

std::string MapMSSQLType(std::string_view TypeName) {
    return Look(TypeName, &TypeRow::msSql);
}

std::string MapMySQLType(std::string_view TypeName) {
    return Look(TypeName, &TypeRow::mySql);
}

std::string MapDataType(std::string_view TypeName, std::string_view Direction) {
    if (Direction != "SOURCE" && Direction != "DEST") return std::string(TypeName);
    const std::string& kind = Direction == "SOURCE" ? SessionDef.SourceDBName : SessionDef.TargetDBName;
    if (kind == "ACCESS") return MapAccessType(TypeName);
    if (kind == "FOXPRO") return MapFoxProType(TypeName);
    if (kind == "ORACLE") return MapOracleType(TypeName);
    if (kind == "MySQL") return MapMySQLType(TypeName);
    if (kind == "MSSQL") return MapMSSQLType(TypeName);
    return std::string(TypeName);
}

}  // namespace varnel
