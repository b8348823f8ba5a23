// Data source names of a test's own, for drivers that are registered on the machine.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/support/MariaDbServer.h"
#include "tests/support/TempFolder.h"

namespace varnel {

/// The driver manager of this process knows the names as long as the object lives.
class OdbcNames {
public:
    OdbcNames() { setenv("ODBCINI", File().c_str(), 1); }
    ~OdbcNames() { unsetenv("ODBCINI"); }
    OdbcNames(const OdbcNames&) = delete;
    OdbcNames& operator=(const OdbcNames&) = delete;

    std::string File() const { return folder_.Path() + "/odbc.ini"; }

    /// A MariaDB server's database under name; sqlMode: "ORACLE" say, strict in any case.
    void AddMariaDb(const std::string& name, const MariaDbServer& server, const std::string& database,
                    const std::string& sqlMode) {
        std::ofstream(File(), std::ios::app)
            << "[" << name << "]\nDriver=MariaDB Unicode\nSERVER=127.0.0.1\nPORT=" << server.Port()
            << "\nDATABASE=" << database << "\nINITSTMT=set sql_mode='" << sqlMode << ",STRICT_TRANS_TABLES'\n\n";
    }

private:
    TempFolder folder_;
};

}  // namespace varnel
