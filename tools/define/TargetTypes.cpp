#include "tools/define/TargetTypes.h"

#include <algorithm>
#include <limits>

#include "load/MapDataType.h"
#include "tools/sessionfile/ColumnTypes.h"

namespace varnel::admin {
namespace {

/// Where a column's size goes.
enum class Size : std::uint8_t {
    Beside,  ///< width and scale are stored; the load engine writes what the word takes
    Digits   ///< "word(width,scale)"
};

constexpr std::int64_t kAny = std::numeric_limits<std::int64_t>::max();

/// The type of a source column whose width is at most most; the first rule that fits counts. Without one, the load
/// engine's mapping holds.
struct Rule {
    std::string_view kind;
    DataTypeEnum type;
    std::int64_t most;
    std::string_view word;
    Size size = Size::Beside;
    std::int32_t width = 0;  ///< instead of the source's; 0: the source's
    std::int16_t scale = 0;  ///< with width
    std::string_view loss = {};
};

constexpr std::string_view kRounded = "of a number of more than 15 digits the rest is rounded away, or its row refused";
constexpr std::string_view kTooLong = "rows with numbers of more digits are refused";

constexpr Rule kRules[] = {
    {"ACCESS", adChar, 255, "Text"},
    {"ACCESS", adChar, kAny, "Memo"},
    {"ACCESS", adNumeric, 28, "Decimal", Size::Digits},
    {"ACCESS", adNumeric, kAny, "Double", Size::Beside, 0, 0, kRounded},
    {"ACCESS", adVarNumeric, kAny, "Double", Size::Beside, 0, 0, kRounded},
    {"ACCESS", adBigInt, kAny, "Decimal(19,0)"},
    {"ACCESS", adTinyInt, kAny, "Integer"},
    {"ACCESS", adGUID, kAny, "Guid"},
    {"ACCESS", adDBTime, kAny, "DateTime"},
    {"ACCESS", adBinary, kAny, "Binary"},

    {"FOXPRO", adChar, 254, "Character"},
    {"FOXPRO", adChar, kAny, "Memo"},
    {"FOXPRO", adVarNumeric, kAny, "Double", Size::Beside, 0, 0, kRounded},
    {"FOXPRO", adBigInt, kAny, "Numeric", Size::Beside, 20, 0},
    {"FOXPRO", adTinyInt, kAny, "Integer"},
    {"FOXPRO", adSingle, kAny, "Double"},
    {"FOXPRO", adGUID, kAny, "Character", Size::Beside, 38, 0},
    {"FOXPRO", adDBTime, kAny, "DateTime"},
    {"FOXPRO", adBinary, kAny, "General"},

    {"ORACLE", adChar, 4000, "Varchar2"},
    {"ORACLE", adChar, kAny, "CLOB"},
    {"ORACLE", adNumeric, 38, "Number", Size::Digits},
    {"ORACLE", adNumeric, kAny, "Number", Size::Beside, 0, 0, kRounded},
    {"ORACLE", adBigInt, kAny, "Number(19)"},
    {"ORACLE", adInteger, kAny, "Number(10)"},
    {"ORACLE", adSmallInt, kAny, "Number(5)"},
    {"ORACLE", adTinyInt, kAny, "Number(3)"},
    {"ORACLE", adUnsignedTinyInt, kAny, "Number(3)"},
    {"ORACLE", adCurrency, kAny, "Number(19,4)"},
    {"ORACLE", adBoolean, kAny, "Varchar2", Size::Beside, 1, 0},
    {"ORACLE", adGUID, kAny, "Varchar2", Size::Beside, 38, 0},
    {"ORACLE", adDBTime, kAny, "Date"},
    {"ORACLE", adBinary, kAny, "BLOB"},

    {"MSSQL", adVarWChar, 4000, "nvarchar"},
    {"MSSQL", adWChar, 4000, "nchar"},
    {"MSSQL", adChar, 8000, "char"},
    {"MSSQL", adVarChar, 8000, "varchar"},
    {"MSSQL", adVarWChar, kAny, "ntext"},
    {"MSSQL", adWChar, kAny, "ntext"},
    {"MSSQL", adChar, kAny, "text"},
    {"MSSQL", adVarChar, kAny, "text"},
    {"MSSQL", adNumeric, 38, "decimal", Size::Digits},
    {"MSSQL", adNumeric, kAny, "float", Size::Beside, 0, 0, kRounded},
    {"MSSQL", adVarNumeric, kAny, "float", Size::Beside, 0, 0, kRounded},
    {"MSSQL", adBigInt, kAny, "bigint"},
    {"MSSQL", adTinyInt, kAny, "smallint"},
    {"MSSQL", adBinary, 8000, "binary"},
    {"MSSQL", adBinary, kAny, "image"},
    {"MSSQL", adVarBinary, 8000, "varbinary"},
    {"MSSQL", adVarBinary, kAny, "image"},

    {"MySQL", adChar, 2000, "Varchar"},
    {"MySQL", adChar, kAny, "LongText"},
    {"MySQL", adLongVarWChar, kAny, "LongText"},
    {"MySQL", adLongVarChar, kAny, "LongText"},
    {"MySQL", adNumeric, 65, "Decimal"},
    {"MySQL", adNumeric, kAny, "Double", Size::Beside, 0, 0, kRounded},
    {"MySQL", adVarNumeric, kAny, "Double", Size::Beside, 0, 0, kRounded},
    {"MySQL", adCurrency, kAny, "Decimal", Size::Beside, 19, 4},
    {"MySQL", adBigInt, kAny, "BigInt"},
    {"MySQL", adTinyInt, kAny, "TinyInt"},
    {"MySQL", adSingle, kAny, "Double"},
    {"MySQL", adDate, kAny, "DateTime"},
    {"MySQL", adDBTimeStamp, kAny, "DateTime"},
    {"MySQL", adDBTime, kAny, "DateTime"},
    {"MySQL", adGUID, kAny, "Varchar", Size::Beside, 38, 0},
    {"MySQL", adBinary, 65'535, "Blob"},
    {"MySQL", adVarBinary, 65'535, "Blob"},
    {"MySQL", adBinary, kAny, "LongBlob"},
    {"MySQL", adVarBinary, kAny, "LongBlob"},
    {"MySQL", adLongVarBinary, kAny, "LongBlob"},
};

/// The type under which the session reads the column.
DataTypeEnum SessionType(DataTypeEnum type) {
    switch (type) {
        case adDecimal:
        case adUnsignedBigInt:
            return adNumeric;
        case adUnsignedInt:
            return adBigInt;
        case adUnsignedSmallInt:
            return adInteger;
        case adBSTR:
            return adVarWChar;
        case adVariant:
            return adLongVarWChar;
        default:
            return type;
    }
}

bool IsShortText(DataTypeEnum type) {
    return IsText(type) && !IsLongOrBinary(type);
}

/// Texts of every sort have the same rules, except in SQL Server, where a text of a source that counts in characters
/// needs a column that does so too.
DataTypeEnum RuleType(DataTypeEnum type, std::string_view sourceKind, std::string_view kind) {
    if (!IsShortText(type)) return type;
    if (kind != "MSSQL") return adChar;
    if (type == adWChar) return sourceKind == "MSSQL" ? adWChar : adVarWChar;  // which fills up with blanks
    const bool isUnicode = sourceKind == "MySQL" || sourceKind == "ORACLE";
    return isUnicode ? adVarWChar : type;
}

/// Digits as FoxPro counts them: the sign and the point take a place each.
TargetType FoxProNumber(std::int32_t digits, std::int16_t scale) {
    constexpr std::int32_t kMostPlaces = 20;
    constexpr std::int16_t kMostScale = 18;
    const std::int32_t places = digits + (scale > 0 ? 2 : 1);
    TargetType made{"Numeric", std::min(places, kMostPlaces), std::min(scale, kMostScale), ""};
    if (places > kMostPlaces || scale > kMostScale) made.loss = kTooLong;
    return made;
}

/// More digits behind the point the load engine does not write into MySQL's definitions.
constexpr std::int16_t kMostStoredScale = 20;

std::string Sized(const Rule& rule, std::int32_t width, std::int16_t scale) {
    std::string word(rule.word);
    const bool isCapped = rule.kind == "MySQL" && scale > kMostStoredScale;
    if (rule.size == Size::Digits || isCapped)
        return word + "(" + std::to_string(width) + "," + std::to_string(scale) + ")";
    return word;
}

std::string MappedWord(const std::string& typeName, std::string_view kind) {
    if (kind == "ACCESS") return MapAccessType(typeName);
    if (kind == "FOXPRO") return MapFoxProType(typeName);
    if (kind == "ORACLE") return MapOracleType(typeName);
    if (kind == "MySQL") return MapMySQLType(typeName);
    return MapMSSQLType(typeName);
}

}  // namespace

std::string SessionTypeName(DataTypeEnum type) {
    return TypeName(SessionType(type));
}

std::int32_t SessionWidth(const ColumnInfo& source) {
    const std::string name = SessionTypeName(source.type);
    if (!NeedsWidth(name)) return UsualWidth(name);
    const std::int64_t stated = source.precision == kNotStated ? source.definedSize : source.precision;
    const std::int64_t least = std::max<std::int64_t>(SessionScale(source), 1);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(stated, least, std::numeric_limits<std::int32_t>::max()));
}

std::int16_t SessionScale(const ColumnInfo& source) {
    const bool isExact = source.type == adNumeric || source.type == adDecimal;
    return isExact && source.numericScale != kNotStated ? std::int16_t{source.numericScale} : std::int16_t{0};
}

TargetType ProposeType(const ColumnInfo& source, std::string_view sourceKind, std::string_view targetKind) {
    const std::string_view kind = targetKind.starts_with("FOXPRO") ? "FOXPRO" : targetKind;
    const std::int32_t width = SessionWidth(source);
    const std::int16_t scale = SessionScale(source);
    const DataTypeEnum type = SessionType(source.type);
    if (kind == "TEXT") return {"", width, scale, ""};
    if (kind == "FOXPRO" && type == adNumeric) return FoxProNumber(width, scale);
    const DataTypeEnum ruleType = RuleType(type, sourceKind, kind);
    const auto* rule = std::find_if(std::begin(kRules), std::end(kRules), [&](const Rule& one) {
        return one.kind == kind && one.type == ruleType && width <= one.most;
    });
    if (rule == std::end(kRules)) return {MappedWord(TypeName(type), kind), width, scale, ""};
    const bool isFixed = rule->width > 0;
    return {Sized(*rule, width, scale), isFixed ? rule->width : width, isFixed ? rule->scale : scale,
            std::string(rule->loss)};
}

}  // namespace varnel::admin
