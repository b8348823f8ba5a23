// What writing statements mean: strict, without backslash escapes; everything else as the log-in has it.
#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

class MySqlWriting : public MySqlTest {
protected:
    void SetUp() override {
        Server().Run(
            {"CREATE OR REPLACE TABLE shop.w (id INT PRIMARY KEY AUTO_INCREMENT, name VARCHAR(10), n TINYINT, d "
             "DATETIME)"});
    }
};

TEST_F(MySqlWriting, BackslashesAreStoredAsWritten) {
    const auto session = LogIn();
    const char* texts[] = {"a\\b", "ends\\", "\\'; x", "%_\\%", "\\n"};
    std::string rows;
    for (const std::string text : texts) {
        std::string doubled;
        for (const char c : text) doubled.append(c == '\'' ? 2 : 1, c);
        rows += (rows.empty() ? "('" : ",('") + doubled + "')";
    }
    session->Execute("INSERT INTO `w` ( `name`) VALUES " + rows + ";");
    const auto stored = Rows(*session, "SELECT name FROM w ORDER BY id");
    ASSERT_EQ(stored.size(), std::size(texts));
    for (std::size_t k = 0; k < stored.size(); ++k) EXPECT_EQ(stored[k][0].AsText(), texts[k]);
}

TEST_F(MySqlWriting, FiltersRunUnderTheLogInsOwnMode) {
    const auto session = LogIn("INITSTMT={SET sql_mode='PIPES_AS_CONCAT'}");
    session->Execute("INSERT INTO w (name, n) VALUES ('O''Brien', 5 || 1)");
    EXPECT_EQ(Shown(First(*session, "SELECT name FROM w WHERE name = 'O\\'Brien'")), "Text O'Brien");
    EXPECT_EQ(Shown(First(*session, "SELECT n FROM w")), "Integer 51");  // the log-in's mode is added to, not replaced
    EXPECT_EQ(Shown(First(*session, "SELECT @@sql_mode")), "Text PIPES_AS_CONCAT");
    session->Execute("UPDATE w SET n = 300");  // not strict here: cut to the largest value
    EXPECT_EQ(Shown(First(*session, "SELECT n FROM w")), "Integer 127");
}

TEST_F(MySqlWriting, ValuesThatDoNotFitAreRefused) {
    const auto session = LogIn("INITSTMT={SET sql_mode=''}");
    for (const char* values : {"(name) VALUES ('longer than ten')", "(n) VALUES (128)", "(n) VALUES ('T')",
                               "(d) VALUES ('2003-02-30-13-05-09')", "(id, name) VALUES (900, 'ok'), (900, 'again')"}) {
        EXPECT_NE(ErrorOf([&] { session->Execute("INSERT INTO w " + std::string(values)); }), "") << values;
        EXPECT_NE(ErrorOf([&] { session->Execute("REPLACE INTO w " + std::string(values) + ", (1, 2, 3)"); }), "");
        EXPECT_NE(ErrorOf([&] { session->Prepare("INSERT INTO w " + std::string(values), {})->Execute({}); }), "")
            << values;
    }
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.w"), "0");
}

TEST_F(MySqlWriting, DashedMomentsAreTaken) {
    const auto session = LogIn();
    session->Execute("INSERT INTO `w` ( `d`) VALUES ('2003-07-15-13-05-09'),('1899-12-30-13-05-09');");
    const auto rows = Rows(*session, "SELECT d FROM w ORDER BY id");
    EXPECT_EQ(Shown(rows.at(0).at(0)), "DateTime 2003-07-15 13:05:09");
    EXPECT_EQ(Shown(rows.at(1).at(0)), "DateTime 1899-12-30 13:05:09");
}

TEST_F(MySqlWriting, ARunOfInsertsCostsNoFurtherRoundTrips) {
    const auto session = LogIn();
    const auto settings = [] {
        return Server().Ask(
            "SELECT variable_value FROM information_schema.global_status"
            " WHERE variable_name = 'COM_SET_OPTION'");
    };
    session->Execute("INSERT INTO w (name) VALUES ('first')");
    const auto prepared = session->Prepare("INSERT INTO w (name) VALUES (?)", {});
    const std::string before = settings();
    for (int k = 0; k < 10; ++k) {
        session->Execute("INSERT INTO w (name) VALUES ('next')");
        prepared->Execute(Row{Value::OfText("more")});
    }
    EXPECT_EQ(settings(), before);
    session->Execute("UPDATE w SET n = 1");
    EXPECT_NE(settings(), before);
}

TEST_F(MySqlWriting, OneStatementAtATime) {
    const auto session = LogIn();
    const std::string two = "INSERT INTO w (name) VALUES ('a'); INSERT INTO w (name) VALUES ('b')";
    EXPECT_NE(ErrorOf([&] { session->Execute(two); }), "");
    EXPECT_NE(ErrorOf([&] { session->Query("SELECT 1; SELECT 2"); }), "");
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.w"), "0");
    session->Execute("INSERT INTO w\r(name) VALUES ('a')\r;");
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.w"), "1");
}

}  // namespace
}  // namespace varnel
