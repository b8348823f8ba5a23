#include "tests/session/SessionTest.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "ado/SessionLease.h"
#include "providers/ProviderList.h"
#include "tests/session/ServerKinds.h"

namespace varnel {

namespace {

std::string Bytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

}  // namespace

ProvidersReady::ProvidersReady() {
    SetProviders(AllProviders());
}

SessionTest::SessionTest() : repository_(folder_.Path()) {
    InstallVarnel(folder_.Path());
    session_.sourceConnection = SqliteConnection(Path("source.db"));
    session_.targetConnection = SqliteConnection(Path("target.db"));
    session_.log = Path("run.log");
}

void SessionTest::TearDown() {
    CloseIdleSessions();
    secrets_.insert(secrets_.end(), {MariaDbServer::kPassword, TdsServer::kPassword});
    for (const auto& [name, bytes] : Snapshot(folder_.Path())) {
        if (name.starts_with("vrrepo.mdb")) continue;
        for (const std::string& secret : secrets_) {
            EXPECT_EQ(bytes.find(secret), std::string::npos) << name << " holds the password " << secret;
        }
    }
}

std::string SessionTest::Content(const std::string& name) const {
    return Bytes(Path(name));
}

int SessionTest::Run() {
    repository_.Add(session_);
    return RunStored(session_.id);
}

int SessionTest::RunStored(int id) {
    return End(*Start(id));
}

std::unique_ptr<RunningProgram> SessionTest::Start(int id) {
    return std::make_unique<RunningProgram>(Path("varnel"), std::vector<std::string>{std::to_string(id)},
                                            folder_.Path(), Path("output.txt"));
}

int SessionTest::End(RunningProgram& program) {
    const int status = program.Wait();
    log_ = std::filesystem::is_regular_file(session_.log) ? Bytes(session_.log) : "";
    errorLog_ = Content("Varnel.log");
    output_ = Content("output.txt");
    return status;
}

std::string SessionTest::Outcome(int id) {
    const std::string row = repository_.Ask(
        "select LastRunDate, LastRunTime, SessionError from sessions where "
        "sessionid=" +
        std::to_string(id));
    if (row.starts_with("NULL|NULL")) return "not recorded";
    return row.ends_with("|0") ? "recorded, no error" : row.ends_with("|1") ? "recorded, error" : row;
}

int SessionTest::InLog(const std::string& part) const {
    int count = 0;
    for (std::size_t at = log_.find(part); at != std::string::npos; at = log_.find(part, at + 1)) ++count;
    return count;
}

bool SessionTest::LogIsClosed() const {
    return log_.ends_with("*******( F.I.N.I.S.H )*********\r\n");
}

std::string SessionTest::FirstFailure() const {
    const std::size_t at = log_.find("Error ");
    return errorLog_ + (at == std::string::npos ? "" : log_.substr(at, 500));
}

MariaDbServer& SessionTest::Server() {
    return MariaDb();
}

std::string SessionTest::ServerTable(const std::string& name) {
    Server().Run({"drop table if exists shop.`" + name + "`"});
    return name;
}

bool Eventually(const std::function<bool()>& condition, int seconds) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

std::map<std::string, std::string> Snapshot(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.is_symlink()) continue;
        files[std::filesystem::relative(entry.path(), folder)] = Bytes(entry.path());
    }
    return files;
}

std::string Changed(const std::map<std::string, std::string>& before, const std::map<std::string, std::string>& after) {
    std::map<std::string, std::string> all = before;
    all.insert(after.begin(), after.end());
    std::string names;
    for (const auto& [name, bytes] : all) {
        const auto old = before.find(name), now = after.find(name);
        if (old == before.end() || now == after.end() || old->second != now->second) names += name + " ";
    }
    return names;
}

void Forget(NativeDatabase& database, const std::string& table) {
    database.Run({"drop table if exists " + table});
}

void MakeNumbered(NativeDatabase& database, const std::string& table, int count, int padding) {
    database.Run({"create table " + table + " (ID int, NAME varchar(255))"});
    Rows rows;
    for (int k = 1; k <= count; ++k) {
        const std::string number = std::to_string(k);
        rows.push_back({number, "row " + number + std::string(static_cast<std::size_t>(padding), '.')});
    }
    database.Insert(table, {{"ID", CellForm::Number}, {"NAME", CellForm::Text}}, rows);
}

}  // namespace varnel
