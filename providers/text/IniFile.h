// The frame of an INI file: sections of keys and values.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnel::text {

/// Lines that are blank, begin with a semicolon, or hold no "=" say nothing. Blanks around keys and values are left
/// out. Names and keys compare without case; the first section of a name and the first key in it count.
class IniFile {
public:
    struct Entry {
        std::string key;    ///< folded to lower case
        std::string value;  ///< as written, quotes included
    };
    struct Section {
        std::string name;
        std::vector<Entry> entries;
        /// The value as written; null when there is no such key.
        const std::string* Find(std::string_view key) const;
    };

    IniFile() = default;
    /// bytes: UTF-16 when a byte-order mark says so, else UTF-8 when it is well-formed, else Windows-1252.
    explicit IniFile(std::string_view bytes);

    /// Null when there is no such section.
    const Section* Find(std::string_view name) const;

private:
    std::vector<Section> sections_;
    std::unordered_map<std::string, std::size_t> byName_;  // by folded name
};

/// Without one enclosing pair of " or of '.
std::string_view Unquoted(std::string_view value);

}  // namespace varnel::text
