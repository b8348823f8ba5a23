#include "providers/text/IniFile.h"

#include <memory>
#include <utility>

#include "platform/CodePage.h"
#include "providers/text/Utf8Stream.h"

namespace varnel::text {
namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlank = " \t\r\v\f";
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos) return "";
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::string AllUtf8(std::string_view bytes, int page) {
    Utf8Stream stream(std::make_shared<MemorySource>(std::string(bytes)), page);
    std::string text, block(bytes.size() + kLeastRoom, '\0');
    for (std::size_t count = stream.Read(block); count > 0; count = stream.Read(block)) text.append(block, 0, count);
    return stream.IsMisjudged() ? AllUtf8(bytes, kAnsiPage) : text;
}

/// Takes the first line, without its end, off rest.
std::string_view TakeLine(std::string_view& rest) {
    const std::size_t end = rest.find_first_of("\r\n");
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

/// The name in a section line; a name may hold brackets itself. False for any other line.
bool ReadSectionName(std::string_view line, std::string& name) {
    const std::size_t end = line.rfind(']');
    if (line.front() != '[' || end == std::string_view::npos) return false;
    name = Trimmed(line.substr(1, end - 1));
    return true;
}

}  // namespace

const std::string* IniFile::Section::Find(std::string_view key) const {
    const std::string folded = FoldCase(key);
    for (const Entry& entry : entries) {
        if (entry.key == folded) return &entry.value;
    }
    return nullptr;
}

IniFile::IniFile(std::string_view bytes) {
    const std::string text = AllUtf8(bytes, kUnknownPage);
    std::string_view rest = text;
    std::string name;
    while (!rest.empty()) {
        const std::string_view line = Trimmed(TakeLine(rest));
        if (line.empty() || line.front() == ';') continue;
        if (ReadSectionName(line, name)) {
            byName_.emplace(FoldCase(name), sections_.size());  // keeps the first of a name
            sections_.push_back({name, {}});
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || sections_.empty()) continue;
        sections_.back().entries.push_back(
            {FoldCase(Trimmed(line.substr(0, equals))), std::string(Trimmed(line.substr(equals + 1)))});
    }
}

const IniFile::Section* IniFile::Find(std::string_view name) const {
    const auto found = byName_.find(FoldCase(name));
    return found == byName_.end() ? nullptr : &sections_[found->second];
}

std::string_view Unquoted(std::string_view value) {
    const bool isQuoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace varnel::text
