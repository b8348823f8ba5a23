// A stand-in for SQL Server: enough of its protocol that the real FreeTDS driver runs in tests, over SQLite. What it
// answers says nothing about SQL Server itself: not its parser, its implicit conversions, its texts or its collations.
#pragma once

#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/support/tds/TdsSession.h"

namespace varnel {

class TdsServer {
public:
    static constexpr const char* kUser = "sa";
    static constexpr const char* kPassword = "s3cret w;rd";

    TdsServer();
    ~TdsServer();
    TdsServer(const TdsServer&) = delete;
    TdsServer& operator=(const TdsServer&) = delete;

    int Port() const { return port_; }
    /// As a Windows user stored it: Provider=SQLOLEDB;Data Source=127.0.0.1,port;…
    std::string ConnectionString() const;
    /// The file that holds the tables, a SQLite database whose tables the schema dbo is.
    const std::string& File() const { return options_.file; }
    /// Ends every log-in at once, as a crash would; new ones are welcome.
    void DropLogIns();
    /// The same when so many rows were read or written, counted from now. forGood: new log-ins are not welcome then.
    void CrashAfter(int rows, bool forGood);
    /// Welcomes log-ins again.
    void Revive() { options_.down = false; }

private:
    void Listen();

    TempFolder folder_;
    tds::TdsOptions options_;
    int listener_ = -1;
    int port_ = 0;
    std::mutex mutex_;
    std::set<int> sockets_;
    std::vector<std::thread> sessions_;
    std::thread listening_;
};

}  // namespace varnel
