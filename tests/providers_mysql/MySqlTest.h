// What the tests of this provider share: one server per test program, and short ways to run and read.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/Error.h"
#include "providers/mysql/MySqlProvider.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/MariaDbServer.h"

namespace varnel {

using Row = std::vector<Value>;

/// The server of this test program, started by the first test that asks.
MariaDbServer& Server();

class MySqlTest : public testing::Test {
protected:
    /// A log-in with more keys at the connection string's end.
    static std::unique_ptr<ProviderSession> LogIn(const std::string& moreKeys = "");
    /// All rows of a query.
    static std::vector<Row> Rows(ProviderSession& session, const std::string& query);
    /// The first value of the first row; Null without a row.
    static Value First(ProviderSession& session, const std::string& query);
};

/// The kind of the Error that action throws; Misuse when it throws none.
template <class Action>
ErrorKind KindOf(Action&& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.kind;
    }
    return ErrorKind::Misuse;
}

/// A value in a form for comparisons and messages: kind and content ("Decimal 1.5", "Null", "Bytes 00FF").
std::string Shown(const Value& value);

}  // namespace varnel
