// Where a multi-row INSERT is taken apart, and that the pieces insert the same rows.
#include "providers/mysql/InsertSplitter.h"

#include <gtest/gtest.h>

namespace varnel::mysql {
namespace {

struct SplitCase {
    const char* statement;
    const char* head;
    std::vector<const char*> rows;
    const char* tail;
};

TEST(InsertSplitter, FindsTheBordersOfRows) {
    const SplitCase cases[] = {
        {"INSERT INTO `t` ( `a`, `b`) VALUES (1,'x'),(2,'y');",
         "INSERT INTO `t` ( `a`, `b`) VALUES",
         {"(1,'x')", "(2,'y')"},
         ""},
        {"insert into t values(1),\r\n (2)  ", "insert into t values", {"(1)", "(2)"}, ""},
        {"INSERT INTO t VALUES ('),(''),(', \"),(\")", "INSERT INTO t VALUES", {"('),(''),(', \"),(\")"}, ""},
        {"INSERT INTO t VALUES ('a\\'),('b')", "INSERT INTO t VALUES", {"('a\\')", "('b')"}, ""},
        {"INSERT INTO `values (` VALUE (NOW(),(1+2)*3),(NULL)",
         "INSERT INTO `values (` VALUE",
         {"(NOW(),(1+2)*3)", "(NULL)"},
         ""},
        {"INSERT INTO t (`values`, values_2) VALUES (1)", "INSERT INTO t (`values`, values_2) VALUES", {"(1)"}, ""},
        {"/* ( */ REPLACE INTO t VALUES (1 /* ),( */),(2) ;",
         "/* ( */ REPLACE INTO t VALUES",
         {"(1 /* ),( */)", "(2)"},
         ""},
        {"INSERT INTO t VALUES (1),(2) ON DUPLICATE KEY UPDATE a = VALUES(a);",
         "INSERT INTO t VALUES",
         {"(1)", "(2)"},
         " ON DUPLICATE KEY UPDATE a = VALUES(a)"},
    };
    for (const SplitCase& expected : cases) {
        SCOPED_TRACE(expected.statement);
        const auto parts = SplitInsert(expected.statement);
        ASSERT_TRUE(parts.has_value());
        EXPECT_EQ(parts->head, expected.head);
        EXPECT_EQ(parts->rows, std::vector<std::string_view>(expected.rows.begin(), expected.rows.end()));
        EXPECT_EQ(parts->tail, expected.tail);
    }
}

TEST(InsertSplitter, LeavesOtherStatementsWhole) {
    for (const char* statement :
         {"INSERT INTO t SELECT * FROM u", "UPDATE t SET a = 1", "SELECT 'INSERT VALUES (1)'",
          "INSERT INTO t VALUES ('open", "INSERT INTO t VALUES (1", "INSERT INTO t VALUES (1),", ""})
        EXPECT_FALSE(SplitInsert(statement).has_value()) << statement;
}

TEST(InsertSplitter, FillsPiecesUpToTheLimit) {
    const auto parts = SplitInsert("INSERT INTO t VALUES (1),(22),(333),(4444) ON DUPLICATE KEY UPDATE a=1");
    const std::string head = "INSERT INTO t VALUES ", tail = " ON DUPLICATE KEY UPDATE a=1";
    const auto pieces = [&](std::size_t most) {
        std::vector<std::string> all;
        std::string piece;
        for (InsertPieces left(*parts, most); left.Next(piece);) all.push_back(piece);
        return all;
    };
    const std::size_t around = head.size() + tail.size();
    EXPECT_EQ(pieces(around + 24), (std::vector<std::string>{head + "(1),(22),(333),(4444)" + tail}));
    EXPECT_EQ(pieces(around + 8),
              (std::vector<std::string>{head + "(1),(22)" + tail, head + "(333)" + tail, head + "(4444)" + tail}));
    EXPECT_EQ(pieces(around + 7).size(), 4U);
}

}  // namespace
}  // namespace varnel::mysql
