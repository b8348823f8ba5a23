#include "providers/sql/SqlProvider.h"

#include "platform/Error.h"
#include "platform/StoredPath.h"
#include "providers/sql/AccessSource.h"
#include "providers/sql/DataSource.h"
#include "providers/sql/FoxProSource.h"
#include "providers/sql/SqliteFile.h"
#include "providers/sql/SqliteSession.h"
#include "providers/sql/TextSource.h"

namespace varnel {

using sql::DataSource;
using sql::FileFormat;
using sql::NamedEngine;

namespace {

/// Throws for everything at the path that is no SQLite file.
void RequireSqlite(const DataSource& source, FileFormat format) {
    const std::string& path = source.storedPath;
    if (format == FileFormat::Sqlite) return;
    if (source.engine == NamedEngine::Excel)
        throw Error(ErrorKind::NotSupported, path, "Could not find installable ISAM.");
    if (format == FileFormat::Missing) {
        if (source.createWhenMissing) return;
        throw Error(ErrorKind::Io, path, "Could not find file '" + path + "'.");
    }
    if (format == FileFormat::Folder)
        throw Error(ErrorKind::Io, path, "'" + path + "' is a folder, not a database file.");
    if (format == FileFormat::Empty && source.createWhenMissing) return;
    throw Error(ErrorKind::Corrupt, path, "Unrecognized database format '" + path + "'.");
}

/// By its name a FoxPro source, or by the file's bytes, which decide.
bool IsFoxPro(const DataSource& source, const std::string& path) {
    const FileFormat format = sql::LookAtFile(path);
    return source.engine == NamedEngine::FoxPro ? format != FileFormat::Sqlite : format == FileFormat::FoxPro;
}

}  // namespace

bool SqlProvider::Accepts(const ConnectionString& text) const {
    return sql::ReadDataSource(text).engine != NamedEngine::None;
}

std::unique_ptr<ProviderSession> SqlProvider::Open(const ConnectionString& text) const {
    const DataSource source = sql::ReadDataSource(text);
    if (source.storedPath.empty())
        throw Error(ErrorKind::Syntax, "", "Could not find file '': the connection string names no Data Source.");
    if (source.engine == NamedEngine::Text) return sql::OpenTextSession(source);
    const std::string path = LocalPath(source.storedPath);
    if (IsFoxPro(source, path)) return sql::OpenFoxProSession(source, text);
    std::shared_ptr<sql::SqliteFile> file = sql::SqliteFile::FindOpen(path);
    if (!file) {
        const FileFormat format = sql::LookAtFile(path);
        const bool makesAccess = source.engine == NamedEngine::Access && source.createWhenMissing;
        if (format == FileFormat::Access || (format == FileFormat::Missing && makesAccess))
            return sql::OpenAccessSession(source);
        RequireSqlite(source, format);
        const auto mode = source.createWhenMissing ? sql::OpenMode::CreateWhenMissing : sql::OpenMode::Existing;
        file = sql::SqliteFile::Open(source.storedPath, path, mode);
    }
    return std::make_unique<sql::SqliteSession>(std::move(file), source.readOnly);
}

}  // namespace varnel
