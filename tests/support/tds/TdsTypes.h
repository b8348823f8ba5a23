// The column types of SQL Server that the double knows: how they are declared, described and sent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tests/support/tds/TdsBytes.h"

namespace varnel::tds {

/// A value as the database under the double keeps it: numbers beyond 64 bits, moments and GUIDs as text.
struct Cell {
    enum class Kind : std::uint8_t { Null, Integer, Real, Text, Blob };
    Kind kind = Kind::Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string bytes;  ///< UTF-8 of a text, or a blob's bytes
};

struct SqlType {
    std::string word = "nvarchar";  ///< lower case
    unsigned size = 4000;           ///< characters or bytes; 0 without a limit
    unsigned precision = 18, scale = 0;
    std::string collation = {};  ///< of a text; the database's when empty
};

/// A collation as it is named, with the code page of narrow texts under it.
struct Collation {
    std::string_view name;
    std::string_view wire;  ///< the five bytes that describe it
    int codePage;
};
inline constexpr std::string_view kDatabaseCollation = "SQL_Latin1_General_CP1_CI_AS";
/// Null for a name that the double does not know. "" names the database's.
const Collation* FindCollation(std::string_view name);

struct SqlColumn {
    std::string name;
    SqlType type;
    bool nullable = true;
};

/// "varchar", "50" … as declared; nothing for a word that SQL Server does not know.
std::optional<SqlType> ReadType(std::string_view word, std::string_view arguments);
/// The declared type under SQLite, for how it keeps values.
std::string_view AffinityOf(const SqlType& type);
/// Why a value cannot be stored in a column: SQL Server's number, and 0 when it can.
int Misfit(const SqlType& type, const Cell& cell);

/// The TYPE_INFO of a result column.
void WriteTypeInfo(Writer& out, const SqlType& type);
bool IsText(const SqlType& type);
/// text, ntext and image name their table in the description and carry a pointer before each value.
bool HasTextPointer(const SqlType& type);
void WriteCell(Writer& out, const SqlType& type, const Cell& cell);

/// A parameter of a call: its TYPE_INFO and value.
Cell ReadParameter(Reader& in);

}  // namespace varnel::tds
