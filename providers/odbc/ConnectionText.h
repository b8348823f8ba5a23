// What a stored connection string becomes for unixODBC. Old strings name OLE DB providers and Windows drivers that do
// not exist here; which driver stands in for them, and under which keywords it is told what, is one table.
#pragma once

#include <span>
#include <string>

#include "ado/types/ConnectionString.h"

namespace varnel::odbc {

/// Whose types and messages a connection has.
enum class Family : std::uint8_t { SqlServer, Oracle, Other };

struct ConnectionText {
    std::string text;   ///< for SQLDriverConnect
    std::string place;  ///< server and database, for error texts; no user, no password
    Family family = Family::Other;
    bool nativeProvider = false;  ///< the stored string named an OLE DB provider: types and messages come as from it
    unsigned loginSeconds = 30;
};

/// True for what is unixODBC's to open: SQL Server and Oracle providers, MSDASQL, DSN, FILEDSN and any Driver.
bool NamesOdbc(const ConnectionString& stored);

/// drivers: the names registered on this machine (odbcinst -q -d). Throws Error{Connection} with the remedy when the
/// string needs a driver that is not there, Error{NotSupported} for what cannot exist on Linux, Error{Syntax}.
ConnectionText TranslateConnection(const ConnectionString& stored, std::span<const std::string> drivers);

}  // namespace varnel::odbc
