#include "tests/support/MariaDbServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <mysql.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace varnel {
namespace {

constexpr auto kStartLimit = std::chrono::seconds(60);
constexpr auto kRetryPause = std::chrono::milliseconds(20);

struct CloseConnection {
    void operator()(MYSQL* handle) const noexcept { mysql_close(handle); }
};
using Connection = std::unique_ptr<MYSQL, CloseConnection>;

std::string FindProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(std::string(path != nullptr ? path : "") + ":/usr/sbin:/usr/bin");
    for (std::string file; std::getline(folders, file, ':');) {
        file.append("/").append(name);
        if (file[0] == '/' && access(file.c_str(), X_OK) == 0) return file;
    }
    throw std::runtime_error("The program " + name +
                             " is missing: install the packages mariadb-server-core and mariadb-client-core.");
}

/// A port that nobody listens on at this moment.
int FreePort() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = bind(descriptor, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(descriptor);
    if (!bound) throw std::runtime_error("No free port on the loopback address.");
    return ntohs(address.sin_port);
}

/// Starts a program that dies with this process; its output goes to the file.
pid_t StartProgram(const std::vector<std::string>& words, const std::string& outputFile) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("No process could be started.");
    if (child > 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = open(outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (getppid() != parent || output < 0) _exit(126);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execv(arguments[0], arguments.data());
    _exit(127);
}

std::string Content(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::vector<std::string> WithUser(std::vector<std::string> words) {
    if (geteuid() == 0) words.emplace_back("--user=root");  // the server refuses the superuser otherwise
    return words;
}

Connection LogInAsRoot(const std::string& socket) {
    Connection handle(mysql_init(nullptr));
    mysql_options(handle.get(), MYSQL_SET_CHARSET_NAME, "utf8mb4");
    if (mysql_real_connect(handle.get(), "localhost", "root", "", nullptr, 0, socket.c_str(), 0) == nullptr) return {};
    return handle;
}

void RunOn(MYSQL* handle, const std::string& statement) {
    if (handle == nullptr) throw std::runtime_error("The test server takes no log-in.");
    if (mysql_real_query(handle, statement.data(), statement.size()) != 0)
        throw std::runtime_error(mysql_error(handle));
    mysql_free_result(mysql_store_result(handle));
}

}  // namespace

/// The members stand before anything can fail, so that the destructor tidies up after a server that does not start.
MariaDbServer::MariaDbServer(std::vector<std::string> extraFlags, EmptyFolder folder)
    : folder_(std::move(folder.path)), extraFlags_(std::move(extraFlags)) {}

MariaDbServer::EmptyFolder MariaDbServer::MakeFolder() {
    FindProgram("mariadbd");                                                                // before anything is made
    std::string pattern = (std::filesystem::temp_directory_path() / "vdbXXXXXX").string();  // a socket's path is short
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("No temporary folder could be made.");
    return {pattern};
}

MariaDbServer::MariaDbServer(std::vector<std::string> extraFlags) : MariaDbServer(std::move(extraFlags), MakeFolder()) {
    Install();
    port_ = FreePort();
    Start();
    const std::string password = "IDENTIFIED BY 'pa55 w''ord'";
    Run({"CREATE DATABASE shop", std::string("CREATE USER loader@localhost ") + password,
         std::string("CREATE USER loader@'127.0.0.1' ") + password, "GRANT ALL ON *.* TO loader@localhost",
         "GRANT ALL ON *.* TO loader@'127.0.0.1'"});
}

MariaDbServer::~MariaDbServer() {
    End(SIGKILL);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void MariaDbServer::Install() const {
    const std::string log = folder_ + "/install.log";
    const pid_t installer =
        StartProgram(WithUser({FindProgram("mariadb-install-db"), "--no-defaults", "--datadir=" + folder_ + "/data",
                               "--auth-root-authentication-method=normal", "--force", "--skip-test-db",
                               "--innodb-log-file-size=8M"}),
                     log);
    int status = 0;
    waitpid(installer, &status, 0);
    if (status != 0) throw std::runtime_error("The test server could not be installed:\n" + Content(log));
}

void MariaDbServer::Start() {
    std::vector<std::string> words =
        WithUser({FindProgram("mariadbd"), "--no-defaults", "--datadir=" + folder_ + "/data", "--socket=" + Socket(),
                  "--pid-file=" + folder_ + "/pid", "--port=" + std::to_string(port_), "--bind-address=127.0.0.1",
                  "--skip-name-resolve", "--lower-case-table-names=0", "--innodb-log-file-size=8M",
                  "--innodb-buffer-pool-size=16M", "--innodb-flush-log-at-trx-commit=0", "--innodb-flush-method=nosync",
                  "--innodb-doublewrite=0", "--performance-schema=0", "--skip-log-bin",
                  "--character-set-server=utf8mb4", "--log-error=" + folder_ + "/err.log"});
    words.insert(words.end(), extraFlags_.begin(), extraFlags_.end());
    process_ = StartProgram(words, folder_ + "/out.log");
    WaitUntilReady();
}

void MariaDbServer::WaitUntilReady() {
    const auto limit = std::chrono::steady_clock::now() + kStartLimit;
    while (LogInAsRoot(Socket()) == nullptr) {
        const bool ended = waitpid(process_, nullptr, WNOHANG) == process_;
        if (ended) process_ = -1;
        if (ended || std::chrono::steady_clock::now() > limit)
            throw std::runtime_error("The test server did not start:\n" + Content(folder_ + "/err.log"));
        std::this_thread::sleep_for(kRetryPause);
    }
}

std::string MariaDbServer::ConnectionString(const std::string& database) const {
    return "Driver={MySQL ODBC 8.0 Unicode Driver};SERVER=127.0.0.1;PORT=" + std::to_string(port_) +
           ";DATABASE=" + database + ";UID=" + kUser + ";PWD=" + kPassword + ";OPTION=3";
}

void MariaDbServer::Run(const std::vector<std::string>& statements) const {
    const Connection handle = LogInAsRoot(Socket());
    for (const auto& statement : statements) RunOn(handle.get(), statement);
}

std::string MariaDbServer::Ask(const std::string& query) const {
    const Connection handle = LogInAsRoot(Socket());
    if (!handle || mysql_real_query(handle.get(), query.data(), query.size()) != 0)
        throw std::runtime_error(handle ? mysql_error(handle.get()) : "The test server takes no log-in.");
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> rows(mysql_store_result(handle.get()),
                                                                        &mysql_free_result);
    const MYSQL_ROW row = rows ? mysql_fetch_row(rows.get()) : nullptr;
    if (row == nullptr) return "";
    return row[0] == nullptr ? "NULL" : std::string(row[0], mysql_fetch_lengths(rows.get())[0]);
}

void MariaDbServer::Stop() {
    End(SIGTERM);
}

void MariaDbServer::Kill() {
    End(SIGKILL);
}

void MariaDbServer::End(int signal) {
    if (process_ < 0) return;
    kill(process_, signal);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

}  // namespace varnel
