#include "load/MapDataType.h"

#include <gtest/gtest.h>

#include "repository/model/SessionModel.h"

namespace varnel {
namespace {

struct MapCase {
    const char* name;
    const char* kind;
    const char* input;
    const char* direction;
    const char* expected;
};

class MapDataTypeTest : public testing::TestWithParam<MapCase> {
    void TearDown() override { ResetSessionModel(); }
};

TEST_P(MapDataTypeTest, GivesTheTypeWord) {
    SessionDef.TargetDBName = GetParam().kind;
    SessionDef.SourceDBName = "ACCESS";
    EXPECT_EQ(MapDataType(GetParam().input, GetParam().direction), GetParam().expected);
}

// The rows in which one kind departs from the others, and every way of not finding a row.
INSTANTIATE_TEST_SUITE_P(TypeWords, MapDataTypeTest,
                         testing::Values(MapCase{"SingleAccess", "ACCESS", "Single", "DEST", "Single"},
                                         MapCase{"SingleFoxPro", "FOXPRO", "Single", "DEST", "Integer"},
                                         MapCase{"SingleMySQL", "MySQL", "Single", "DEST", "Int"},
                                         MapCase{"SingleOracle", "ORACLE", "Single", "DEST", "Number"},
                                         MapCase{"SingleMSSQL", "MSSQL", "Single", "DEST", "real"},
                                         MapCase{"BooleanOracle", "ORACLE", "Boolean", "DEST", "Varchar2"},
                                         MapCase{"CurrencyMySQL", "MySQL", "Currency", "DEST", "Double"},
                                         MapCase{"NumericAccess", "ACCESS", "Numeric", "DEST", "Double"},
                                         MapCase{"NumericFoxPro", "FOXPRO", "Numeric", "DEST", "Numeric"},
                                         MapCase{"VarNumericFoxPro", "FOXPRO", "VarNumeric", "DEST", "Double"},
                                         MapCase{"SignedByteMSSQL", "MSSQL", "TinyInt", "DEST", "Bit"},
                                         MapCase{"UnsignedByteMSSQL", "MSSQL", "UnsignedTinyInt", "DEST", "tinyint"},
                                         MapCase{"SignedByteElsewhere", "MySQL", "TinyInt", "DEST", ""},
                                         MapCase{"UpperCaseC", "ACCESS", "VarWChar", "DEST", ""},
                                         MapCase{"UnknownName", "MSSQL", "Decimal", "DEST", ""},
                                         MapCase{"SourceSide", "MySQL", "Integer", "SOURCE", "Long"},
                                         MapCase{"OtherDirection", "MySQL", "Integer", "dest", "Integer"},
                                         MapCase{"TextTarget", "TEXT", "Integer", "DEST", "Integer"},
                                         MapCase{"OtherCaseOfKind", "mysql", "Integer", "DEST", "Integer"}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
