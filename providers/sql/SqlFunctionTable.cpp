#include "providers/sql/SqlFunctionTable.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::sql {

const SqlFunction* FindFunction(std::span<const std::span<const SqlFunction>> tables, std::string_view name) {
    const std::string lower = AsciiLower(name);
    for (const std::span<const SqlFunction> table : tables) {
        const auto found =
            std::find_if(table.begin(), table.end(), [&](const SqlFunction& one) { return one.name == lower; });
        if (found != table.end()) return &*found;
    }
    return nullptr;
}

}  // namespace varnel::sql
