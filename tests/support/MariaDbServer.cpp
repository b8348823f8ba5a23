#include "tests/support/MariaDbServer.h"

#include <mysql.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/support/ServerProcess.h"

namespace varnel {
namespace {

constexpr auto kStartLimit = std::chrono::seconds(60);
constexpr auto kRetryPause = std::chrono::milliseconds(20);

struct CloseConnection {
    void operator()(MYSQL* handle) const noexcept { mysql_close(handle); }
};
using Connection = std::unique_ptr<MYSQL, CloseConnection>;

std::string Needed(const std::string& program) {
    std::string path = FindProgram(program);
    if (path.empty())
        throw std::runtime_error("The program " + program +
                                 " is missing: install the packages mariadb-server-core and mariadb-client-core.");
    return path;
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
    Needed("mariadbd");                                                                     // before anything is made
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
        StartProgram(WithUser({Needed("mariadb-install-db"), "--no-defaults", "--datadir=" + folder_ + "/data",
                               "--auth-root-authentication-method=normal", "--force", "--skip-test-db",
                               "--innodb-log-file-size=8M"}),
                     log);
    int status = 0;
    waitpid(installer, &status, 0);
    if (status != 0) throw std::runtime_error("The test server could not be installed:\n" + Content(log));
}

void MariaDbServer::Start() {
    std::vector<std::string> words =
        WithUser({Needed("mariadbd"), "--no-defaults", "--datadir=" + folder_ + "/data", "--socket=" + Socket(),
                  "--pid-file=" + folder_ + "/pid", "--port=" + std::to_string(port_), "--bind-address=127.0.0.1",
                  "--skip-name-resolve", "--lower-case-table-names=0", "--innodb-log-file-size=8M",
                  "--innodb-buffer-pool-size=16M", "--innodb-flush-log-at-trx-commit=0", "--innodb-flush-method=nosync",
                  "--performance-schema=0", "--skip-log-bin",
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
