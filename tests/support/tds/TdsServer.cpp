#include "tests/support/tds/TdsServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace varnel {

TdsServer::TdsServer() : options_{kUser, kPassword, folder_.File("dbo.db")} {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (listener_ < 0 || bind(listener_, plain, size) != 0 || listen(listener_, 16) != 0 ||
        getsockname(listener_, plain, &size) != 0)
        throw std::runtime_error("the stand-in for SQL Server cannot listen");
    port_ = ntohs(address.sin_port);
    listening_ = std::thread([this] { Listen(); });
}

TdsServer::~TdsServer() {
    shutdown(listener_, SHUT_RDWR);
    listening_.join();
    DropLogIns();
    for (std::thread& session : sessions_) session.join();
    close(listener_);
}

void TdsServer::Listen() {
    for (int taken = accept(listener_, nullptr, nullptr); taken >= 0; taken = accept(listener_, nullptr, nullptr)) {
        if (options_.down) {
            close(taken);
            continue;
        }
        const int noDelay = 1;
        setsockopt(taken, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
        const std::lock_guard guard(mutex_);
        sockets_.insert(taken);
        sessions_.emplace_back([this, taken] {
            try {
                tds::TdsSession(taken, options_).Serve();
            } catch (const tds::Crash&) {
                DropLogIns();
            } catch (const std::exception&) {
                // a message that the double does not understand, or a client that is gone: the log-in ends
            }
            const std::lock_guard ending(mutex_);
            sockets_.erase(taken);
            close(taken);
        });
    }
}

void TdsServer::DropLogIns() {
    const std::lock_guard guard(mutex_);
    for (const int open : sockets_) shutdown(open, SHUT_RDWR);
}

void TdsServer::CrashAfter(int rows, bool forGood) {
    options_.staysDown = forGood;
    options_.rowsUntilCrash = rows;
}

std::string TdsServer::ConnectionString() const {
    return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(port_) +
           ";Initial Catalog=shop;User ID=" + kUser + ";Password=\"" + kPassword + "\"";
}

}  // namespace varnel
