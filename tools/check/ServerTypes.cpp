#include "tools/check/ServerTypes.h"

#include <algorithm>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "load/ColumnSize.h"
#include "load/MapDataType.h"

namespace varnel::admin {
namespace {

enum class Size : std::uint8_t {
    None,    ///< the word alone
    Width,   ///< (n) characters or bytes, capacity is the most
    Digits,  ///< (p,s); capacity the most digits; without arguments precision digits and no scale
    Open     ///< (p,s); without arguments any number
};

struct ServerType {
    std::string_view word;  ///< in capitals
    DataTypeEnum type;
    Size size = Size::None;
    std::int64_t capacity = 0;  ///< characters, bytes or digits
    std::uint8_t precision = kNotStated;
};

constexpr std::int64_t kHuge = 2'147'483'647;

constexpr ServerType kMySql[] = {
    // clang-format off
    {"TINYINT", adTinyInt}, {"SMALLINT", adSmallInt}, {"MEDIUMINT", adInteger}, {"INT", adInteger},
    {"INTEGER", adInteger}, {"BIGINT", adBigInt}, {"BIT", adUnsignedTinyInt}, {"BOOL", adTinyInt},
    {"BOOLEAN", adTinyInt}, {"FLOAT", adSingle}, {"REAL", adDouble}, {"DOUBLE", adDouble},
    {"DECIMAL", adNumeric, Size::Digits, 65, 10}, {"NUMERIC", adNumeric, Size::Digits, 65, 10},
    {"DATE", adDBDate}, {"DATETIME", adDBTimeStamp}, {"TIMESTAMP", adDBTimeStamp}, {"TIME", adDBTime},
    {"YEAR", adSmallInt}, {"CHAR", adChar, Size::Width, 255}, {"VARCHAR", adVarChar, Size::Width, 16383},
    {"TINYTEXT", adLongVarChar, Size::None, 255}, {"TEXT", adLongVarChar, Size::Width, 65535},
    {"MEDIUMTEXT", adLongVarChar, Size::None, 16777215}, {"LONGTEXT", adLongVarChar, Size::None, kHuge},
    {"BINARY", adBinary, Size::Width, 255}, {"VARBINARY", adVarBinary, Size::Width, 65532},
    {"TINYBLOB", adLongVarBinary, Size::None, 255}, {"BLOB", adLongVarBinary, Size::None, 65535},
    {"MEDIUMBLOB", adLongVarBinary, Size::None, 16777215}, {"LONGBLOB", adLongVarBinary, Size::None, kHuge},
    // clang-format on
};
constexpr ServerType kMsSql[] = {
    // clang-format off
    {"BIT", adBoolean}, {"TINYINT", adUnsignedTinyInt}, {"SMALLINT", adSmallInt}, {"INT", adInteger},
    {"INTEGER", adInteger}, {"BIGINT", adBigInt}, {"REAL", adSingle}, {"FLOAT", adDouble},
    {"MONEY", adCurrency}, {"SMALLMONEY", adCurrency}, {"DECIMAL", adNumeric, Size::Digits, 38, 18},
    {"NUMERIC", adNumeric, Size::Digits, 38, 18}, {"DATE", adDBDate}, {"TIME", adDBTime},
    {"DATETIME", adDBTimeStamp}, {"DATETIME2", adDBTimeStamp}, {"SMALLDATETIME", adDBTimeStamp},
    {"CHAR", adChar, Size::Width, 8000}, {"VARCHAR", adVarChar, Size::Width, 8000},
    {"NCHAR", adWChar, Size::Width, 4000}, {"NVARCHAR", adVarWChar, Size::Width, 4000},
    {"TEXT", adLongVarChar, Size::None, kHuge}, {"NTEXT", adLongVarWChar, Size::None, kHuge / 2},
    {"BINARY", adBinary, Size::Width, 8000}, {"VARBINARY", adVarBinary, Size::Width, 8000},
    {"IMAGE", adLongVarBinary, Size::None, kHuge}, {"UNIQUEIDENTIFIER", adGUID},
    {"TIMESTAMP", adBinary, Size::None, 8}, {"ROWVERSION", adBinary, Size::None, 8},
    // clang-format on
};
constexpr ServerType kOracle[] = {
    // clang-format off
    {"NUMBER", adVarNumeric, Size::Open, 38}, {"NUMERIC", adVarNumeric, Size::Open, 38},
    {"DECIMAL", adVarNumeric, Size::Open, 38}, {"INTEGER", adNumeric, Size::None, 38, 38},
    {"INT", adNumeric, Size::None, 38, 38}, {"SMALLINT", adNumeric, Size::None, 38, 38},
    {"FLOAT", adDouble}, {"REAL", adDouble}, {"BINARY_FLOAT", adSingle}, {"BINARY_DOUBLE", adDouble},
    {"DATE", adDBTimeStamp}, {"TIMESTAMP", adDBTimeStamp}, {"CHAR", adChar, Size::Width, 2000},
    {"VARCHAR", adVarChar, Size::Width, 4000}, {"VARCHAR2", adVarChar, Size::Width, 4000},
    {"NCHAR", adWChar, Size::Width, 2000}, {"NVARCHAR2", adVarWChar, Size::Width, 4000},
    {"LONG", adLongVarChar, Size::None, kHuge}, {"CLOB", adLongVarChar, Size::None, kHuge},
    {"NCLOB", adLongVarWChar, Size::None, kHuge}, {"RAW", adVarBinary, Size::Width, 2000},
    {"LONG RAW", adLongVarBinary, Size::None, kHuge}, {"BLOB", adLongVarBinary, Size::None, kHuge},
    {"BFILE", adLongVarBinary, Size::None, kHuge},
    // clang-format on
};

template <std::size_t N>
const ServerType* Find(const ServerType (&types)[N], const std::string& word) {
    const auto found =
        std::find_if(std::begin(types), std::end(types), [&](const ServerType& type) { return type.word == word; });
    return found == std::end(types) ? nullptr : found;
}

/// A definition's type word and the numbers in its parentheses; a stored word may bring its own ("Number(10,2)").
struct Written {
    std::string word, shown;
    std::vector<std::int64_t> numbers;
};

Written WrittenType(const ColumnEntry& column, bool fromSource) {
    const std::string word = fromSource ? MapDataType(column.SOrgDtype, "DEST") : column.DDType;
    Written written;
    written.shown = word + SizeText(column, fromSource ? "O" : "N");
    const std::size_t open = std::min(written.shown.find('('), written.shown.size());
    written.word = AsciiUpper(TrimBlanks(std::string_view(written.shown).substr(0, open)));
    for (std::size_t at = open; at < written.shown.size();) {
        const std::size_t digit = written.shown.find_first_of("-0123456789", at);
        if (digit == std::string::npos) break;
        std::size_t end = digit + 1;
        while (end < written.shown.size() && written.shown[end] >= '0' && written.shown[end] <= '9') ++end;
        written.numbers.push_back(std::strtoll(written.shown.c_str() + digit, nullptr, 10));
        at = end;
    }
    return written;
}

const ServerType* TypeOf(const Written& written) {
    const std::string& kind = SessionDef.TargetDBName;
    if (kind == "MySQL") return Find(kMySql, written.word);
    return kind == "MSSQL" ? Find(kMsSql, written.word) : Find(kOracle, written.word);
}

std::uint8_t Digit(std::int64_t number) {
    return static_cast<std::uint8_t>(std::clamp<std::int64_t>(number, 0, 254));
}

}  // namespace

std::optional<TableColumn> ServerColumn(const ColumnEntry& column, bool fromSource) {
    const Written written = WrittenType(column, fromSource);
    const ServerType* type = TypeOf(written);
    if (type == nullptr) return std::nullopt;
    TableColumn made;
    made.typeName = written.shown;
    made.info.name = fromSource ? column.SCName : column.DCName;
    made.info.type = type->type;
    made.info.definedSize = type->capacity;
    made.info.precision = type->precision;
    const bool digits = type->size == Size::Digits || type->size == Size::Open;
    if (type->size == Size::Width && type->type != adLongVarChar)
        made.info.definedSize = written.numbers.empty() ? 1 : written.numbers[0];
    if (digits && !written.numbers.empty()) made.info.precision = Digit(written.numbers[0]);
    const bool isOpen = type->size == Size::Open && written.numbers.empty();
    if (made.info.precision != kNotStated && !isOpen)
        made.info.numericScale = written.numbers.size() > 1 ? Digit(written.numbers[1]) : std::uint8_t{0};
    if (isOpen) made.info.precision = kNotStated;
    return made;
}

std::string WhySizeIsRefused(const ColumnEntry& column, bool fromSource) {
    const Written written = WrittenType(column, fromSource);
    const ServerType* type = TypeOf(written);
    if (type == nullptr || type->size == Size::None) return "";
    const std::int64_t size = written.numbers.empty() ? 0 : written.numbers[0];
    const std::int64_t scale = written.numbers.size() > 1 ? written.numbers[1] : 0;
    const std::string most = std::to_string(type->capacity);
    const bool needsSize = SessionDef.TargetDBName != "MSSQL" && type->size == Size::Width &&
                           (type->type == adVarChar || type->type == adVarWChar || type->type == adVarBinary);
    if (needsSize && written.numbers.empty()) return "it needs a width";
    if (size > type->capacity) return "its size is " + std::to_string(size) + ", and " + most + " is the most";
    const bool isText = type->size == Size::Width;
    if (isText && !written.numbers.empty() && size < 1) return "its width is " + std::to_string(size);
    const bool scaleWithin = SessionDef.TargetDBName != "ORACLE";
    if (!isText && size > 0 && scale > size && scaleWithin)
        return "it has more decimal places (" + std::to_string(scale) + ") than digits (" + std::to_string(size) + ")";
    if (!isText && !written.numbers.empty() && size < 1 && SessionDef.TargetDBName == "ORACLE")
        return "its precision is " + std::to_string(size);
    return "";
}

}  // namespace varnel::admin
