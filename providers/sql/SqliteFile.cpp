#include "providers/sql/SqliteFile.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include "ado/types/ConnectionString.h"
#include "platform/Clock.h"
#include "providers/sql/SqlFunctions.h"

namespace varnel::sql {
namespace {

/// How long another process's lock is waited for, and how often it is tried.
constexpr std::int64_t kLockWaitMilliseconds = 60'000;
constexpr std::chrono::milliseconds kLockRetry{3};
/// Appended rows are committed at least this often. The pause after such a commit is longer than the others' retry,
/// so that a waiting process gets its turn.
constexpr std::int64_t kCommitMilliseconds = 1'000;
constexpr std::chrono::milliseconds kTurnForOthers{8};
constexpr const char* kPageCache = "PRAGMA cache_size=-2048";  // KiB

/// The open files of the process. Only the two functions below touch it.
std::vector<std::weak_ptr<SqliteFile>>& OpenFiles() {
    static std::vector<std::weak_ptr<SqliteFile>> files;
    return files;
}

Database OpenDatabase(const std::string& storedPath, const std::string& localPath, OpenMode mode) {
    const int create = mode == OpenMode::CreateWhenMissing ? SQLITE_OPEN_CREATE : 0;
    sqlite3* raw = nullptr;
    const int code =
        sqlite3_open_v2(localPath.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | create, nullptr);
    Database database(raw);
    if (code != SQLITE_OK) throw SqliteError(raw, code, storedPath);
    sqlite3_extended_result_codes(raw, 0);
    return database;
}

}  // namespace

bool OpenRead::Reads(const std::vector<std::string>& tables) const {
    return std::any_of(tables.begin(), tables.end(), [&](const std::string& table) {
        return std::find(tables_.begin(), tables_.end(), table) != tables_.end();
    });
}

std::shared_ptr<SqliteFile> SqliteFile::FindOpen(const std::string& localPath) {
    std::vector<std::weak_ptr<SqliteFile>>& files = OpenFiles();
    std::erase_if(files, [](const auto& entry) { return entry.expired(); });
    for (const auto& entry : files) {
        std::shared_ptr<SqliteFile> file = entry.lock();
        std::error_code ignored;
        if (file->StillThere() && std::filesystem::equivalent(file->localPath_, localPath, ignored)) return file;
    }
    return nullptr;
}

std::shared_ptr<SqliteFile> SqliteFile::Open(const std::string& storedPath, const std::string& localPath,
                                             OpenMode mode) {
    if (auto open = FindOpen(localPath)) return open;
    std::shared_ptr<SqliteFile> file(new SqliteFile(storedPath, localPath, OpenDatabase(storedPath, localPath, mode)));
    file->Configure();
    OpenFiles().push_back(file);
    return file;
}

SqliteFile::SqliteFile(std::string storedPath, std::string localPath, Database database)
    : storedPath_(std::move(storedPath)),
      localPath_(std::move(localPath)),
      database_(std::move(database)),
      tableUse_(Handle()) {}

SqliteFile::~SqliteFile() {
    TryCommit();
}

/// SQLite asks after every refused lock whether to try again.
int SqliteFile::WaitForLock(void* self, int attempts) noexcept {
    std::int64_t& since = static_cast<SqliteFile*>(self)->lockWaitSince_;
    if (attempts == 0) since = SteadyMilliseconds();
    if (SteadyMilliseconds() - since >= kLockWaitMilliseconds) return 0;
    std::this_thread::sleep_for(kLockRetry);
    return 1;
}

void SqliteFile::Configure() {
    sqlite3* database = Handle();
    sqlite3_busy_handler(database, &SqliteFile::WaitForLock, this);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    RegisterFunctions(database);
    MustRun(kPageCache);
    // The first real look at the file: damage and locks show here, not in the middle of a load.
    MustRun("PRAGMA schema_version");
    MustRun("SELECT 1 FROM sqlite_schema LIMIT 1");
    std::error_code ignored;
    // A new file gets its first page at once: an empty one would not be known as a database later.
    if (std::filesystem::file_size(localPath_, ignored) == 0) MustRun("PRAGMA user_version=0");
}

void SqliteFile::MustRun(const char* sql) {
    if (const int code = Run(sql); code != SQLITE_OK) throw Failure(code);
}

int SqliteFile::Run(const char* sql) noexcept {
    return sqlite3_exec(Handle(), sql, nullptr, nullptr, nullptr);
}

bool SqliteFile::StillThere() const noexcept {
    int moved = 0;
    const int code = sqlite3_file_control(Handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return code != SQLITE_OK || moved == 0;
}

TrackedStatement SqliteFile::Prepare(const std::string& sql) {
    TrackedStatement made;
    tableUse_.NoteInto(&made.tables);
    sqlite3_stmt* raw = nullptr;
    const int code = sqlite3_prepare_v3(Handle(), sql.c_str(), static_cast<int>(sql.size()) + 1, 0, &raw, nullptr);
    tableUse_.NoteInto(nullptr);
    made.statement.reset(raw);
    if (code != SQLITE_OK) throw Failure(code);
    return made;
}

void SqliteFile::Unregister(const OpenRead* read) noexcept {
    std::erase(reads_, read);
}

void SqliteFile::BeforeWriting(const std::vector<std::string>& tables) {
    // KeepRest takes its read off the list.
    for (std::size_t i = 0; i < reads_.size();) {
        if (reads_[i]->Reads(tables)) {
            reads_[i]->KeepRest();
        } else {
            ++i;
        }
    }
}

void SqliteFile::KeepAllReads() {
    while (!reads_.empty()) reads_.back()->KeepRest();
}

void SqliteFile::Begin() {
    if (std::exchange(yieldFirst_, false)) std::this_thread::sleep_for(kTurnForOthers);
    int code = Run("BEGIN IMMEDIATE");
    if ((code & 0xFF) == SQLITE_BUSY && !reads_.empty()) {
        // Another process wants to commit and waits for our reads to end, as we wait for it.
        KeepAllReads();
        code = Run("BEGIN IMMEDIATE");
    }
    if (code != SQLITE_OK) throw Failure(code);
    inTransaction_ = true;
    pendingRows_ = 0;
    begunAt_ = SteadyMilliseconds();
}

void SqliteFile::BeginRows() {
    if (!inTransaction_) Begin();
}

void SqliteFile::RowWritten() {
    ++pendingRows_;
    if (SteadyMilliseconds() - begunAt_ < kCommitMilliseconds) return;
    Commit();
    yieldFirst_ = true;
}

Error SqliteFile::RowRefused(int code) {
    Error failure = Failure(code);
    const bool lost = inTransaction_ && sqlite3_get_autocommit(Handle()) != 0;
    if (!lost) return failure;
    inTransaction_ = false;
    const std::string rows = std::to_string(std::exchange(pendingRows_, 0));
    return Error(failure.kind, failure.where,
                 std::string(failure.what()) + " The last " + rows + " rows written are lost.");
}

void SqliteFile::Commit() {
    if (!inTransaction_) return;
    const int code = Run("COMMIT");
    if (code != SQLITE_OK) throw RowRefused(code);
    inTransaction_ = false;
    pendingRows_ = 0;
}

bool SqliteFile::TryCommit() noexcept {
    if (!inTransaction_) return true;
    if (Run("COMMIT") != SQLITE_OK) return false;
    inTransaction_ = false;
    pendingRows_ = 0;
    return true;
}

void SqliteFile::RollBack() noexcept {
    inTransaction_ = false;
    if (sqlite3_get_autocommit(Handle()) == 0) Run("ROLLBACK");
}

void SqliteFile::RunAlone(TrackedStatement& statement) {
    Commit();
    BeforeWriting(statement.tables.writes);
    Begin();
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW) code = sqlite3_step(statement.statement.get());
    if (code == SQLITE_DONE) code = sqlite3_reset(statement.statement.get());
    if (code == SQLITE_OK) code = Run("COMMIT");
    if (code == SQLITE_OK) inTransaction_ = false;
    if (code == SQLITE_OK) return;
    const Error failure = Failure(code);
    sqlite3_reset(statement.statement.get());
    RollBack();
    throw failure;
}

}  // namespace varnel::sql
