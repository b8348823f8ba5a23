// One open SQLite database file. The process has one connection per file, however many sessions use it and whatever
// they call it; it is closed with the last of them.
//
// Reads are stable: before a table is written to, every open read of that table keeps its remaining rows aside.
// Rows that are appended one by one share one transaction, which is committed at least once a second.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "providers/sql/SqliteHandle.h"
#include "providers/sql/TableUse.h"

namespace varnel::sql {

/// A query that still takes its rows from the file.
class OpenRead {
public:
    /// tables: names in lower case.
    explicit OpenRead(std::vector<std::string> tables) : tables_(std::move(tables)) {}
    virtual ~OpenRead() = default;
    /// Takes all remaining rows out of the file, keeps them elsewhere, and lets go of the file. Does not throw: a
    /// failure is raised by the read itself when it gets there.
    virtual void KeepRest() noexcept = 0;
    bool Reads(const std::vector<std::string>& tables) const;

private:
    std::vector<std::string> tables_;
};

/// A prepared statement and the tables that it touches.
struct TrackedStatement {
    Statement statement;
    TablesTouched tables;
};

enum class OpenMode : std::uint8_t { Existing, CreateWhenMissing };

class SqliteFile {
public:
    /// The process's connection to a file. storedPath: for error texts. localPath: where it lies.
    /// Throws Error: unreadable, damaged, or locked by another program for a minute.
    static std::shared_ptr<SqliteFile> Open(const std::string& storedPath, const std::string& localPath, OpenMode mode);
    /// The connection that the process has to this file already, or null. Opening the file's bytes beside an open
    /// connection would drop its locks, so this is asked first.
    static std::shared_ptr<SqliteFile> FindOpen(const std::string& localPath);

    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    sqlite3* Handle() const { return database_.get(); }
    const std::string& StoredPath() const { return storedPath_; }
    /// False when the file was deleted or replaced since it was opened.
    bool StillThere() const noexcept;

    /// Throws Error.
    TrackedStatement Prepare(const std::string& sql);
    /// What the connection reports for a code.
    Error Failure(int code) const { return SqliteError(Handle(), code, storedPath_); }

    void Register(OpenRead* read) { reads_.push_back(read); }
    void Unregister(const OpenRead* read) noexcept;
    /// Makes every open read of one of these tables keep its rows aside.
    void BeforeWriting(const std::vector<std::string>& tables);
    /// The same for all reads: before tables come and go, and to let other processes pass.
    void KeepAllReads();

    /// Begins the transaction of appended rows unless it is open. Waits for other processes; throws Error.
    void BeginRows();
    /// Counts an appended row; commits when the transaction is a second old. Throws Error.
    void RowWritten();
    /// The failure of a refused row or commit. Its text says so when SQLite gave up the rows before it as well.
    Error RowRefused(int code);
    /// A commit point for everything appended so far. Throws Error; the rows stay pending then, unless the text says
    /// that they are lost.
    void Commit();
    /// The same without a failure. False when rows are still pending or were lost.
    bool TryCommit() noexcept;

    /// Runs one statement in a transaction of its own: all of it or nothing. Rows appended before are committed first.
    void RunAlone(TrackedStatement& statement);

private:
    SqliteFile(std::string storedPath, std::string localPath, Database database);

    static int WaitForLock(void* self, int attempts) noexcept;
    void Configure();
    void MustRun(const char* sql);
    void Begin();
    void RollBack() noexcept;
    int Run(const char* sql) noexcept;

    std::string storedPath_;
    std::string localPath_;
    Database database_;
    TableUse tableUse_;
    std::int64_t lockWaitSince_ = 0;  ///< SteadyMilliseconds of the first refusal
    std::vector<OpenRead*> reads_;
    bool inTransaction_ = false;
    bool yieldFirst_ = false;  ///< the last commit was made by the clock: others may be waiting
    std::int64_t pendingRows_ = 0;
    std::int64_t begunAt_ = 0;  ///< SteadyMilliseconds
};

}  // namespace varnel::sql
