// Streams of rows: bounded memory, an early end, and a broken link that never looks like the last row.
#include <unistd.h>

#include <fstream>

#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

/// Resident memory of this process in bytes.
long ResidentBytes() {
    long pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

constexpr const char* kManyRows =
    "SELECT CAST(seq AS SIGNED), CONCAT('row number ', seq), REPEAT('x', 200) FROM seq_1_to_";

class MySqlStream : public MySqlTest {
protected:
    /// Reads so many rows of that many and gives the memory then in use.
    static long MemoryAfter(ProviderSession& session, int rows) {
        const auto reader = session.Query(kManyRows + std::to_string(rows));
        Row row(3);
        int read = 0;
        while (reader->Next(row)) EXPECT_EQ(row[0].AsInteger(), ++read);
        EXPECT_EQ(read, rows);
        return ResidentBytes();
    }
};

TEST_F(MySqlStream, MemoryDoesNotGrowWithTheRows) {
    const auto session = LogIn();
    const long few = MemoryAfter(*session, 10'000);
    const long many = MemoryAfter(*session, 500'000);  // over 100 MB of rows
    EXPECT_LT(many - few, 4 << 20);
}

TEST_F(MySqlStream, ASmallRestIsReadAndALargeOneEndsTheConnection) {
    const auto session = LogIn();
    Row row(3);
    for (const int rows : {1, 500}) {
        EXPECT_TRUE(session->Query(kManyRows + std::to_string(rows))->Next(row));
        EXPECT_TRUE(session->Reset());
    }
    EXPECT_TRUE(session->Query(std::string(kManyRows) + "10000000")->Next(row));
    EXPECT_FALSE(session->Reset());
    EXPECT_FALSE(session->Alive());
    EXPECT_NE(ErrorOf([&] { session->Execute("DO 1"); }), "");
}

TEST_F(MySqlStream, NothingElseRunsWhileRowsAreRead) {
    const auto session = LogIn();
    const auto reader = session->Query(std::string(kManyRows) + "100");
    EXPECT_NE(ErrorOf([&] { session->Query("SELECT 1"); }), "");
    EXPECT_FALSE(session->Alive());
    Row row(3);
    int rows = 0;
    while (reader->Next(row)) ++rows;
    EXPECT_EQ(rows, 100);  // undisturbed
    EXPECT_FALSE(reader->Next(row));
    EXPECT_TRUE(session->Alive());
}

TEST_F(MySqlStream, StatementsMayEndWhileRowsAreRead) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE ending (id INT)");
    auto prepared = session->Prepare("INSERT INTO ending VALUES (1)", {});
    auto appender = session->OpenAppender("SELECT id FROM ending");
    appender->Append(Row{Value::OfInteger(2)}, {true});
    const auto reader = session->Query(std::string(kManyRows) + "5000");
    Row row(3);
    int rows = 0;
    for (; reader->Next(row); ++rows) {
        if (rows == 10) prepared.reset();
        if (rows == 20) appender.reset();
    }
    EXPECT_EQ(rows, 5000);
    EXPECT_TRUE(session->Reset() && session->Alive());
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.ending"), "1");
}

TEST_F(MySqlStream, AReaderOutlivesItsSession) {
    auto session = LogIn();
    const auto reader = session->Query(std::string(kManyRows) + "5000");
    session.reset();
    Row row(3);
    int rows = 0;
    while (reader->Next(row)) ++rows;
    EXPECT_EQ(rows, 5000);
}

TEST_F(MySqlStream, AnErrorAmongTheRowsIsRaised) {
    const auto session = LogIn();
    const auto reader = session->Query("SELECT IF(seq < 5000, seq, (SELECT 1 UNION SELECT 2)) FROM seq_1_to_10000");
    Row row(1);
    const std::string text = ErrorOf([&] {
        while (reader->Next(row)) {
        }
    });
    EXPECT_EQ(text, "Subquery returns more than 1 row");
    EXPECT_FALSE(reader->Next(row));
}

TEST_F(MySqlStream, AProceduresRowsAreRead) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE PROCEDURE two_results() BEGIN SELECT 1; SELECT 2; END");
    const auto rows = Rows(*session, "CALL two_results()");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(Shown(rows[0][0]), "Integer 1");
    EXPECT_EQ(Shown(First(*session, "SELECT 3")), "Integer 3");
    session->Execute("CALL two_results()");
    EXPECT_EQ(session->Query("DO 1"), nullptr);
}

}  // namespace
}  // namespace varnel
