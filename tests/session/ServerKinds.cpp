#include "tests/session/ServerKinds.h"

#include <string_view>

#include "tests/support/TestRepository.h"

namespace varnel {

namespace {

bool Is(const ServerKind& server, const ServerKind& other) {
    return std::string_view(server.name) == other.name;
}

/// The stand-in's file is read by SQLite; what is written goes through the stand-in, which keeps the types.
class NativeSqlServer : public NativeSqlite {
public:
    NativeSqlServer() : NativeSqlite(SqlServer().File(), true) {}
    void Run(const std::vector<std::string>& statements) override {
        for (const std::string& statement : statements) ExecuteOn(SqlServer().ConnectionString(), statement);
    }
};

}  // namespace

MariaDbServer& MariaDb() {
    static MariaDbServer server;
    return server;
}

TdsServer& SqlServer() {
    static TdsServer server;
    return server;
}

OdbcNames& SourceNames() {
    static OdbcNames names;
    static const bool named = [] {
        MariaDb().Run({"create database if not exists dbo"});
        names.AddMariaDb("oracle", MariaDb(), kOracle.owner, "ORACLE");
        names.AddMariaDb("sqlserver", MariaDb(), kSqlServerDialect.owner, "MSSQL");
        return true;
    }();
    static_cast<void>(named);
    return names;
}

std::string ConnectionTo(const ServerKind& server) {
    if (Is(server, kMySql)) return MariaDb().ConnectionString();
    if (Is(server, kSqlServer)) return SqlServer().ConnectionString();
    SourceNames();
    return std::string("DSN=") + (Is(server, kOracle) ? "oracle" : "sqlserver") + ";UID=" + MariaDbServer::kUser +
           ";PWD={" + MariaDbServer::kPassword + "}";
}

std::unique_ptr<NativeDatabase> OpenNative(const ServerKind& server) {
    if (Is(server, kSqlServer)) return std::make_unique<NativeSqlServer>();
    ConnectionTo(server);
    return std::make_unique<NativeMySql>(MariaDb(), server.owner);
}

}  // namespace varnel
