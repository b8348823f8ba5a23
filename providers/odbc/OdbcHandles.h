// Owners of the driver manager's handles, and every failure's text.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/Error.h"

namespace varnel::odbc {

/// Frees a handle of one sort when it ends; null after a move.
template <SQLSMALLINT Sort>
class Handle {
public:
    Handle() = default;
    explicit Handle(SQLHANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (handle_ != nullptr) SQLFreeHandle(Sort, handle_);
    }
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    SQLHANDLE Get() const { return handle_; }

private:
    SQLHANDLE handle_ = nullptr;
};
using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

/// A number where the interface has a pointer, as many of its attributes want it.
inline SQLPOINTER AsPointer(std::uintptr_t number) {
    return reinterpret_cast<SQLPOINTER>(number);  // NOLINT(performance-no-int-to-ptr): the interface asks for it
}

/// What a handle's diagnostic records say together.
struct Diagnosis {
    std::string text;   ///< all records' messages, each once, joined by line ends
    std::string state;  ///< five characters, of the first record that is no warning
    long native = 0;    ///< the server's number, of the same record
};

/// stripTags: without the leading "[vendor][driver][server]" of each message.
Diagnosis Diagnose(SQLSMALLINT sort, SQLHANDLE handle, bool stripTags);
/// The states that say the connection is gone.
bool MeansLost(const Diagnosis& diagnosis);
/// Constraint, Conversion, Syntax, Connection … as far as the state tells.
ErrorKind KindOf(const Diagnosis& diagnosis);

}  // namespace varnel::odbc
