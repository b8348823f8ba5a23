// The passwords of connection strings in session files.
#pragma once

#include <string>

namespace varnel::admin {

/// How passwords are written: as ***, which cannot be imported by mistake, or as they are.
enum class Passwords { Hidden, Written };

/// A connection string as it is written. One that cannot be read may hold a password anywhere, so that nothing of it is
/// shown when passwords are hidden.
std::string WrittenConnection(const std::string& connection, Passwords passwords);
/// Throws Error{Syntax} with the remedy when a password of the connection string is only ***, or when the string cannot
/// be read.
void RefuseHiddenPassword(const std::string& connection);

}  // namespace varnel::admin
