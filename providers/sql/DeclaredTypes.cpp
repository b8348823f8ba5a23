#include "providers/sql/DeclaredTypes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

namespace varnel::sql {
namespace {

/// How a word's arguments shape its type.
enum class Shape : std::uint8_t {
    Fixed,       ///< the type alone decides; arguments (a display width) are accepted and mean nothing
    Counter,     ///< the same, and unset values are numbered
    Sized,       ///< (n) is the size, 255 when it is missing
    TextOrMemo,  ///< TEXT: with (n) a text of that size, without a memo
    Bytes,       ///< (n) is the size, 510 when it is missing
    Digits,      ///< (p,s), 18 and 0 when they are missing
    OpenNumber   ///< (p,s), a number of open precision when they are missing
};

struct TypeWord {
    std::string_view word;
    DataTypeEnum type;
    Shape shape = Shape::Fixed;
};

constexpr TypeWord kTypeWords[] = {
    {"LONG", adInteger},
    {"INTEGER", adInteger},
    {"INT", adInteger},
    {"INTEGER4", adInteger},
    {"INT4", adInteger},
    {"MEDIUMINT", adInteger},
    {"I", adInteger},
    {"COUNTER", adInteger, Shape::Counter},
    {"AUTOINCREMENT", adInteger, Shape::Counter},
    {"IDENTITY", adInteger, Shape::Counter},
    {"SHORT", adSmallInt},
    {"SMALLINT", adSmallInt},
    {"INTEGER2", adSmallInt},
    {"INT2", adSmallInt},
    {"BYTE", adUnsignedTinyInt},
    {"TINYINT", adUnsignedTinyInt},
    {"INTEGER1", adUnsignedTinyInt},
    {"BIGINT", adBigInt},
    {"INT8", adBigInt},
    {"SINGLE", adSingle},
    {"REAL", adSingle},
    {"FLOAT4", adSingle},
    {"IEEESINGLE", adSingle},
    {"DOUBLE", adDouble},
    {"FLOAT", adDouble},
    {"DOUBLE PRECISION", adDouble},
    {"FLOAT8", adDouble},
    {"IEEEDOUBLE", adDouble},
    {"B", adDouble},
    {"CURRENCY", adCurrency},
    {"MONEY", adCurrency},
    {"SMALLMONEY", adCurrency},
    {"Y", adCurrency},
    {"YESNO", adBoolean},
    {"BOOLEAN", adBoolean},
    {"BOOL", adBoolean},
    {"BIT", adBoolean},
    {"LOGICAL", adBoolean},
    {"LOGICAL1", adBoolean},
    {"L", adBoolean},
    {"DATETIME", adDate},
    {"DATE", adDate},
    {"TIME", adDate},
    {"SMALLDATETIME", adDate},
    {"D", adDate},
    {"T", adDate},
    {"TIMESTAMP", adDBTimeStamp},
    {"DATETIME2", adDBTimeStamp},
    {"VARCHAR", adVarWChar, Shape::Sized},
    {"NVARCHAR", adVarWChar, Shape::Sized},
    {"VARCHAR2", adVarWChar, Shape::Sized},
    {"NVARCHAR2", adVarWChar, Shape::Sized},
    {"CHARACTER VARYING", adVarWChar, Shape::Sized},
    {"CHAR VARYING", adVarWChar, Shape::Sized},
    {"VARYING CHARACTER", adVarWChar, Shape::Sized},
    {"NATIONAL VARCHAR", adVarWChar, Shape::Sized},
    {"STRING", adVarWChar, Shape::Sized},
    {"ALPHANUMERIC", adVarWChar, Shape::Sized},
    {"CHAR", adWChar, Shape::Sized},
    {"CHARACTER", adWChar, Shape::Sized},
    {"NCHAR", adWChar, Shape::Sized},
    {"NATIVE CHARACTER", adWChar, Shape::Sized},
    {"NATIONAL CHAR", adWChar, Shape::Sized},
    {"C", adWChar, Shape::Sized},
    {"TEXT", adLongVarWChar, Shape::TextOrMemo},
    {"MEMO", adLongVarWChar},
    {"LONGTEXT", adLongVarWChar},
    {"LONGCHAR", adLongVarWChar},
    {"NOTE", adLongVarWChar},
    {"HYPERLINK", adLongVarWChar},
    {"CLOB", adLongVarWChar},
    {"NCLOB", adLongVarWChar},
    {"NTEXT", adLongVarWChar},
    {"MEDIUMTEXT", adLongVarWChar},
    {"TINYTEXT", adLongVarWChar},
    {"LONG VARCHAR", adLongVarWChar},
    {"LONG TEXT", adLongVarWChar},
    {"M", adLongVarWChar},
    {"BINARY", adVarBinary, Shape::Bytes},
    {"VARBINARY", adVarBinary, Shape::Bytes},
    {"RAW", adVarBinary, Shape::Bytes},
    {"BINARY VARYING", adVarBinary, Shape::Bytes},
    {"OLEOBJECT", adLongVarBinary},
    {"LONGBINARY", adLongVarBinary},
    {"IMAGE", adLongVarBinary},
    {"BLOB", adLongVarBinary},
    {"GENERAL", adLongVarBinary},
    {"MEDIUMBLOB", adLongVarBinary},
    {"LONGBLOB", adLongVarBinary},
    {"TINYBLOB", adLongVarBinary},
    {"LONG RAW", adLongVarBinary},
    {"LONG VARBINARY", adLongVarBinary},
    {"BFILE", adLongVarBinary},
    {"G", adLongVarBinary},
    {"DECIMAL", adNumeric, Shape::Digits},
    {"NUMERIC", adNumeric, Shape::Digits},
    {"DEC", adNumeric, Shape::Digits},
    {"N", adNumeric, Shape::Digits},
    {"F", adNumeric, Shape::Digits},
    {"NUMBER", adVarNumeric, Shape::OpenNumber},
    {"GUID", adGUID},
    {"UNIQUEIDENTIFIER", adGUID},
};

struct TypeSize {
    DataTypeEnum type;
    std::int64_t size;
    std::uint8_t precision;
};

constexpr std::int64_t kMemoSize = 536'870'910;
constexpr std::int64_t kLongBinarySize = 1'073'741'823;

constexpr TypeSize kTypeSizes[] = {
    {adSmallInt, 2, 5},
    {adInteger, 4, 10},
    {adSingle, 4, 7},
    {adDouble, 8, 15},
    {adCurrency, 8, 19},
    {adDate, 8, kNotStated},
    {adBoolean, 2, kNotStated},
    {adVariant, 16, kNotStated},
    {adUnsignedTinyInt, 1, 3},
    {adBigInt, 8, 19},
    {adGUID, 16, kNotStated},
    {adNumeric, 19, 18},
    {adDBTimeStamp, 16, kNotStated},
    {adVarNumeric, 38, 38},
    {adVarWChar, 255, kNotStated},
    {adWChar, 255, kNotStated},
    {adLongVarWChar, kMemoSize, kNotStated},
    {adVarBinary, 510, kNotStated},
    {adLongVarBinary, kLongBinarySize, kNotStated},
};

std::string Upper(std::string_view text) {
    return AsciiUpper(text);
}

DeclaredType Digits(DataTypeEnum type, std::span<const int> arguments, int precision, int scale) {
    DeclaredType made = PlainType(type);
    if (!arguments.empty()) precision = arguments[0], scale = arguments.size() > 1 ? arguments[1] : 0;
    made.precision = static_cast<std::uint8_t>(std::clamp(precision, 1, kMaxDecimalDigits));
    made.scale = static_cast<std::uint8_t>(std::clamp(scale, 0, kMaxDecimalDigits));
    return made;
}

DeclaredType Sized(DataTypeEnum type, std::span<const int> arguments) {
    DeclaredType made = PlainType(type);
    if (!arguments.empty() && arguments[0] > 0) made.size = arguments[0];
    return made;
}

/// A declaration cut into its word and its arguments: "decimal( 10 , 2 )".
struct Declaration {
    std::string word;
    std::vector<int> arguments;
};

Declaration CutDeclaration(std::string_view text) {
    Declaration cut;
    const std::size_t open = text.find('(');
    for (const char c : Upper(text.substr(0, open))) {
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!blank)
            cut.word += c;
        else if (!cut.word.empty() && cut.word.back() != ' ')
            cut.word += ' ';
    }
    while (!cut.word.empty() && cut.word.back() == ' ') cut.word.pop_back();
    if (open == std::string_view::npos) return cut;
    std::string_view rest = text.substr(open + 1);
    while (!rest.empty()) {
        const std::size_t digit = rest.find_first_of("0123456789");
        if (digit == std::string_view::npos) break;
        rest.remove_prefix(digit);
        int number = 0;
        const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), number);
        rest.remove_prefix(static_cast<std::size_t>(read.ptr - rest.data()));
        if (read.ec == std::errc()) cut.arguments.push_back(number);
    }
    return cut;
}

DeclaredType TypeOfAffinity(Affinity affinity) {
    switch (affinity) {
        case Affinity::Integer:
            return PlainType(adBigInt);
        case Affinity::Text:
            return PlainType(adLongVarWChar);
        case Affinity::Blob:
            return PlainType(adLongVarBinary);
        case Affinity::Real:
            return PlainType(adDouble);
        case Affinity::Numeric:
            break;
    }
    return PlainType(adVariant);
}

std::string WithArguments(std::string_view word, std::span<const int> arguments) {
    std::string text(word);
    for (std::size_t i = 0; i < arguments.size(); ++i) text += (i == 0 ? "(" : ",") + std::to_string(arguments[i]);
    return arguments.empty() ? text : text + ")";
}

}  // namespace

Affinity AffinityOf(std::string_view declaration) {
    const std::string upper = Upper(declaration);
    const auto has = [&](std::string_view part) { return upper.find(part) != std::string::npos; };
    if (has("INT")) return Affinity::Integer;
    if (has("CHAR") || has("CLOB") || has("TEXT")) return Affinity::Text;
    if (has("BLOB") || declaration.empty()) return Affinity::Blob;
    if (has("REAL") || has("FLOA") || has("DOUB")) return Affinity::Real;
    return Affinity::Numeric;
}

DeclaredType PlainType(DataTypeEnum type) {
    const auto* known = std::find_if(std::begin(kTypeSizes), std::end(kTypeSizes),
                                     [&](const TypeSize& row) { return row.type == type; });
    DeclaredType made;
    made.type = type;
    if (known == std::end(kTypeSizes)) return made;
    made.size = known->size;
    made.precision = known->precision;
    if (type == adNumeric) made.scale = 0;
    return made;
}

std::optional<DeclaredType> FindDeclaredType(std::string_view word, std::span<const int> arguments) {
    const auto* known = std::find_if(std::begin(kTypeWords), std::end(kTypeWords),
                                     [&](const TypeWord& row) { return row.word == word; });
    if (known == std::end(kTypeWords)) return std::nullopt;
    DeclaredType made = PlainType(known->type);
    switch (known->shape) {
        case Shape::Fixed:
            break;
        case Shape::Counter:
            made.counter = true;
            break;
        case Shape::TextOrMemo:
            if (!arguments.empty()) made = Sized(adVarWChar, arguments);
            break;
        case Shape::Sized:
        case Shape::Bytes:
            made = Sized(known->type, arguments);
            break;
        case Shape::Digits:
            made = Digits(adNumeric, arguments, 18, 0);
            break;
        case Shape::OpenNumber:
            if (!arguments.empty()) made = Digits(adNumeric, arguments, 38, 0);
            break;
    }
    return made;
}

bool ContinuesTypeWord(std::string_view word, std::string_view next) {
    const std::string longer = std::string(word) + " " + Upper(next);
    return std::any_of(std::begin(kTypeWords), std::end(kTypeWords),
                       [&](const TypeWord& row) { return row.word == longer; });
}

DeclaredType TypeOfDeclaration(std::string_view declaration) {
    const Declaration cut = CutDeclaration(declaration);
    // SQLite's own REAL has eight bytes; new single columns are stored under the word SINGLE.
    if (cut.word == "REAL") return PlainType(adDouble);
    if (cut.word.empty()) return PlainType(adVariant);
    if (const auto known = FindDeclaredType(cut.word, cut.arguments)) return *known;
    return TypeOfAffinity(AffinityOf(declaration));
}

std::string DeclarationToStore(const DeclaredType& type, std::string_view word, std::span<const int> arguments) {
    if (type.counter) return "INTEGER";
    if (type.type == adSingle) return "SINGLE";
    std::string written = WithArguments(word, arguments);
    if (!IsText(type.type) || AffinityOf(written) == Affinity::Text) return written;
    const int size = static_cast<int>(type.size);
    if (type.type == adLongVarWChar) return "LONGTEXT";
    return WithArguments(type.type == adWChar ? "CHAR" : "VARCHAR", std::span(&size, 1));
}

ColumnInfo DescribeColumn(std::string name, const DeclaredType& type, bool nullable) {
    ColumnInfo info;
    info.name = std::move(name);
    info.type = type.type;
    info.definedSize = type.size;
    info.precision = type.precision;
    info.numericScale = type.scale;
    info.nullable = nullable;
    return info;
}

}  // namespace varnel::sql
