#include "tests/support/HsqlServer.h"

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/support/ServerProcess.h"

namespace varnel {

namespace {

constexpr const char* kJar = "/usr/share/java/hsqldb.jar";

std::string Content(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

}  // namespace

std::string HsqlServer::Missing() {
    if (FindProgram("java").empty()) return "there is no Java";
    if (!std::filesystem::exists(kJar)) return std::string("there is no ") + kJar + " (libhsqldb-java)";
    const bool driver = Content("/etc/odbcinst.ini").find("[PostgreSQL Unicode]") != std::string::npos;
    return driver ? "" : "PostgreSQL's ODBC driver is not registered (odbc-postgresql)";
}

HsqlServer::HsqlServer() : port_(FreePort()) {
    const std::string database = std::string("mem:ora;user=test;password=") + kPassword + ";sql.syntax_ora=true";
    const std::string output = folder_.File("out.txt");
    process_ = StartProgram({FindProgram("java"), "-cp", kJar, "org.hsqldb.server.Server", "--database.0", database,
                             "--dbname.0", "ora", "--address", "127.0.0.1", "--port", std::to_string(port_)},
                            output);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (Content(output).find("is online") == std::string::npos) {
        if (std::chrono::steady_clock::now() > limit || waitpid(process_, nullptr, WNOHANG) == process_)
            throw std::runtime_error("HSQLDB did not start:\n" + Content(output));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

HsqlServer::~HsqlServer() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::string HsqlServer::ConnectionString() const {
    return "Driver={PostgreSQL Unicode};Servername=127.0.0.1;Port=" + std::to_string(port_) +
           ";Database=ora;UID=test;PWD=" + kPassword;
}

}  // namespace varnel
