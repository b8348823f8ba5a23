#include "providers/sql/VerifyFile.h"

#include "platform/StoredPath.h"
#include "providers/access/Verify.h"
#include "providers/sql/DataSource.h"
#include "providers/sql/SqliteFile.h"

namespace varnel::sql {
namespace {

/// SQLite's own check, which says "ok" or one fault per row.
FileReport VerifySqlite(const std::string& storedPath, const std::string& localPath) {
    FileReport report;
    const auto file = SqliteFile::Open(storedPath, localPath, OpenMode::Existing);
    const Statement check = PrepareStatement(file->Handle(), "PRAGMA integrity_check(1000)", storedPath);
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(check.get())) == SQLITE_ROW) {
        const unsigned char* text = sqlite3_column_text(check.get(), 0);
        const std::string said = text == nullptr ? "" : reinterpret_cast<const char*>(text);
        if (said != "ok") report.findings.push_back(said);
    }
    if (code != SQLITE_DONE) throw SqliteError(file->Handle(), code, storedPath);
    const Statement pages = PrepareStatement(file->Handle(), "PRAGMA page_count", storedPath);
    if (sqlite3_step(pages.get()) == SQLITE_ROW) {
        report.extent = std::to_string(sqlite3_column_int64(pages.get(), 0)) + " pages";
    }
    return report;
}

}  // namespace

FileReport VerifyFile(const std::string& storedPath, const std::string& password) {
    const std::string localPath = LocalPath(storedPath);
    switch (LookAtFile(localPath)) {
        case FileFormat::Access:
            return access::VerifyDatabase(storedPath, password);
        case FileFormat::Sqlite:
            return VerifySqlite(storedPath, localPath);
        case FileFormat::Missing:
            throw Error(ErrorKind::Io, storedPath, "The file '" + storedPath + "' does not exist.");
        default:
            throw Error(ErrorKind::NotSupported, storedPath,
                        "'" + storedPath + "' is not an Access or SQLite database; only these can be verified.");
    }
}

}  // namespace varnel::sql
