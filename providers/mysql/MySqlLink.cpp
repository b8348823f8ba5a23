#include "providers/mysql/MySqlLink.h"

#include <errmsg.h>
#include <mysqld_error.h>

#include <algorithm>
#include <charconv>
#include <new>
#include <utility>

namespace varnel::mysql {
namespace {

/// One round trip after the log-in. A slow target must never make the server give up a source's stream, every row
/// stands for itself, and the log-in's own sql_mode stays with the server under a name.
constexpr std::string_view kSessionSettings =
    "SET NAMES utf8mb4, @@SESSION.autocommit = 1, @@SESSION.net_write_timeout = 2000000,"
    " @@SESSION.net_read_timeout = 2000000, @@SESSION.wait_timeout = 2000000,"
    " @varnel_log_in_mode = @@SESSION.sql_mode";
constexpr std::string_view kLogInMode = "SET @@SESSION.sql_mode = @varnel_log_in_mode";
constexpr std::string_view kWritingMode =
    "SET @@SESSION.sql_mode = CONCAT_WS(',', NULLIF(@varnel_log_in_mode, ''),"
    " 'NO_BACKSLASH_ESCAPES', 'STRICT_ALL_TABLES', 'STRICT_TRANS_TABLES')";

/// Codes of the client library and of the server after which the connection is gone.
constexpr unsigned kLostLinkCodes[] = {CR_CONNECTION_ERROR,      CR_CONN_HOST_ERROR,      CR_SERVER_GONE_ERROR,
                                       CR_SERVER_LOST,           CR_SERVER_LOST_EXTENDED, ER_SERVER_SHUTDOWN,
                                       ER_NET_PACKET_TOO_LARGE,  ER_ABORTING_CONNECTION,  ER_NEW_ABORTING_CONNECTION,
                                       ER_NET_READ_ERROR,        ER_NET_READ_INTERRUPTED, ER_NET_ERROR_ON_WRITE,
                                       ER_NET_WRITE_INTERRUPTED, ER_CONNECTION_KILLED};

constexpr unsigned long kLargestPacket = 1UL << 30;

/// The client library, initialised by the first log-in and ended with the last one or the program.
std::shared_ptr<const void> ClientLibrary() {
    struct Library {
        Library() { mysql_server_init(0, nullptr, nullptr); }
        ~Library() { mysql_server_end(); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };
    static const auto library = std::make_shared<const Library>();
    return library;
}

bool IsLostLink(unsigned code) {
    return std::find(std::begin(kLostLinkCodes), std::end(kLostLinkCodes), code) != std::end(kLostLinkCodes);
}

ErrorKind KindOfCode(unsigned code) {
    if (IsLostLink(code)) return ErrorKind::Connection;
    return code == ER_PARSE_ERROR ? ErrorKind::Syntax : ErrorKind::Constraint;
}

const char* TextOrNull(const std::string& text) {
    return text.empty() ? nullptr : text.c_str();
}

/// text without the password, should a server repeat it.
std::string WithoutPassword(std::string text, const std::string& password) {
    if (password.size() < 4) return text;
    for (auto at = text.find(password); at != std::string::npos; at = text.find(password, at))
        text.replace(at, password.size(), "***");
    return text;
}

}  // namespace

MySqlLink::MySqlLink(const MySqlOptions& options)
    : options_(options), library_(ClientLibrary()), handle_(mysql_init(nullptr)) {
    if (!handle_) throw std::bad_alloc();
    const std::string& name = options_.characterSet;
    if (!name.empty() && mariadb_get_charset_by_name(AsciiLower(name).c_str()) == nullptr)
        throw Error(ErrorKind::Syntax, options_.Place(),
                    "Unknown character set '" + name + "' in the connection string.");
    ApplyOptions();
    LogIn();
}

void MySqlLink::ApplyOptions() {
    const auto set = [this](mysql_option option, const std::string& text) {
        if (!text.empty()) mysql_options(handle_.get(), option, text.c_str());
    };
    const unsigned noLocalFiles = 0;
    const unsigned long largestPacket = kLargestPacket;
    const my_bool yes = 1;
    mysql_options(handle_.get(), MYSQL_SET_CHARSET_NAME, "utf8mb4");
    mysql_options(handle_.get(), MYSQL_OPT_LOCAL_INFILE, &noLocalFiles);
    mysql_options(handle_.get(), MYSQL_OPT_MAX_ALLOWED_PACKET, &largestPacket);
    mysql_options(handle_.get(), MYSQL_REPORT_DATA_TRUNCATION, &yes);
    if (options_.connectSeconds > 0) mysql_options(handle_.get(), MYSQL_OPT_CONNECT_TIMEOUT, &options_.connectSeconds);
    if (options_.compress) mysql_options(handle_.get(), MYSQL_OPT_COMPRESS, nullptr);
    set(MYSQL_INIT_COMMAND, options_.initStatement);
    set(MYSQL_OPT_SSL_CA, options_.tlsCa);
    set(MYSQL_OPT_SSL_CAPATH, options_.tlsCaFolder);
    set(MYSQL_OPT_SSL_CERT, options_.tlsCertificate);
    set(MYSQL_OPT_SSL_KEY, options_.tlsKey);
    set(MYSQL_OPT_SSL_CIPHER, options_.tlsCipher);
    set(MARIADB_OPT_TLS_VERSION, options_.tlsVersion);
    if (options_.tlsRequired) mysql_options(handle_.get(), MYSQL_OPT_SSL_ENFORCE, &yes);
    if (options_.tlsVerify) mysql_options(handle_.get(), MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &yes);
}

void MySqlLink::LogIn() {
    const bool local = !options_.socket.empty();
    const MYSQL* connected =
        mysql_real_connect(handle_.get(), local ? "localhost" : options_.host.c_str(), TextOrNull(options_.user),
                           options_.password.c_str(), TextOrNull(options_.database), options_.port,
                           TextOrNull(options_.socket), CLIENT_MULTI_RESULTS);
    if (connected == nullptr) FailLogIn();
    if (options_.tlsRequired && mysql_get_ssl_cipher(handle_.get()) == nullptr)  // the library goes on in the clear
        throw Error(ErrorKind::Connection, options_.Place(),
                    "The connection string requires an encrypted connection, but the server does not offer one.");
    if (!TryRun(kSessionSettings)) FailLogIn();
}

MYSQL* MySqlLink::Ready() {
    if (!handle_) throw Error(ErrorKind::Connection, options_.Place(), "The connection to the server was ended.");
    if (streaming_)
        throw Error(ErrorKind::Misuse, options_.Place(),
                    "The rows of another query are still being read on this connection.");
    if (underWay_)
        throw Error(ErrorKind::Misuse, options_.Place(), "Another statement is still under way on this connection.");
    return handle_.get();
}

bool MySqlLink::Run(std::string_view statement) {
    MYSQL* handle = Ready();
    if (mysql_real_query(handle, statement.data(), statement.size()) != 0) Fail();
    return DropResults();
}

void MySqlLink::StartRun(std::string_view statement) {
    if (mysql_send_query(Ready(), statement.data(), statement.size()) != 0) Fail();
    underWay_ = true;
}

void MySqlLink::FinishRun() {
    if (!underWay_) return;
    underWay_ = false;
    if (mysql_read_query_result(handle_.get()) != 0) Fail();
    DropResults();
}

/// Reads whatever a statement returned; true when there were columns.
bool MySqlLink::DropResults() {
    MYSQL* handle = handle_.get();
    bool hadColumns = false;
    for (int more = 0; more == 0; more = mysql_next_result(handle)) {
        const ResultHandle rows(mysql_use_result(handle));
        hadColumns |= rows != nullptr;
        while (rows && mysql_fetch_row(rows.get()) != nullptr) {
        }
        if (mysql_errno(handle) != 0) Fail();
    }
    if (mysql_errno(handle) != 0) Fail();
    return hadColumns;
}

StatementHandle MySqlLink::Prepare(std::string_view statement) {
    StatementHandle prepared(mysql_stmt_init(Ready()));
    if (!prepared) throw std::bad_alloc();
    if (mysql_stmt_prepare(prepared.get(), statement.data(), statement.size()) != 0) Fail(prepared.get());
    return prepared;
}

bool MySqlLink::TryRun(std::string_view statement) noexcept {
    return handle_ && !streaming_ && !underWay_ && mysql_real_query(handle_.get(), statement.data(), statement.size()) == 0;
}

void MySqlLink::UseMode(SqlMode mode) {
    if (mode == mode_) return;
    Run(mode == SqlMode::Writing ? kWritingMode : kLogInMode);
    mode_ = mode;
}

std::uint64_t MySqlLink::PacketLimit() {
    if (packetLimit_ != 0) return packetLimit_;
    constexpr std::string_view question = "SELECT @@SESSION.max_allowed_packet";
    MYSQL* handle = Ready();
    if (mysql_real_query(handle, question.data(), question.size()) != 0) Fail();
    const ResultHandle rows(mysql_store_result(handle));
    const MYSQL_ROW row = rows ? mysql_fetch_row(rows.get()) : nullptr;
    if (row == nullptr || row[0] == nullptr) Fail();
    const std::string_view text(row[0]);
    std::from_chars(text.data(), text.data() + text.size(), packetLimit_);
    return packetLimit_;
}

bool MySqlLink::InTransaction() const {
    if (!handle_) return false;
    unsigned status = 0;
    mariadb_get_infov(handle_.get(), MARIADB_CONNECTION_SERVER_STATUS, &status);
    return (status & SERVER_STATUS_IN_TRANS) != 0 || (status & SERVER_STATUS_AUTOCOMMIT) == 0;
}

void MySqlLink::Discard(StatementHandle statement) {
    if (streaming_) discarded_.push_back(std::move(statement));
}

void MySqlLink::Drop() noexcept {
    handle_.reset();
}

bool MySqlLink::Reset() noexcept {
    if (!handle_ || streaming_ || underWay_ || altered_) return false;
    if (InTransaction() && !TryRun("ROLLBACK")) return false;
    if (mode_ == SqlMode::LogIn) return true;
    if (!TryRun(kLogInMode)) return false;
    mode_ = SqlMode::LogIn;
    return true;
}

bool MySqlLink::Alive() noexcept {
    return handle_ && !streaming_ && !underWay_ && mysql_ping(handle_.get()) == 0;
}

void MySqlLink::Fail() {
    FailWith(mysql_errno(handle_.get()), mysql_error(handle_.get()), false);
}

void MySqlLink::Fail(MYSQL_STMT* statement) {
    FailWith(mysql_stmt_errno(statement), mysql_stmt_error(statement), false);
}

void MySqlLink::FailStream(MYSQL_STMT* statement) {
    streaming_ = false;
    if (mysql_stmt_errno(statement) != 0) FailWith(mysql_stmt_errno(statement), mysql_stmt_error(statement), true);
    FailWith(mysql_errno(handle_.get()), mysql_error(handle_.get()), true);  // where the wire's own failures stand
}

void MySqlLink::FailLogIn() {
    throw Error(ErrorKind::Connection, options_.Place(),
                WithoutPassword(mysql_error(handle_.get()), options_.password));
}

void MySqlLink::FailWith(unsigned code, const char* text, bool drop) {
    const std::string words = *text != '\0' ? text : "The server gave no answer.";
    if (drop || IsLostLink(code)) Drop();
    throw Error(KindOfCode(code), options_.Place(), words);
}

}  // namespace varnel::mysql
