// What a file provider's connection string asks for.
#pragma once

#include <string>

#include "ado/types/ConnectionString.h"

namespace varnel::sql {

/// The engine that the string names; the file's bytes decide in the end.
enum class NamedEngine { None, Sqlite, Access, Text, FoxPro, Excel };

struct DataSource {
    NamedEngine engine = NamedEngine::None;
    std::string storedPath;
    std::string extendedProperties;  ///< the options of a text source: "text;HDR=Yes"
    std::string databasePassword;    ///< of an Access file
    bool readOnly = false;
    bool createWhenMissing = false;
};

/// The connection string itself, or the one that it hands on to a driver in its extended properties.
ConnectionString DriverString(const ConnectionString& text);

/// engine is None when the string belongs to another provider.
DataSource ReadDataSource(const ConnectionString& text);

/// What lies at a local path, by its first bytes.
enum class FileFormat { Missing, Folder, Empty, Sqlite, Access, FoxPro, Unknown };

FileFormat LookAtFile(const std::string& localPath);

}  // namespace varnel::sql
