// What the tests of this provider share: one server behind a data source name, and short ways to run and read.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "ado/types/ValueText.h"
#include "providers/odbc/OdbcProvider.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/OdbcNames.h"

namespace varnel {

class OdbcTest : public testing::Test {
protected:
    static MariaDbServer& Server() {
        static MariaDbServer server;
        return server;
    }
    /// A log-in in Oracle's SQL dialect.
    static std::unique_ptr<ProviderSession> LogIn() {
        static const auto names = [] {
            auto made = std::make_unique<OdbcNames>();
            Server().Run({"create database if not exists shop"});
            made->AddMariaDb("shop", Server(), "shop", "ORACLE");
            return made;
        }();
        return OdbcProvider().Open(ConnectionString(std::string("DSN=shop;UID=") + MariaDbServer::kUser + ";PWD={" +
                                                    MariaDbServer::kPassword + "}"));
    }
    /// All cells of a query as text, ";" behind each and a line end behind a row; a Failure as "!".
    static std::string Rows(ProviderSession& session, const std::string& query) {
        const auto reader = session.Query(query);
        std::vector<Value> row(reader->Columns().size());
        std::string seen;
        while (reader->Next(row)) {
            for (const Value& value : row) {
                if (value.IsNull())
                    seen += "Null";
                else if (value.Kind() == ValueKind::Failure)
                    seen += "!";
                else
                    AppendDefaultText(seen, value);
                seen += ";";
            }
            seen += "\n";
        }
        return seen;
    }
};

}  // namespace varnel
