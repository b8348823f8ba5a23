// One load session as a person writes it and as the repository's three tables hold it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnel::admin {

/// One source column and the target column that it goes into.
struct ColumnMapping {
    std::string source, target;
    std::string type;            ///< the source column's type by its data layer name: "Integer", "VarWchar"
    std::string sourceTypeName;  ///< the type in the source database's own words: "MONEY"
    std::string targetType;      ///< type word for a table made from this definition; "" when it never is
    std::int32_t width = 0, targetWidth = 0;
    std::int16_t scale = 0, targetScale = 0;
    bool selected = true;
};

/// How source text files are laid out. qualifier is the stored code: "DQ", "SQ", "" or the character itself.
struct SourceText {
    std::string delimiter = ",", qualifier = "DQ";
    bool header = true;
    bool operator==(const SourceText&) const = default;
};

/// How a text target is written.
struct TargetText {
    std::string format = "DELIMITED", delimiter = ",", qualifier = "DQ", folder, extension;
    bool header = true;
};

struct TableMapping {
    std::int16_t tabId = 0;
    std::string source, sourceOwner, target, targetOwner, where;
    std::string option = "APPEND";  ///< what is done to an existing target table: "DROP", "DELETE", else rows are added
    std::string firstTime;          ///< "CREATE" or ""
    bool exists = true;
    SourceText sourceText;
    std::vector<ColumnMapping> columns;
};

struct SessionDefinition {
    std::int16_t id = 0;
    std::string name, log;
    std::string sourceKind, sourceConnection, sourceType, sourceFolder;
    std::string targetKind, targetConnection, targetType, targetFolder;
    std::string pollFolder, pollPattern, pollRename;
    TargetText targetText;
    std::vector<TableMapping> tables;
    std::string place;  ///< "shop.toml:3", where the definition was read; "" when it came from a repository
};

/// True for the kinds whose sources are text files: "TEXT" and "TEXTPOLL".
inline bool IsTextSource(const SessionDefinition& session) {
    return session.sourceKind == "TEXT" || session.sourceKind == "TEXTPOLL";
}

}  // namespace varnel::admin
