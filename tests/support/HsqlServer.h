// An HSQLDB server in memory, in Oracle's dialect: a second opinion on how Oracle reads names. It speaks PostgreSQL's
// protocol, so PostgreSQL's ODBC driver reaches it. It is no part of what a machine needs for the tests.
#pragma once

#include <sys/types.h>

#include <string>

#include "tests/support/TempFolder.h"

namespace varnel {

class HsqlServer {
public:
    static constexpr const char* kPassword = "hsql s3cret";

    /// What of Java, the server and the driver is not on this machine; "" when all of it is.
    static std::string Missing();
    /// Returns when the server listens. Throws std::runtime_error.
    HsqlServer();
    ~HsqlServer();
    HsqlServer(const HsqlServer&) = delete;
    HsqlServer& operator=(const HsqlServer&) = delete;

    std::string ConnectionString() const;

private:
    TempFolder folder_;
    int port_ = 0;
    pid_t process_ = -1;
};

}  // namespace varnel
