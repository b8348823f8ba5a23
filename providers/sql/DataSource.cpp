#include "providers/sql/DataSource.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace varnel::sql {
namespace {

struct EngineWord {
    std::string_view start;  ///< lower case: the name begins with it
    NamedEngine engine;
};

/// The provider that hands a driver's connection string on.
constexpr std::string_view kDriverProvider = "MSDASQL";

constexpr EngineWord kProviders[] = {{"sqlite", NamedEngine::Sqlite},
                                     {"microsoft.jet.oledb", NamedEngine::Access},
                                     {"microsoft.ace.oledb", NamedEngine::Access},
                                     {"vfpoledb", NamedEngine::FoxPro}};
constexpr EngineWord kDrivers[] = {{"sqlite", NamedEngine::Sqlite},
                                   {"microsoft access text", NamedEngine::Text},
                                   {"microsoft access dbase", NamedEngine::FoxPro},
                                   {"microsoft access", NamedEngine::Access},
                                   {"microsoft text", NamedEngine::Text},
                                   {"microsoft visual foxpro", NamedEngine::FoxPro},
                                   {"microsoft foxpro", NamedEngine::FoxPro},
                                   {"microsoft dbase", NamedEngine::FoxPro}};
/// The format word of the extended properties of the Access providers.
constexpr EngineWord kFormats[] = {{"text", NamedEngine::Text},
                                   {"dbase", NamedEngine::FoxPro},
                                   {"foxpro", NamedEngine::FoxPro},
                                   {"excel", NamedEngine::Excel}};

/// The names under which the FoxPro and dBASE drivers were set up for everybody.
constexpr EngineWord kNames[] = {{"visual foxpro", NamedEngine::FoxPro},
                                 {"foxpro files", NamedEngine::FoxPro},
                                 {"dbase files", NamedEngine::FoxPro}};

template <std::size_t N>
NamedEngine Match(const EngineWord (&words)[N], std::string_view name) {
    const std::string lower = AsciiLower(TrimBlanks(name));
    for (const EngineWord& word : words)
        if (std::string_view(lower).starts_with(word.start)) return word.engine;
    return NamedEngine::None;
}

NamedEngine EngineOf(const ConnectionString& text) {
    NamedEngine engine = Match(kProviders, text.Provider());
    const bool throughDriver = text.Provider().empty() || EqualNoCase(text.Provider(), kDriverProvider);
    if (engine == NamedEngine::None && throughDriver) engine = Match(kDrivers, text.Driver());
    if (engine == NamedEngine::None && throughDriver) engine = Match(kNames, text.Get({"DSN"}));
    if (engine != NamedEngine::Access) return engine;
    const NamedEngine format = Match(kFormats, text.Get({"Extended Properties"}));
    return format == NamedEngine::None ? engine : format;
}

/// The FoxPro signatures of table and container files with believable months and days after them.
bool LooksLikeDbf(std::string_view head) {
    static constexpr std::string_view kFirstBytes("\x03\x30\x31\x32\x83\x8B\xF5\xFB", 8);
    if (head.size() < 32 || kFirstBytes.find(head[0]) == std::string_view::npos) return false;
    return head[2] >= 0 && head[2] <= 12 && head[3] >= 0 && head[3] <= 31;
}

}  // namespace

ConnectionString DriverString(const ConnectionString& text) {
    const std::string inner = text.Get({"Extended Properties"});
    const bool wrapped = EqualNoCase(text.Provider(), kDriverProvider) && inner.find('=') != std::string::npos;
    return wrapped ? ConnectionString(inner) : text;
}

DataSource ReadDataSource(const ConnectionString& outer) {
    const ConnectionString text = DriverString(outer);
    DataSource source;
    source.engine = EngineOf(text);
    source.storedPath = text.Get({"Data Source", "DBQ", "Database", "SourceDB", "DefaultDir"});
    source.extendedProperties = text.Get({"Extended Properties"});
    source.databasePassword = text.Get({"Jet OLEDB:Database Password", "PWD"});
    const std::string mode = AsciiLower(text.Get({"Mode"}));
    source.readOnly = mode == "read" || mode == "readonly";
    const bool makesFiles = source.engine == NamedEngine::Sqlite || source.engine == NamedEngine::Access;
    source.createWhenMissing = makesFiles && mode == "readwritecreate";
    return source;
}

FileFormat LookAtFile(const std::string& localPath) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(localPath, ignored);
    if (!std::filesystem::exists(status)) return FileFormat::Missing;
    if (std::filesystem::is_directory(status)) return FileFormat::Folder;
    std::array<char, 64> bytes{};
    std::ifstream file(localPath, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    const std::string_view head(bytes.data(), static_cast<std::size_t>(file.gcount()));
    if (head.empty()) return FileFormat::Empty;
    if (head.starts_with(std::string_view("SQLite format 3\0", 16))) return FileFormat::Sqlite;
    if (head.size() > 4) {
        const std::string_view signature = head.substr(4);
        if (signature.starts_with("Standard Jet DB") || signature.starts_with("Standard ACE DB"))
            return FileFormat::Access;
    }
    return LooksLikeDbf(head) ? FileFormat::FoxPro : FileFormat::Unknown;
}

}  // namespace varnel::sql
