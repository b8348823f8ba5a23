#include <gmock/gmock.h>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::HasSubstr;

const std::string kDatabase = "Provider=SQLite;Data Source=a.db";

class Tables : public AdminTest {
protected:
    Tables() {
        Sql("a.db", "CREATE TABLE [Order Lines] (No LONG NOT NULL PRIMARY KEY, Price DECIMAL(12,4), Name TEXT(50))");
    }
};

TEST_F(Tables, AreListedAndDescribed) {
    EXPECT_EQ(Output({"tables", kDatabase}),
              "Owner  Name         Type\n-----  -----------  -----\n       Order Lines  table\n1 table\n");
    EXPECT_EQ(Output({"describe", kDatabase, "order lines"}),
              "Column  Type      Size  Digits  Scale  Database type  Null  Remarks\n"
              "------  --------  ----  ------  -----  -------------  ----  -------\n"
              "No      Integer      4      10         LONG           no    key\n"
              "Price   Numeric     19      12      4  DECIMAL(12,4)  yes\n"
              "Name    VarWchar    50                 TEXT(50)       yes\n");
}

TEST_F(Tables, AreJsonForPrograms) {
    EXPECT_EQ(Output({"tables", kDatabase, "--json"}),
              "[\n  {\n    \"owner\": \"\",\n    \"name\": \"Order Lines\",\n    \"type\": \"table\"\n  }\n]\n");
    EXPECT_THAT(
        Output({"describe", kDatabase, "Order Lines", "--json"}),
        HasSubstr("\"name\": \"Price\",\n      \"type\": \"Numeric\",\n      \"size\": 19,\n      \"precision\": 12,\n"
                  "      \"scale\": 4,\n      \"database_type\": \"DECIMAL(12,4)\",\n      \"nullable\": true,\n"
                  "      \"key\": false,\n      \"assigned\": false\n"));
}

TEST_F(Tables, ThatAreNotThereAreAFailure) {
    const ProgramResult described = Admin({"describe", kDatabase, "Nowhere"});
    EXPECT_EQ(described.status, 1);
    EXPECT_THAT(described.err, HasSubstr("'Nowhere'"));
    EXPECT_EQ(Admin({"describe", kDatabase}).status, 2);
}

}  // namespace
}  // namespace varnel
