// The names by which statements call text files.
//   orders.csv  orders#csv  [orders.csv]  sub\orders.csv
//   C:\data\orders.csv  [C:\data\].[orders.csv]  [Text;DATABASE=C:\data;HDR=No].[orders.csv]
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::text {

/// What a table name consists of.
struct TableName {
    std::string folder;    ///< stored path; "" when the name gives none
    bool isWhole = false;  ///< folder is a full path, else it lies within the database's folder
    std::string options;   ///< "Text;HDR=No;..." when the name brings its own
    std::string file;      ///< as written: "#" may stand for "."
};

/// Throws Error{Syntax} when a relative folder leads out of the database's folder.
TableName ReadTableName(std::string_view name);

/// The name in folder of the ordinary file that written means: first as it stands, then with the last "#" as ".",
/// then with every "#" as "."; then the same three without regard to case. Nothing when there is no such file.
std::optional<std::string> FindTableFile(std::string_view storedFolder, std::string_view written);

/// A folder's stored path and a name in it, with the separator that the folder uses.
std::string JoinedPath(std::string_view storedFolder, std::string_view name);

/// "The Jet database engine cannot find the input table or query 'orders.csv'."
[[noreturn]] void ThrowNoTable(std::string_view name);

}  // namespace varnel::text
