#include "tools/sessionfile/ColumnTypes.h"

#include <array>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

constexpr std::int32_t kMustBeStated = -1;

struct KnownType {
    std::string_view name;
    std::int32_t width;
};

constexpr std::array<KnownType, 26> kTypes{{
    {"BigInt", 19},
    {"Binary", kMustBeStated},
    {"Boolean", 1},
    {"Char", kMustBeStated},
    {"Currency", 19},
    {"Date", 8},
    {"DBDate", 8},
    {"DBTime", 8},
    {"DBTimeStamp", 8},
    {"Decimal", kMustBeStated},
    {"Double", 15},
    {"GUID", 16},
    {"Integer", 10},
    {"LongVarBinary", 0},
    {"LongVarChar", 0},
    {"LongVarWChar", 0},
    {"Numeric", kMustBeStated},
    {"Single", 7},
    {"SmallInt", 5},
    {"TinyInt", 3},
    {"UnsignedTinyInt", 3},
    {"VarBinary", kMustBeStated},
    {"Varchar", kMustBeStated},
    {"VarNumeric", kMustBeStated},
    {"VarWchar", kMustBeStated},
    {"Wchar", kMustBeStated},
}};

const KnownType* Find(std::string_view name) {
    for (const KnownType& type : kTypes)
        if (EqualNoCase(type.name, name)) return &type;
    return nullptr;
}

}  // namespace

std::optional<std::string> StoredTypeName(std::string_view written) {
    const KnownType* type = Find(written);
    return type ? std::optional<std::string>(type->name) : std::nullopt;
}

std::string AllTypeNames() {
    std::string names;
    for (const KnownType& type : kTypes) names += (names.empty() ? "" : ", ") + std::string(type.name);
    return names;
}

bool NeedsWidth(std::string_view storedName) {
    const KnownType* type = Find(storedName);
    return type && type->width == kMustBeStated;
}

std::int32_t UsualWidth(std::string_view storedName) {
    const KnownType* type = Find(storedName);
    return type && type->width != kMustBeStated ? type->width : 0;
}

}  // namespace varnel::admin
