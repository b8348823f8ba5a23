#include "load/MapDataType.h"

#include <gtest/gtest.h>

#include "repository/model/SessionModel.h"

namespace varnel {
namespace {

// The rows in which one kind departs from the others, and every way of not finding a row.
TEST(MapDataType, GivesTheTypeWord) {
    const struct {
        const char *kind, *input, *direction, *expected;
    } cases[] = {{"ACCESS", "Single", "DEST", "Single"},   {"FOXPRO", "Single", "DEST", "Integer"},
                 {"MySQL", "Single", "DEST", "Int"},       {"ORACLE", "Single", "DEST", "Number"},
                 {"MSSQL", "Single", "DEST", "real"},      {"ORACLE", "Boolean", "DEST", "Varchar2"},
                 {"MySQL", "Currency", "DEST", "Double"},  {"ACCESS", "Numeric", "DEST", "Double"},
                 {"FOXPRO", "Numeric", "DEST", "Numeric"}, {"FOXPRO", "VarNumeric", "DEST", "Double"},
                 {"MSSQL", "TinyInt", "DEST", "Bit"},      {"MSSQL", "UnsignedTinyInt", "DEST", "tinyint"},
                 {"MySQL", "TinyInt", "DEST", ""},         {"ACCESS", "VarWChar", "DEST", ""},
                 {"MSSQL", "Decimal", "DEST", ""},         {"MySQL", "Integer", "SOURCE", "Long"},
                 {"MySQL", "Integer", "dest", "Integer"},  {"TEXT", "Integer", "DEST", "Integer"},
                 {"mysql", "Integer", "DEST", "Integer"}};
    for (const auto& one : cases) {
        SessionDef.TargetDBName = one.kind;
        SessionDef.SourceDBName = "ACCESS";
        EXPECT_EQ(MapDataType(one.input, one.direction), one.expected) << one.kind << " " << one.input;
    }
    ResetSessionModel();
}

}  // namespace
}  // namespace varnel
