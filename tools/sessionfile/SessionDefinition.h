// One load session as a person writes it and as the repository's three tables hold it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/sessionfile/StoredValues.h"

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
    StoredValues stored;  ///< what its row holds beside, or instead of, what the rest says
    std::string comment;  ///< shown beside the column in a session file; never stored
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
    StoredValues stored;
    std::vector<std::string> comments;  ///< lines above the table in a session file; never stored
};

struct SessionDefinition {
    std::int16_t id = 0;
    std::string name, log;
    std::string sourceKind, sourceConnection, sourceType, sourceFolder;
    std::string targetKind, targetConnection, targetType, targetFolder;
    std::string pollFolder, pollPattern, pollRename;
    TargetText targetText;
    std::vector<TableMapping> tables;
    StoredValues stored;
    /// The rows of a session that is given by them; then nothing else of the definition counts but id and place.
    std::vector<StoredRow> rows;
    std::vector<std::string> comments;  ///< lines above the session in a session file; never stored
    std::string place;  ///< "shop.toml:3", where the definition was read; "" when it came from a repository
};

/// True for the kinds whose sources are text files: "TEXT" and "TEXTPOLL".
inline bool IsTextSource(const SessionDefinition& session) {
    return session.sourceKind == "TEXT" || session.sourceKind == "TEXTPOLL";
}

/// The tables of a session are numbered from 1, unless they say otherwise. The table of a polled folder is numbered 0:
/// the files found at run time are numbered from 1.
inline std::int16_t UsualFirstNumber(const SessionDefinition& session) {
    return session.sourceKind == "TEXTPOLL" ? 0 : 1;
}

}  // namespace varnel::admin
