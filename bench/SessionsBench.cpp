#include "bench/SessionsBench.h"

#include <cstdio>
#include <cstdlib>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "providers/ProviderList.h"
#include "tests/support/RunProgram.h"

namespace varnel {

namespace {

/// A repository can be made only when its provider is known.
const std::string& Installed(const std::string& folder) {
    SetProviders(AllProviders());
    InstallVarnel(folder);
    return folder;
}

}  // namespace

SessionsBench::SessionsBench(int rows) : rows_(rows), repository_(Installed(folder_.Path())) {
    setenv("MYSQL_PWD", MariaDbServer::kPassword, 1);
}

TestSession SessionsBench::SessionFor(int id, const Side& source, const Side& target) const {
    TestSession session;
    session.id = id;
    session.sourceKind = source.kind;
    session.sourceConnection = source.connection;
    session.targetKind = target.kind;
    session.targetConnection = target.connection;
    session.log = File("run.log");
    session.tables = {{source.table, target.table, BenchColumns(), true, "append"}};
    return session;
}

void SessionsBench::Add(const TestSession& session) {
    repository_.Add(session);
    CloseIdleSessions();
}

std::string SessionsBench::FillSqlite(const std::string& file) const {
    const std::string connection = SqliteConnection(File(file));
    ExecuteOn(connection, BenchTableStatement("loaded"));
    FillBenchTable(connection, "loaded", rows_);
    CloseIdleSessions();
    return connection;
}

std::string SessionsBench::FreshSqlite() {
    return "rm -f target.db; sqlite3 target.db '" + BenchTableStatement("loaded") + "'";
}

std::string SessionsBench::MariaDbClient(const MariaDbServer& server) {
    return std::string("mariadb --no-defaults --user=") + MariaDbServer::kUser + " --socket=" + server.Socket() +
           " bench";
}

std::string SessionsBench::FreshMariaDb(const MariaDbServer& server) {
    return MariaDbClient(server) + " -e 'drop table if exists loaded; " + BenchTableStatement("loaded") + "'";
}

void SessionsBench::MakeDatabase(const MariaDbServer& server) {
    server.Run({"create database if not exists bench"});
}

void SessionsBench::ShowHead() const {
    std::printf("%-50s %10s", (std::to_string(rows_) + " rows").c_str(), "rows/s");
    if (bytes_ > 0) std::printf(" %8s", "MB/s");
    std::printf(" %9s %10s %8s\n", "seconds", "peak MiB", "ratio");
}

void SessionsBench::Show(const std::string& name, const Measurement& measured, double yardstickSeconds) const {
    std::printf("%-50s %10.0f", name.c_str(), rows_ / measured.seconds);
    if (bytes_ > 0) std::printf(" %8.0f", bytes_ / 1e6 / measured.seconds);
    std::printf(" %9.2f %10.1f", measured.seconds, measured.peakMebibytes);
    if (yardstickSeconds > 0) std::printf(" %7.2fx", yardstickSeconds / measured.seconds);
    std::printf(measured.status == 0 ? "\n" : "   FAILED\n");
    std::fflush(stdout);
}

bool SessionsBench::Ours(const std::string& name, int session, const std::string& prepare,
                         double yardstickSeconds) const {
    const Measurement measured = Best(prepare, "exec ./varnel " + std::to_string(session));
    Show(name, measured, yardstickSeconds);
    const std::string log = ReadBytes(File("run.log"));
    const bool loaded = measured.status == 0 && log.find(std::to_string(rows_) + " Rows Loaded",
                                                         log.rfind("Starting Session")) != std::string::npos;
    constexpr std::size_t kShown = 1500;
    if (!loaded)
        std::printf("FAILED: session %d, status %d\n%s\n", session, measured.status,
                    log.substr(log.size() > kShown ? log.size() - kShown : 0).c_str());
    return loaded;
}

Measurement SessionsBench::Tool(const std::string& name, const std::string& program, const std::string& prepare,
                                const std::string& command, int runs) const {
    if (Shell("command -v " + program + " > /dev/null").status != 0) {
        std::printf("%-50s not installed\n", name.c_str());
        return {};
    }
    const Measurement measured = Best(prepare, command, runs);
    Show(name, measured);
    return measured;
}

}  // namespace varnel
