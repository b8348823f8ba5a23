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

/// By the file's bytes; where they say nothing, by the engine that the string names.
NamedEngine EngineFor(const DataSource& source, FileFormat format) {
    if (format == FileFormat::Access) return NamedEngine::Access;
    if (format == FileFormat::FoxPro) return NamedEngine::FoxPro;
    if (source.engine == NamedEngine::FoxPro && format != FileFormat::Sqlite) return NamedEngine::FoxPro;
    const bool makesAccess = source.engine == NamedEngine::Access && source.createWhenMissing;
    return makesAccess && format == FileFormat::Missing ? NamedEngine::Access : NamedEngine::Sqlite;
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
    std::shared_ptr<sql::SqliteFile> file = sql::SqliteFile::FindOpen(path);
    if (!file) {
        const FileFormat format = sql::LookAtFile(path);
        const NamedEngine engine = EngineFor(source, format);
        if (engine == NamedEngine::Access) return sql::OpenAccessSession(source);
        if (engine == NamedEngine::FoxPro) return sql::OpenFoxProSession(source, text);
        RequireSqlite(source, format);
        const auto mode = source.createWhenMissing ? sql::OpenMode::CreateWhenMissing : sql::OpenMode::Existing;
        file = sql::SqliteFile::Open(source.storedPath, path, mode);
    }
    return std::make_unique<sql::SqliteSession>(std::move(file), source.readOnly);
}

}  // namespace varnel
