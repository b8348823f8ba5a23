#include "providers/odbc/OdbcHandles.h"

#include <array>
#include <string_view>

#include "ado/types/ConnectionString.h"

namespace varnel::odbc {
namespace {

std::string_view WithoutTags(std::string_view message) {
    while (!message.empty() && message.front() == '[') {
        const auto end = message.find(']');
        if (end == std::string_view::npos) break;
        message.remove_prefix(end + 1);
    }
    return TrimBlanks(message);
}

bool IsWarning(std::string_view state) {
    return state.substr(0, 2) == "01";
}

/// One record's message, however long it is.
bool ReadRecord(SQLSMALLINT sort, SQLHANDLE handle, SQLSMALLINT number, std::string& message, std::string& state,
                SQLINTEGER& native) {
    std::array<SQLCHAR, 6> code{};
    message.resize(1024);
    SQLSMALLINT length = 0;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const SQLRETURN outcome =
            SQLGetDiagRec(sort, handle, number, code.data(), &native, reinterpret_cast<SQLCHAR*>(message.data()),
                          static_cast<SQLSMALLINT>(message.size()), &length);
        if (!SQL_SUCCEEDED(outcome) || length < 0) return false;
        const bool whole = static_cast<std::size_t>(length) < message.size();
        if (whole || attempt == 1) break;
        message.resize(static_cast<std::size_t>(length) + 1);
    }
    message.resize(std::min(message.size(), static_cast<std::size_t>(length)));
    if (const auto end = message.find('\0'); end != std::string::npos) message.resize(end);
    state.assign(reinterpret_cast<const char*>(code.data()), 5);
    return true;
}

}  // namespace

Diagnosis Diagnose(SQLSMALLINT sort, SQLHANDLE handle, bool stripTags) {
    constexpr SQLSMALLINT kMostRecords = 50;
    Diagnosis whole;
    std::string message, state;
    for (SQLSMALLINT number = 1; number <= kMostRecords; ++number) {
        SQLINTEGER native = 0;
        if (!ReadRecord(sort, handle, number, message, state, native)) break;
        if (whole.state.empty() || (IsWarning(whole.state) && !IsWarning(state))) {
            whole.state = state;
            whole.native = native;
        }
        const std::string_view shown = stripTags ? WithoutTags(message) : std::string_view(message);
        if (shown.empty() || whole.text.find(shown) != std::string::npos) continue;
        if (!whole.text.empty()) whole.text += "\r\n";
        whole.text += shown;
    }
    if (whole.text.empty()) whole.text = "The ODBC driver reports a failure and says nothing about it.";
    return whole;
}

bool MeansLost(const Diagnosis& diagnosis) {
    constexpr std::string_view kLost[] = {"08S01", "08003", "08007", "08006", "HYT01"};
    for (const std::string_view state : kLost) {
        if (diagnosis.state == state) return true;
    }
    return diagnosis.native == 2006 || diagnosis.native == 2013 || diagnosis.native == 20017 ||
           diagnosis.native == 20006;
}

ErrorKind KindOf(const Diagnosis& diagnosis) {
    const std::string_view group = std::string_view(diagnosis.state).substr(0, 2);
    if (group == "08" || group == "28" || MeansLost(diagnosis)) return ErrorKind::Connection;
    if (group == "22") return ErrorKind::Conversion;
    if (group == "42") return ErrorKind::Syntax;
    return ErrorKind::Constraint;
}

}  // namespace varnel::odbc
