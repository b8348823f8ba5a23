// The table of docs/type-mapping.md says what the type mapping does.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "load/MapDataType.h"
#include "tests/docs/Page.h"
#include "tools/sessionfile/ColumnTypes.h"

namespace varnel {
namespace {

using Mapping = std::string (*)(std::string_view);
constexpr Mapping kMappings[] = {MapAccessType, MapFoxProType, MapOracleType, MapMSSQLType, MapMySQLType};
const std::string kHead = "| source type | ACCESS | FOXPRO | ORACLE | MSSQL | MySQL |";

TEST(TypeMappingPage, SaysWhatTheMappingDoes) {
    std::set<std::string> named;
    for (const std::vector<std::string>& row : TableRows("docs/type-mapping.md", kHead)) {
        ASSERT_EQ(row.size(), 1 + std::size(kMappings)) << row[0];
        named.insert(row[0]);
        for (std::size_t k = 0; k < std::size(kMappings); ++k) {
            const std::string word = kMappings[k](row[0]);
            EXPECT_EQ(row[k + 1], word.empty() ? "–" : word) << row[0];
        }
    }
    std::istringstream all(admin::AllTypeNames());
    for (std::string name; all >> name;) EXPECT_TRUE(named.contains(name.substr(0, name.find(',')))) << name;
}

}  // namespace
}  // namespace varnel
