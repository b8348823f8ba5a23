#include "ado/Connection.h"

namespace varnel {

namespace {

/// The connection string with user and password of the call put in, when they were given.
std::string WithLogIn(const std::string& connectionString, const std::string& user, const std::string& password) {
    std::string text = connectionString;
    if (!user.empty()) text += ";User ID={" + user + "}";
    if (!password.empty()) text += ";Password={" + password + "}";
    return text;
}

}  // namespace

void Connection::Open(const std::string& connectionString, const std::string& user, const std::string& password,
                      int /*options*/) {
    if (IsOpen()) throw Error(ErrorKind::Misuse, "", "Operation is not allowed when the object is open.");
    session_ = std::make_shared<SessionLease>(WithLogIn(connectionString, user, password));
}

void Connection::Execute(const std::string& statement) {
    Session()->Guarded([&](ProviderSession& session) { session.Execute(statement); });
}

std::vector<TableInfo> Connection::Tables() const {
    return Session()->Guarded([](ProviderSession& session) { return session.Tables(); });
}

std::vector<TableColumn> Connection::Columns(const std::string& owner, const std::string& table) const {
    return Session()->Guarded([&](ProviderSession& session) { return session.Columns(owner, table); });
}

void Connection::Close() {
    Session();
    session_.reset();
}

const std::shared_ptr<SessionLease>& Connection::Session() const {
    if (!IsOpen()) throw Error(ErrorKind::Misuse, "", "Operation is not allowed when the object is closed.");
    return session_;
}

}  // namespace varnel
