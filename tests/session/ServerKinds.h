// The servers of a test program, started when they are first asked for, under the names of the kinds that they play.
#pragma once

#include <memory>
#include <string>

#include "tests/session/NativeTables.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/OdbcNames.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {

/// A server's part in a session. Tables lie in the database or schema owner.
struct ServerKind {
    const char *name, *kind, *owner;
};
inline constexpr ServerKind kMySql{"MySql", "MySQL", "shop"};
/// MariaDB in Oracle's dialect, through ODBC.
inline constexpr ServerKind kOracle{"Oracle", "ORACLE", "shop"};
/// The stand-in behind the real FreeTDS driver.
inline constexpr ServerKind kSqlServer{"SqlServer", "MSSQL", "dbo"};
/// MariaDB in SQL Server's dialect, through ODBC: its brackets are real, four type words are missing.
inline constexpr ServerKind kSqlServerDialect{"SqlServerDialect", "MSSQL", "dbo"};

MariaDbServer& MariaDb();
TdsServer& SqlServer();
/// Data source names: "oracle" and "sqlserver" are the MariaDB server in two dialects; a test may add its own.
OdbcNames& SourceNames();
/// What a session stores to log in to the server.
std::string ConnectionTo(const ServerKind& server);
/// Its tables, past the data layer. Statements run in the server's own dialect; the stand-in takes no Insert.
std::unique_ptr<NativeDatabase> OpenNative(const ServerKind& server);

}  // namespace varnel
