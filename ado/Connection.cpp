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

void Connection::Close() {
    Session();
    session_.reset();
}

const std::shared_ptr<SessionLease>& Connection::Session() const {
    if (!IsOpen()) throw Error(ErrorKind::Misuse, "", "Operation is not allowed when the object is closed.");
    return session_;
}

}  // namespace varnel
