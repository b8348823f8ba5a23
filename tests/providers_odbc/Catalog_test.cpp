#include "providers/odbc/OdbcCatalog.h"

#include <gtest/gtest.h>

namespace varnel::odbc {
namespace {

TEST(OdbcCatalogTest, LeavesOutWhatServersKeepForThemselves) {
    const struct {
        const char *owner, *table;
        bool isSystem;
    } cases[] = {
        {"SYS", "DUAL", true},       {"sys", "objects", true},     {"INFORMATION_SCHEMA", "TABLES", true},
        {"APEX_220200", "X", true},  {"SCOTT", "EMP", false},      {"SCOTT", "BIN$abc==$0", true},
        {"dbo", "Orders", false},    {"dbo", "sysdiagrams", true}, {"", "t", false},
        {"SYSTEMS", "PARTS", false},
    };
    for (const auto& row : cases) EXPECT_EQ(IsSystemTable(row.owner, row.table), row.isSystem) << row.owner;
}

}  // namespace
}  // namespace varnel::odbc
