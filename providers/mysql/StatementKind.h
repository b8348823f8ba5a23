// What a statement's first words say about how it is to be run.
#pragma once

#include <string_view>

namespace varnel::mysql {

struct StatementKind {
    bool writes = false;  ///< INSERT or REPLACE: runs strictly and without backslash escapes
    bool mayAlterSession =
        true;  ///< may leave something behind in the log-in (SET, USE, LOCK, a temporary table, CALL …)
};

/// Blanks, line ends, comments and opening parentheses before the first word are skipped.
StatementKind KindOfStatement(std::string_view statement);

}  // namespace varnel::mysql
