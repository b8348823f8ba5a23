#include "providers/odbc/OdbcLink.h"

#include <array>
#include <cstring>
#include <vector>

namespace varnel::odbc {
namespace {

[[noreturn]] void FailManager() {
    throw Error(ErrorKind::Connection, "unixODBC", "The ODBC driver manager could not be started.");
}

/// The process's one environment; it lives as long as the process, since drivers do not bear its end well.
SQLHENV Environment() {
    static const SQLHENV kEnvironment = [] {
        SQLHENV made = nullptr;
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &made))) FailManager();
        SQLSetEnvAttr(made, SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0);
        return made;
    }();
    return kEnvironment;
}

std::vector<std::string> RegisteredDrivers() {
    std::vector<std::string> names;
    std::array<SQLCHAR, 512> name{}, attributes{};
    SQLSMALLINT nameLength = 0, attributesLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(SQLDrivers(Environment(), direction, name.data(), name.size(), &nameLength, attributes.data(),
                                    attributes.size(), &attributesLength))) {
        names.emplace_back(reinterpret_cast<const char*>(name.data()));
        direction = SQL_FETCH_NEXT;
    }
    return names;
}

/// What the driver manager leaves out when it does not find what the connection string names.
std::string_view Remedy(const Diagnosis& diagnosis) {
    if (diagnosis.text.find("Can't open lib") != std::string::npos)
        return "\r\nThis ODBC driver is not installed here, or is registered under another name; 'odbcinst -q -d' "
               "lists "
               "the drivers that are registered.";
    if (diagnosis.state == "IM002")
        return "\r\nThe connection string names neither a driver nor a data source of this machine; 'odbcinst -q -s' "
               "lists the data source names, 'odbcinst -q -d' the drivers.";
    return "";
}

SQLCHAR* Characters(const std::string& text) {
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));  // the callee only reads it
}

}  // namespace

OdbcLink::OdbcLink(const ConnectionString& stored)
    : stored_(stored), text_(TranslateConnection(stored, RegisteredDrivers())) {
    LogIn();
}

OdbcLink::~OdbcLink() {
    if (loggedIn_) SQLDisconnect(connection_.Get());
}

void OdbcLink::LogIn() {
    SQLHDBC made = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, Environment(), &made))) FailManager();
    connection_ = ConnectionHandle(made);
    SQLSetConnectAttr(made, SQL_ATTR_LOGIN_TIMEOUT, AsPointer(text_.loginSeconds), 0);
    const SQLRETURN outcome =
        SQLDriverConnect(made, nullptr, Characters(text_.text), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(outcome)) FailWith(SQL_HANDLE_DBC, made);
    loggedIn_ = true;
    SQLUSMALLINT concurrent = 0;
    SQLGetInfo(made, SQL_MAX_CONCURRENT_ACTIVITIES, &concurrent, sizeof concurrent, nullptr);
    oneResultOnly_ = concurrent == 1 || text_.family == Family::SqlServer;
    std::array<SQLCHAR, 256> driver{};
    SQLSMALLINT length = 0;
    SQLGetInfo(made, SQL_DRIVER_NAME, driver.data(), driver.size(), &length);
    keepsMoments_ = std::strstr(reinterpret_cast<const char*>(driver.data()), "libmaodbc") != nullptr;
}

SQLHDBC OdbcLink::Ready() {
    if (down_) throw Error(ErrorKind::Connection, text_.place, "The connection to the server was lost.");
    if (streaming_ && oneResultOnly_)
        throw Error(ErrorKind::Misuse, text_.place,
                    "The rows of another query are still being read on this connection.");
    return connection_.Get();
}

StatementHandle OdbcLink::NewStatement() {
    SQLHSTMT made = nullptr;
    SQLHDBC connection = Ready();
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &made))) FailWith(SQL_HANDLE_DBC, connection);
    return StatementHandle(made);
}

bool OdbcLink::Run(const std::string& statement) {
    const StatementHandle handle = NewStatement();
    Check(SQLExecDirect(handle.Get(), Characters(statement), static_cast<SQLINTEGER>(statement.size())), handle);
    SQLSMALLINT columns = 0;
    SQLNumResultCols(handle.Get(), &columns);
    SQLRETURN outcome = SQL_SUCCESS;
    while ((outcome = SQLMoreResults(handle.Get())) != SQL_NO_DATA) Check(outcome, handle);
    return columns > 0;
}

bool OdbcLink::Alive() noexcept {
    if (down_) return false;
    SQLUINTEGER dead = SQL_CD_FALSE;
    const SQLRETURN outcome =
        SQLGetConnectAttr(connection_.Get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
    return !SQL_SUCCEEDED(outcome) || dead == SQL_CD_FALSE;
}

bool OdbcLink::SwitchAutocommit(bool on) noexcept {
    const std::uintptr_t mode = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
    return SQL_SUCCEEDED(SQLSetConnectAttr(connection_.Get(), SQL_ATTR_AUTOCOMMIT, AsPointer(mode), 0));
}

void OdbcLink::Begin() {
    Ready();
    if (!SwitchAutocommit(false)) FailWith(SQL_HANDLE_DBC, connection_.Get());
}

void OdbcLink::Commit() {
    if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection_.Get(), SQL_COMMIT)))
        FailWith(SQL_HANDLE_DBC, connection_.Get());
    if (!SwitchAutocommit(true)) down_ = true;  // what was committed stays so
}

void OdbcLink::Rollback() noexcept {
    const bool back = SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection_.Get(), SQL_ROLLBACK));
    if (!back || !SwitchAutocommit(true)) down_ = true;
}

void OdbcLink::Fail(const StatementHandle& statement) {
    FailWith(SQL_HANDLE_STMT, statement.Get());
}

void OdbcLink::FailWith(SQLSMALLINT sort, SQLHANDLE handle) {
    const Diagnosis diagnosis = Diagnose(sort, handle, text_.nativeProvider);
    if (MeansLost(diagnosis)) down_ = true;
    const ErrorKind kind = loggedIn_ ? KindOf(diagnosis) : ErrorKind::Connection;
    const std::string_view remedy = loggedIn_ ? "" : Remedy(diagnosis);
    throw Error(kind, text_.place, stored_.Redact(diagnosis.text + std::string(remedy)));
}

}  // namespace varnel::odbc
