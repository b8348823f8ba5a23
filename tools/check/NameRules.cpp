#include "tools/check/NameRules.h"

#include <cctype>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "tools/check/NearestName.h"
#include "tools/check/ReservedWords.h"

namespace varnel::admin {
namespace {

/// How a dialect takes the names of tables and columns.
struct Naming {
    std::string_view kind;
    char closing;           ///< the quote that may not stand inside; 0 where names are written bare
    std::size_t mostTable;  ///< characters
    std::size_t mostColumn;
};
constexpr Naming kNamings[] = {
    {"ACCESS", ']', 64, 64}, {"MSSQL", ']', 128, 128}, {"MySQL", '`', 64, 64},
    {"ORACLE", 0, 128, 128}, {"FOXPRO", 0, 128, 128},
};

const Naming* NamingOf(const std::string& kind) {
    for (const Naming& naming : kNamings)
        if (naming.kind == kind) return &naming;
    return nullptr;
}

/// Why the dialect cannot take a name; "" when it can.
std::string WhyRefused(const Naming& naming, const std::string& name, std::size_t most) {
    if (name.empty()) return "it is empty";
    if (naming.closing != 0 && name.find(naming.closing) != std::string::npos)
        return std::string("it holds the character ") + naming.closing + ", which ends the name";
    if (naming.closing == 0 && !IsBareName(name))
        return "it is written without quotes and may hold only letters, digits and _, a letter first";
    if (IsReservedWord(std::string(naming.kind), name)) return "it is a word that the database keeps for itself";
    if (CharacterCount(name) > most)
        return "it has " + std::to_string(CharacterCount(name)) + " characters, and " + std::to_string(most) +
               " is the most";
    return "";
}

/// Names that are written bare are stored in capitals; old versions take 30 characters.
void CheckOracleNames(const TableFacts& facts) {
    constexpr std::size_t kOldMost = 30;
    std::vector<std::string> names = facts.written, folded;
    names.push_back(facts.To().TableName);
    for (const std::string& name : names) {
        if (AsciiUpper(name) != name) folded.push_back(name);
        if (CharacterCount(name) > kOldMost)
            facts.Found().Warning(name, "'" + name + "' has more than 30 characters, which Oracle before 12.2 refuses",
                                  "shorten the name");
    }
    if (!folded.empty())
        facts.Found().Note("", "Oracle stores names in capitals: " + ShortList(folded) +
                                   (folded.size() == 1 ? " is" : " are") + " written without quotes");
}

void CheckTwice(const TableFacts& facts) {
    for (std::size_t k = 0; k < facts.written.size(); ++k) {
        const std::vector<std::string> before(facts.written.begin(), facts.written.begin() + static_cast<long>(k));
        if (FindName(before, facts.written[k]) == before.size()) continue;
        facts.Found().Fault(facts.written[k], "two source columns go to the target column '" + facts.written[k] + "'",
                            "give '" + facts.columns[k]->SCName + "' another target column, or de-select it");
    }
}

}  // namespace

bool IsBareName(std::string_view name) {
    if (name.empty() || (std::isdigit(static_cast<unsigned char>(name.front())) != 0)) return false;
    for (const char c : name) {
        const auto code = static_cast<unsigned char>(c);
        if (std::isalnum(code) == 0 && code < 0x80 && c != '_' && c != '$' && c != '#') return false;
    }
    return true;
}

void CheckTargetNames(const TableFacts& facts) {
    const Naming* naming = NamingOf(SessionDef.TargetDBName);
    if (naming == nullptr) return;
    const std::string& table = facts.To().TableName;
    const bool bareFile = naming->kind == "FOXPRO";  // a file name, in brackets where it holds a blank
    if (!bareFile) {
        const std::string why = WhyRefused(*naming, table, naming->mostTable);
        if (!why.empty())
            facts.Found().Fault("", "the target cannot have a table '" + table + "': " + why, "name it otherwise");
    }
    for (const std::string& name : facts.written) {
        std::string what = WhyRefused(*naming, name, naming->mostColumn);
        if (what.empty()) continue;
        what.insert(0, "the target cannot have a column of this name: ");
        facts.Found().Fault(name, what, "name it otherwise");
    }
    if (naming->kind == "MSSQL" && facts.To().OwnerName.empty())
        facts.Found().Fault("", "the target table has no owner, so that it is written [].[" + table + "]",
                            "set the owner of the target table (DestOwnerName), mostly dbo");
    if (naming->kind == "ORACLE") CheckOracleNames(facts);
    CheckTwice(facts);
}

void CheckSourceNames(const TableFacts& facts) {
    const std::string& kind = SessionDef.SourceDBName;
    const char closing = kind == "MySQL" ? '`' : kind == "ORACLE" ? '"' : ']';
    for (const ColumnEntry* column : facts.columns) {
        const bool bad = kind == "FOXPRO" ? !IsBareName(column->SCName)
                                          : column->SCName.find(closing) != std::string::npos || column->SCName.empty();
        if (bad)
            facts.Found().Fault(column->SCName,
                                "the source column's name '" + column->SCName + "' cannot be written in its SQL",
                                "rename the column in the source, or de-select it");
    }
    const bool needsOwner =
        kind == "MSSQL" || kind == "ORACLE" || (kind == "MySQL" && SessionDef.TargetDBName != "TEXT");
    if (needsOwner && facts.From().OwnerName.empty())
        facts.Found().Fault("", "the source table has no owner, which is written in front of it",
                            kind == "MySQL" ? "set SourceOwnerName to the name of the database"
                                            : "set SourceOwnerName to the schema of the table");
}

}  // namespace varnel::admin
