#include "providers/sql/VerifyFile.h"

#include "platform/StoredPath.h"
#include "providers/access/Verify.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/TableIndex.h"
#include "providers/foxpro/Verify.h"
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

void AddAll(std::vector<std::string>& all, std::vector<std::string> more) {
    for (std::string& one : more) all.push_back(std::move(one));
}

/// A table with its memo file and its structural index; returns how many records it has.
std::uint64_t VerifyFoxProTable(const std::string& storedPath, FileReport& report, const RowsSeen& seen) {
    AddAll(report.findings, foxpro::VerifyTable(storedPath, seen));
    const auto table = foxpro::DbfFile::Open(storedPath);
    if (foxpro::FindCompanion(storedPath, "cdx")) AddAll(report.findings, foxpro::CheckIndex(*table, &report.notes));
    const auto hold = table->HoldForReading();
    return table->Records();
}

/// A table, or a container with all of its tables.
FileReport VerifyFoxPro(const std::string& storedPath, const RowsSeen& seen) {
    FileReport report;
    std::uint64_t records = 0, tables = 1;
    if (AsciiLower(storedPath).ends_with(".dbc")) {
        report.findings = foxpro::CheckContainer(storedPath);
        const auto container = foxpro::OpenContainer(storedPath);
        const std::vector<std::string> names = container->TableNames();
        tables = names.size();
        for (const std::string& name : names)
            if (const auto table = container->FindTable(name))
                records += VerifyFoxProTable(table->dbfPath, report, [&](std::uint64_t count) {
                    if (seen) seen(records + count);
                });
    } else {
        records = VerifyFoxProTable(storedPath, report, seen);
    }
    report.extent = std::to_string(tables) + (tables == 1 ? " table, " : " tables, ") + std::to_string(records) +
                    (records == 1 ? " record" : " records");
    return report;
}

}  // namespace

FileReport VerifyFile(const std::string& storedPath, const std::string& password, const RowsSeen& seen) {
    const std::string localPath = LocalPath(storedPath);
    switch (LookAtFile(localPath)) {
        case FileFormat::Access:
            return access::VerifyDatabase(storedPath, password, seen);
        case FileFormat::Sqlite:
            return VerifySqlite(storedPath, localPath);
        case FileFormat::FoxPro:
            return VerifyFoxPro(storedPath, seen);
        case FileFormat::Missing:
            throw Error(ErrorKind::Io, storedPath, "The file '" + storedPath + "' does not exist.");
        default:
            throw Error(ErrorKind::NotSupported, storedPath,
                        "'" + storedPath +
                            "' is no Access or SQLite database and no FoxPro table; only these can be verified.");
    }
}

}  // namespace varnel::sql
