#include "providers/access/Catalog.h"

#include <algorithm>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::uint32_t kSystemObject = 0x80000000, kHiddenBySystem = 0x00000002;
constexpr std::uint32_t kQueryKind = 0xF0;  // 0 for a select, other bits for the queries that change something

}  // namespace

bool CatalogEntry::IsUserTable() const {
    if (type != kLocalTable || (flags & (kSystemObject | kHiddenBySystem)) != 0) return false;
    return !name.starts_with("MSys") && !name.starts_with("~");
}

bool CatalogEntry::IsSelectQuery() const {
    return type == kSavedQuery && (flags & kQueryKind) == 0 && !name.starts_with("~");
}

bool CatalogEntry::IsTableOrQuery() const {
    return type == kLocalTable || type == kOdbcLink || type == kSavedQuery || type == kFileLink;
}

Catalog::Catalog(std::vector<CatalogEntry> entries, std::string damage)
    : entries_(std::move(entries)), damage_(std::move(damage)) {}

void ThrowNoTable(std::string_view name, const Catalog& catalog) {
    const std::string text =
        "The Jet database engine cannot find the input table or query '" + std::string(name) + "'.";
    if (catalog.Damage().empty()) throw Error(ErrorKind::Constraint, std::string(name), text);
    throw Error(ErrorKind::Corrupt, std::string(name), text + " The list of tables is damaged. " + catalog.Damage());
}

const CatalogEntry* Catalog::Find(std::string_view name) const {
    const std::string folded = FoldCase(name);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const CatalogEntry& entry) {
        return entry.IsTableOrQuery() && FoldCase(entry.name) == folded;
    });
    return found == entries_.end() ? nullptr : &*found;
}

std::vector<std::string> Catalog::UserTables() const {
    std::vector<std::pair<std::string, std::string>> names;  // the first one folded
    for (const CatalogEntry& entry : entries_) {
        if (entry.IsUserTable()) names.emplace_back(FoldCase(entry.name), entry.name);
    }
    std::sort(names.begin(), names.end());
    std::vector<std::string> sorted;
    sorted.reserve(names.size());
    for (auto& [folded, name] : names) sorted.push_back(std::move(name));
    return sorted;
}

}  // namespace varnel::access
