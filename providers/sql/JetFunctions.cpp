#include "providers/sql/JetFunctions.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::sql {
namespace {

constexpr JetFunction kChoices[] = {
    {"iif", 3, 3, adVariant, true, nullptr},
    {"switch", 2, 64, adVariant, true, nullptr},
    {"choose", 2, 64, adVariant, true, nullptr},
};

}  // namespace

const JetFunction* FindJetFunction(std::string_view name) {
    const std::string lower = AsciiLower(name);
    for (const auto part :
         {std::span<const JetFunction>(kChoices), TextFunctions(), NumberFunctions(), DateFunctions()}) {
        const auto found =
            std::find_if(part.begin(), part.end(), [&](const JetFunction& f) { return f.name == lower; });
        if (found != part.end()) return &*found;
    }
    return nullptr;
}

}  // namespace varnel::sql
