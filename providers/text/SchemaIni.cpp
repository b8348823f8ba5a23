#include "providers/text/SchemaIni.h"

#include <unordered_map>
#include <unordered_set>

#include "platform/CodePage.h"
#include "providers/text/ColLine.h"
#include "providers/text/FormatWords.h"

namespace varnel::text {
namespace {

/// Col1, Col2 and so on; a gap in the numbers ends the columns.
std::vector<ColumnSpec> ReadColumns(const IniFile::Section& section, std::string_view fileName) {
    std::unordered_map<std::string_view, const std::string*> byKey;
    for (const IniFile::Entry& entry : section.entries) byKey.emplace(entry.key, &entry.value);
    std::vector<ColumnSpec> columns;
    for (;;) {
        const std::string number = std::to_string(columns.size() + 1);
        const auto found = byKey.find("col" + number);
        if (found == byKey.end()) return columns;
        ColumnSpec column;
        if (!ReadColLine(*found->second, column)) throw OptionError(fileName, "Col" + number);
        columns.push_back(std::move(column));
    }
}

}  // namespace

TextFormat SchemaIni::FormatOf(std::string_view fileName, const TextFormat& otherwise) const {
    TextFormat format = otherwise;
    if (const IniFile::Section* section = ini_.Find(fileName)) {
        std::unordered_set<std::string_view> seen;
        for (const IniFile::Entry& entry : section->entries) {
            if (seen.insert(entry.key).second) SetFormatOption(format, entry.key, Unquoted(entry.value), fileName);
        }
        format.columns = ReadColumns(*section, fileName);
    }
    CheckFormat(format, fileName);
    return format;
}

}  // namespace varnel::text
