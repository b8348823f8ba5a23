#include "tools/check/NearestName.h"

#include <algorithm>

#include "platform/CodePage.h"

namespace varnel::admin {
namespace {

/// Letters to change, add or leave out to get from a to b.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t k = 0; k <= b.size(); ++k) row[k] = k;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t k = 1; k <= b.size(); ++k) {
            const std::size_t changed = diagonal + (a[i - 1] == b[k - 1] ? 0 : 1);
            diagonal = row[k];
            row[k] = std::min({changed, row[k] + 1, row[k - 1] + 1});
        }
    }
    return row[b.size()];
}

/// Blanks, underscores and dots are what names are most often written without.
std::string Plain(const std::string& name) {
    std::string plain = FoldCase(name);
    std::erase_if(plain, [](char c) { return c == ' ' || c == '_' || c == '.' || c == '-'; });
    return plain;
}

}  // namespace

std::string NearestName(const std::string& written, const std::vector<std::string>& names) {
    const std::string plain = Plain(written);
    std::size_t best = std::max<std::size_t>(1, plain.size() / 3) + 1;
    std::string nearest;
    for (const std::string& name : names) {
        const std::size_t distance = Distance(plain, Plain(name));
        if (distance >= best) continue;
        best = distance;
        nearest = name;
    }
    return nearest;
}

std::string DidYouMean(const std::string& written, const std::vector<std::string>& names) {
    const std::string nearest = NearestName(written, names);
    return nearest.empty() ? "" : "did you mean '" + nearest + "'? ";
}

std::string ShortList(const std::vector<std::string>& names) {
    constexpr std::size_t kShown = 8;
    if (names.empty()) return "none";
    std::string list;
    for (std::size_t k = 0; k < std::min(names.size(), kShown); ++k) {
        if (k > 0) list += ", ";
        list += "'" + names[k] + "'";
    }
    if (names.size() > kShown) list += " and " + std::to_string(names.size() - kShown) + " more";
    return list;
}

}  // namespace varnel::admin
