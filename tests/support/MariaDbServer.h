// A MariaDB server of a test's own: installed into a private folder, on a free port of the loopback address and on a
// Unix socket, with log-ins required. It ends with the object, and with the test program if that dies.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace varnel {

class MariaDbServer {
public:
    static constexpr const char* kUser = "loader";
    static constexpr const char* kPassword = "pa55 w'ord";

    /// extraFlags: further options of the server, "--max-allowed-packet=16K" say. Returns when log-ins work.
    /// Throws std::runtime_error saying what is missing when the server cannot be found or does not start.
    explicit MariaDbServer(std::vector<std::string> extraFlags = {});
    ~MariaDbServer();
    MariaDbServer(const MariaDbServer&) = delete;
    MariaDbServer& operator=(const MariaDbServer&) = delete;

    int Port() const { return port_; }
    std::string Socket() const { return folder_ + "/s.sock"; }
    /// As a Windows user stored it: Driver={MySQL ODBC 8.0 Unicode Driver};SERVER=127.0.0.1;PORT=…
    std::string ConnectionString(const std::string& database = "shop") const;
    /// Runs statements as the server's root, one after the other. Throws std::runtime_error with the server's words.
    void Run(const std::vector<std::string>& statements) const;
    /// The first column of the first row as text ("NULL" for Null, "" without a row), asked as root.
    std::string Ask(const std::string& query) const;

    /// Ends the server in good order.
    void Stop();
    /// Ends it without warning, as a power cut would.
    void Kill();
    /// Starts it again on the same data and port, after Stop or Kill.
    void Start();
    void Restart() { Stop(), Start(); }

private:
    struct EmptyFolder {
        std::string path;
    };
    MariaDbServer(std::vector<std::string> extraFlags, EmptyFolder folder);
    static EmptyFolder MakeFolder();
    void Install() const;
    void WaitUntilReady();
    void End(int signal);

    std::string folder_;
    std::vector<std::string> extraFlags_;
    int port_ = 0;
    pid_t process_ = -1;
};

}  // namespace varnel
