// Statements and values around the server's packet limit.
#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

constexpr std::size_t kLimit = 16384;

class MySqlPacketLimit : public MySqlTest {
protected:
    static void SetUpTestSuite() { Server().Run({"SET GLOBAL max_allowed_packet = 16384"}); }
    static void TearDownTestSuite() { Server().Run({"SET GLOBAL max_allowed_packet = 16777216"}); }
    void SetUp() override { Server().Run({"CREATE OR REPLACE TABLE shop.p (id INT PRIMARY KEY, t LONGTEXT)"}); }
    static std::string Count() { return Server().Ask("SELECT COUNT(*) FROM shop.p"); }
    /// An INSERT of so many rows of 1,000 characters; the row at broken repeats the first key.
    static std::string Insert(int rows, int broken = -1) {
        std::string text = "INSERT INTO `p` ( `id`, `t`) VALUES ";
        for (int k = 0; k < rows; ++k)
            text += (k > 0 ? ",(" : "(") + std::to_string(k == broken ? 0 : k) + ",'" + std::string(1000, ')') + "')";
        return text + ";";
    }
};

TEST_F(MySqlPacketLimit, LargeInsertsGoInPieces) {
    const auto session = LogIn();
    session->Execute(Insert(100));
    EXPECT_EQ(Server().Ask("SELECT CONCAT(COUNT(*), ' ', SUM(id), ' ', SUM(LENGTH(t))) FROM shop.p"),
              "100 4950 100000");
    EXPECT_TRUE(session->Reset());
}

TEST_F(MySqlPacketLimit, AFailureInAnyPieceRollsAllBack) {
    const auto session = LogIn();
    EXPECT_EQ(ErrorOf([&] { session->Execute(Insert(100, 99)); }), "Duplicate entry '0' for key 'PRIMARY'");
    EXPECT_EQ(Count(), "0");
    session->Execute(Insert(50));
    EXPECT_EQ(Count(), "50");
}

TEST_F(MySqlPacketLimit, AnOpenTransactionStaysOpen) {
    const auto session = LogIn();
    session->Execute("START TRANSACTION");
    session->Execute("INSERT INTO p VALUES (5000, 'before')");
    EXPECT_NE(ErrorOf([&] { session->Execute(Insert(100, 99)); }), "");
    EXPECT_EQ(Shown(First(*session, "SELECT COUNT(*) FROM p")), "Integer 1");
    session->Execute(Insert(60));
    EXPECT_EQ(Count(), "0");  // others see nothing yet
    session->Execute("COMMIT");
    EXPECT_EQ(Count(), "61");
}

TEST_F(MySqlPacketLimit, EveryStatementSizeAroundTheLimitIsTaken) {
    const auto session = LogIn();
    const std::string start = "INSERT INTO p VALUES (1,'" + std::string(kLimit / 2, 'w') + "'),(2,'", end = "')";
    for (std::size_t size = kLimit - 20; size <= kLimit + 4; ++size) {
        std::string statement = start;
        session->Execute(statement.append(size - start.size() - end.size(), 'x').append(end));
        EXPECT_EQ(Count(), "2") << size;
        session->Execute("DELETE FROM p");
    }
    const std::string head = "INSERT INTO p VALUES (3,'";
    session->Execute(head + std::string(kLimit - 8 - head.size() - end.size(), 'x') + end);
    EXPECT_EQ(Count(), "1");
}

TEST_F(MySqlPacketLimit, ARowThatIsTooLargeIsRefusedInWords) {
    const auto session = LogIn();
    const std::string text(20000, 'x');
    const auto says = [](const std::string& error) {
        return error.find("max_allowed_packet is 16384") != std::string::npos;
    };
    EXPECT_TRUE(says(ErrorOf([&] { session->Execute("INSERT INTO p VALUES (1,'a'),(2,'" + text + "')"); })));
    EXPECT_TRUE(says(ErrorOf([&] { session->Execute("UPDATE p SET t = '" + text + "'"); })));
    EXPECT_TRUE(says(ErrorOf([&] { session->Query("SELECT '" + text + "'"); })));
    const auto prepared = session->Prepare("INSERT INTO p VALUES (3, ?)", {});
    const Row large{Value::OfText(text)};
    EXPECT_TRUE(says(ErrorOf([&] { prepared->Execute(large); })));
    EXPECT_EQ(Count(), "0");
    EXPECT_TRUE(session->Alive());
}

TEST_F(MySqlPacketLimit, ManyLongParametersTogetherPassTheLimit) {
    const auto session = LogIn();
    Server().Run({"CREATE OR REPLACE TABLE shop.wide (a LONGTEXT, b LONGTEXT, c LONGTEXT, d LONGBLOB)"});
    const auto prepared = session->Prepare("INSERT INTO wide VALUES (?, ?, ?, ?)", {});
    const std::string text(16000, 'y');
    prepared->Execute(Row{Value::OfText(text), Value::OfText("short"), Value::OfText(text), Value::OfBytes(text)});
    prepared->Execute(Row{Value::OfText("short"), Value::OfText(text), Value(), Value::OfBytes("b")});
    EXPECT_EQ(Server().Ask("SELECT GROUP_CONCAT(LENGTH(a), ' ', LENGTH(b), ' ', IFNULL(LENGTH(c), '-'), ' ', "
                           "LENGTH(d)) FROM shop.wide"),
              "16000 5 16000 16000,5 16000 - 1");
}

}  // namespace
}  // namespace varnel
