#include "providers/access/DdlTypes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kFixedFlags = 0x03, kVariableFlags = 0x02, kCompressText = 0x01;
constexpr int kLongestText = 255, kLongestBinary = 510, kHighestPrecision = 28, kUsualPrecision = 18;
constexpr std::uint16_t kNumericBytes = 17;

using enum ColumnType;

struct TypeWord {
    std::string_view word;
    ColumnType type;
    bool autonumber = false;
    bool memoWithoutLength = false;  ///< as through OLE DB
};

constexpr TypeWord kTypeWords[] = {
    {"ALPHANUMERIC", Text},
    {"AUTOINCREMENT", Long, true},
    {"BINARY", Binary},
    {"BIT", Boolean},
    {"BOOLEAN", Boolean},
    {"BYTE", Byte},
    {"CHAR", Text},
    {"CHARACTER", Text},
    {"COUNTER", Long, true},
    {"CURRENCY", Currency},
    {"DATE", Date},
    {"DATETIME", Date},
    {"DEC", Numeric},
    {"DECIMAL", Numeric},
    {"DOUBLE", Double},
    {"FLOAT", Double},
    {"FLOAT4", Single},
    {"FLOAT8", Double},
    {"GENERAL", Ole},
    {"GUID", Guid},
    {"IDENTITY", Long, true},
    {"IEEEDOUBLE", Double},
    {"IEEESINGLE", Single},
    {"IMAGE", Ole},
    {"INT", Long},
    {"INTEGER", Long},
    {"INTEGER1", Byte},
    {"INTEGER2", Integer},
    {"INTEGER4", Long},
    {"LOGICAL", Boolean},
    {"LOGICAL1", Boolean},
    {"LONG", Long},
    {"LONGBINARY", Ole},
    {"LONGCHAR", Memo},
    {"LONGTEXT", Memo},
    {"MEMO", Memo},
    {"MONEY", Currency},
    {"NCHAR", Text},
    {"NOTE", Memo},
    {"NTEXT", Text, false, true},
    {"NUMBER", Double},
    {"NUMERIC", Numeric},
    {"NVARCHAR", Text},
    {"OLEOBJECT", Ole},
    {"REAL", Single},
    {"SHORT", Integer},
    {"SINGLE", Single},
    {"SMALLINT", Integer},
    {"STRING", Text},
    {"TEXT", Text, false, true},
    {"TIME", Date},
    {"TIMESTAMP", Date},
    {"TINYINT", Byte},
    {"UNIQUEIDENTIFIER", Guid},
    {"VARBINARY", Binary},
    {"VARCHAR", Text},
    {"YESNO", Boolean},
};

struct FixedSize {
    ColumnType type;
    std::uint16_t bytes;
};
constexpr FixedSize kFixedSizes[] = {{Boolean, 1}, {Byte, 1},   {Integer, 2}, {Long, 4},  {Currency, 8},
                                     {Single, 4},  {Double, 8}, {Date, 8},    {Guid, 16}, {Numeric, kNumericBytes}};

int Argument(const ColumnDefinition& definition, std::size_t k, int least, int most, int usual) {
    if (k >= definition.typeArguments.size()) return usual;
    const int given = definition.typeArguments[k];
    if (given >= least && given <= most) return given;
    throw Error(ErrorKind::Constraint, definition.name,
                "Size of field '" + definition.name + "' is wrong: " + definition.typeWord + " takes " +
                    std::to_string(least) + " to " + std::to_string(most) + ", not " + std::to_string(given) + ".");
}

const TypeWord& NeedTypeWord(const ColumnDefinition& definition) {
    const auto* found = std::find_if(std::begin(kTypeWords), std::end(kTypeWords),
                                     [&](const TypeWord& known) { return known.word == definition.typeWord; });
    if (found != std::end(kTypeWords)) return *found;
    if (definition.typeWord.empty())
        throw Error(ErrorKind::Syntax, definition.name,
                    "Syntax error in field definition: '" + definition.name + "' has no type.");
    throw Error(ErrorKind::Syntax, definition.name,
                "Syntax error in field definition: '" + definition.typeWord + "' is no type of an Access column ('" +
                    definition.name + "').");
}

}  // namespace

Column ColumnFromDefinition(const ColumnDefinition& definition) {
    const TypeWord& word = NeedTypeWord(definition);
    Column column;
    column.name = definition.name;
    column.type = word.type;
    if (word.memoWithoutLength && definition.typeArguments.empty()) column.type = Memo;
    column.flags = kVariableFlags;
    for (const FixedSize& fixed : kFixedSizes) {
        if (fixed.type != column.type) continue;
        column.flags = kFixedFlags;
        column.length = fixed.bytes;
    }
    if (word.autonumber) column.flags |= kAutonumberColumn;
    if (column.type == Text) {
        column.length = static_cast<std::uint16_t>(2 * Argument(definition, 0, 1, kLongestText, kLongestText));
        column.moreFlags = kCompressText;
    } else if (column.type == Binary) {
        column.length = static_cast<std::uint16_t>(Argument(definition, 0, 1, kLongestBinary, kLongestBinary));
    } else if (column.type == Numeric) {
        column.precision = static_cast<std::uint8_t>(Argument(definition, 0, 1, kHighestPrecision, kUsualPrecision));
        column.scale = static_cast<std::uint8_t>(Argument(definition, 1, 0, column.precision, 0));
    }
    return column;
}

std::uint16_t FixedAreaBytes(const Column& column) {
    return column.IsFixed() && column.type != Boolean ? column.length : std::uint16_t{0};
}

}  // namespace varnel::access
