// The names of columns and of tables.
#include <gtest/gtest.h>
#include <filesystem>

#include "platform/StoredPath.h"
#include "providers/text/ColumnNames.h"
#include "providers/text/TextDatabase.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

TEST(TextColumnNames, AreReportedInTheSafeForm) {
    struct NameCase {
        const char* header;
        const char* names;
    };
    for (const NameCase& row : {
             NameCase{"First.Name,[x],a!b`c", "First#Name|(x)|a_b_c"},
             NameCase{"A,,\"\",  ", "A|F2|F3|F4"},
             NameCase{"Name,name,NAME,Name1", "Name|name2|NAME3|Name1"},
             NameCase{"F2,", "F2|F21"},
             NameCase{" lead,trail ,a\x01"
                      "b",
                      "lead|trail|a_b"},
             NameCase{"\"quoted, name\",\"x\"y", "quoted, name|xy"},
             NameCase{"\x81,b", "\xEF\xBF\xBD|b"},
         }) {
        EXPECT_EQ(ReadText(std::string(row.header) + "\n1,2,3\n").names, row.names);
    }
    EXPECT_EQ(ReadText("1,2,3\n", "ColNameHeader=False").names, "F1|F2|F3");
    EXPECT_EQ(ReadText("x,y\n1,2\n", "Col1=\"My [x]\" Long\r\nCol2=A.B Long").names, "My (x)|A#B");
}

TEST(TextColumnNames, AreFoundInFourWays) {
    const TempFolder folder;
    const std::string longName = std::string(60, 'n') +
                                 "\xC3\xA4\xC3\xB6"
                                 "123456";
    folder.Write("t.csv", "First.Name,[x],F1,\xC3\x84pfel," + longName + "\n1,2,3,4,5\n");
    TextDatabase database(folder.Path());
    const auto table = database.OpenTable("t.csv");
    struct FindCase {
        std::string name;
        int position;  // -1: not found
    };
    for (const FindCase& row : {
             FindCase{"First#Name", 0},
             FindCase{"first.name", 0},
             FindCase{"(X)", 1},
             FindCase{"[x]", 1},
             FindCase{"f1", 2},  // a reported name comes before a position
             FindCase{"F2", 1},
             FindCase{"\xC3\xA4PFEL", 3},
             FindCase{longName, 4},
             FindCase{std::string(60, 'N') + "\xC3\xA4\xC3\xB6"
                                             "12",
                      4},
             FindCase{std::string(60, 'N') + "\xC3\xA4\xC3\xB6"
                                             "1",
                      -1},
             FindCase{"F6", -1},
             FindCase{"", -1},
         }) {
        const auto found = table->FindColumn(row.name);
        EXPECT_EQ(found ? static_cast<int>(*found) : -1, row.position) << row.name;
    }
}

class TableNamesTest : public testing::Test {
protected:
    TableNamesTest() {
        std::filesystem::create_directory(folder_.Path() + "/sub");
        folder_.Write("orders.csv", "A\n1\n");
        folder_.Write("orders.csv.done_On_18_Nov_26", "A\n2\n");
        folder_.Write("a#b.csv", "A\n3\n");
        folder_.Write("x.y.z.txt", "A\n4\n");
        folder_.Write("both.csv", "A\n5\n");
        folder_.Write("Both#csv", "A\n6\n");
        folder_.Write("noext", "A\n7\n");
        folder_.Write("sub/deep.csv", "A;B\n8;9\n");
        folder_.Write("sub/Schema.ini", "[deep.csv]\nFormat=Delimited(;)\n");
        folder_.Write("../outside_of_the_test.csv", "A\n10\n");
    }
    ~TableNamesTest() override { std::filesystem::remove(folder_.Path() + "/../outside_of_the_test.csv"); }

    /// The rows of a table, or the error's text.
    std::string Opened(const std::string& name, const std::string& options = "") const {
        std::string rows;
        const std::string error = ErrorOf([&] { rows = ReadTable(folder_, name, options).rows; });
        return error.empty() ? rows : error;
    }
    static std::string Missing(const std::string& name) {
        return "The Jet database engine cannot find the input table or query '" + name + "'.";
    }
    TempFolder folder_;
};

TEST_F(TableNamesTest, AreFoundInOrder) {
    EXPECT_EQ(Opened("orders.csv"), "1");
    EXPECT_EQ(Opened("orders#csv"), "1");
    EXPECT_EQ(Opened("ORDERS#CSV"), "1");
    EXPECT_EQ(Opened("[orders.csv]"), "1");
    EXPECT_EQ(Opened("a#b#csv"), "3");
    EXPECT_EQ(Opened("A#B.csv"), "3");
    EXPECT_EQ(Opened("x#y#z#txt"), "4");
    EXPECT_EQ(Opened("both#csv"), "5");  // the exact case of another form comes before another case of this one
    EXPECT_EQ(Opened("Both#csv"), "6");
    EXPECT_EQ(Opened("noext"), "7");
    for (const char* name : {"orders", "orders.cs", "orders.csv.done", "sub", "", ".", "..", "*.csv"}) {
        EXPECT_EQ(Opened(name), Missing(name));
    }
}

TEST_F(TableNamesTest, WithPathsStayInside) {
    EXPECT_EQ(Opened("sub\\deep.csv"), "8|9");
    EXPECT_EQ(Opened("sub/deep#csv"), "8|9");
    EXPECT_EQ(Opened("..\\outside_of_the_test.csv"), "'..' leads out of the folder that holds the text files");
    EXPECT_EQ(Opened("sub/../../outside_of_the_test.csv"),
              "'sub/../..' leads out of the folder that holds the text files");
    EXPECT_EQ(Opened("[sub].[..\\orders.csv]"), Missing("[sub].[..\\orders.csv]"));
}

TEST_F(TableNamesTest, FullPathsAreAccepted) {
    const std::string before = ApplicationFolder();
    SetApplicationFolder(folder_.Path());
    std::filesystem::create_directory(folder_.Path() + "/drives");
    std::filesystem::create_directory_symlink(folder_.Path() + "/sub", folder_.Path() + "/drives/C");
    folder_.Write("sub/one.csv", "A\n11\n");
    EXPECT_EQ(Opened("C:\\one.csv"), "11");
    EXPECT_EQ(Opened("[C:\\].[one.csv]"), "11");
    EXPECT_EQ(Opened("[C:\\].[deep#csv]"), "8|9");
    EXPECT_EQ(Opened("[Text;DATABASE=C:\\;HDR=No].[one.csv]"), "\"A\"\n\"11\"");
    EXPECT_EQ(Opened(folder_.Path() + "/sub/deep.csv"), "8|9");
    EXPECT_EQ(Opened("[" + folder_.Path() + "/sub/].[deep.csv]"), "8|9");
    SetApplicationFolder(before);
}

TEST_F(TableNamesTest, AreListedWithoutSchemaIni) {
    folder_.Write("SCHEMA.INI", "");
    TextDatabase database(folder_.Path());
    EXPECT_EQ(database.TableNames(), (std::vector<std::string>{"a#b.csv", "Both#csv", "both.csv", "noext", "orders.csv",
                                                               "orders.csv.done_On_18_Nov_26", "x.y.z.txt"}));
}

TEST_F(TableNamesTest, DatabaseMayBeNamedByAFile) {
    EXPECT_EQ(TextDatabase(folder_.Path() + "/sub/deep.csv").TableNames(), std::vector<std::string>{"deep.csv"});
    EXPECT_EQ(TextDatabase(folder_.Path() + "/sub/").TableNames(), std::vector<std::string>{"deep.csv"});
    const std::string missing = folder_.Path() + "/none";
    EXPECT_EQ(ErrorOf([&] { TextDatabase{missing}; }), "'" + missing + "' is not a valid path.");
    EXPECT_EQ(ErrorOf([&] { TextDatabase{""}; }), "'' is not a valid path.");
}

}  // namespace
}  // namespace varnel::text
