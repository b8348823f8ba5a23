#include "tools/sessionfile/Passwords.h"

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"

namespace varnel::admin {

std::string WrittenConnection(const std::string& connection, Passwords passwords) {
    if (passwords == Passwords::Written) return connection;
    try {
        return ConnectionString(connection).Shown();
    } catch (const Error&) {
        return "***";
    }
}

void RefuseHiddenPassword(const std::string& connection) {
    const ConnectionString read(connection);
    for (const auto& [keyword, value] : read.Pairs())
        if (value == "***")
            throw Error(ErrorKind::Syntax, "", keyword + " is ***, which only hides a password; write the password");
}

}  // namespace varnel::admin
