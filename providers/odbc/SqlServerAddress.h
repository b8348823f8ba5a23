// The many ways in which Windows users wrote the address of a SQL Server.
#pragma once

#include <string>
#include <string_view>

namespace varnel::odbc {

struct SqlServerAddress {
    std::string host;      ///< a name that can be looked up; "localhost" for the local forms
    std::string instance;  ///< "" for the default one, and when a port is given, which wins
    std::string port;      ///< digits; "" when neither address nor keyword states one
    bool operator==(const SqlServerAddress&) const = default;
};

/// address: "host", "host,port", "host\instance", "tcp:host,port", "np:\\host\pipe\…", ".", "(local)" and the like.
/// portKeyword: what a Port keyword says. Throws Error{NotSupported} for "(localdb)\…", Error{Syntax} for a port that
/// is none.
SqlServerAddress ReadSqlServerAddress(std::string_view address, std::string_view portKeyword);

}  // namespace varnel::odbc
