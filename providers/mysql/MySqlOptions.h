// What a connection string says about a MySQL or MariaDB server, in the words of any driver's Windows users.
#pragma once

#include <string>

#include "ado/types/ConnectionString.h"

namespace varnel::mysql {

struct MySqlOptions {
    std::string host = "127.0.0.1";  ///< "localhost" is this address too: a name in a stored string means the network
    unsigned port = 3306;
    std::string socket;  ///< path of the server's Unix socket, instead of host and port
    std::string database, user, password;
    std::string characterSet;   ///< as written; texts travel as utf8mb4 whatever it says, but the name must exist
    std::string initStatement;  ///< run once after each log-in
    unsigned connectSeconds = 30;
    bool compress = false;
    bool noBigInt = false;           ///< BIGINT columns are reported as adInteger
    bool zeroDateToMinimum = false;  ///< dates of zeros become the first date there is, instead of Null
    std::string tlsCa, tlsCaFolder, tlsCertificate, tlsKey, tlsCipher, tlsVersion;
    bool tlsRequired = false;
    bool tlsVerify = false;  ///< the server's certificate and name are checked

    /// The server and database for an error's place: "shop on 127.0.0.1:3306".
    std::string Place() const;
};

/// True when the string names a MySQL or MariaDB driver: Driver= (alone or under Provider=MSDASQL, also inside Extended
/// Properties) with a driver name that begins with MySQL or MariaDB or a driver file (libmaodbc.so, a path to it), or
/// Provider=MySQLProv.
bool NamesMySql(const ConnectionString& text);

/// Unknown keys are ignored, of a repeated key the last counts, Extended Properties count over what stands outside.
/// Throws Error{Syntax} for a port, time-out or SSL mode that cannot be read; the text repeats no password.
MySqlOptions ReadMySqlOptions(const ConnectionString& text);

}  // namespace varnel::mysql
