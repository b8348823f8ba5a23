#include "tools/check/TableFacts.h"

#include <algorithm>

#include "platform/CodePage.h"

namespace varnel::admin {

const TableColumn* TableFacts::TargetOf(std::size_t k) const {
    const std::string name = FoldCase(written[k]);
    const auto found = std::find_if(target.begin(), target.end(),
                                    [&](const TableColumn& column) { return FoldCase(column.info.name) == name; });
    return found == target.end() ? nullptr : &*found;
}

std::size_t FindName(const std::vector<std::string>& names, const std::string& name) {
    const std::string folded = FoldCase(name);
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const std::string& other) { return FoldCase(other) == folded; });
    return static_cast<std::size_t>(found - names.begin());
}

}  // namespace varnel::admin
