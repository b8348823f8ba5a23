// Reading and writing one file side by side: stable reads, one connection per file, several processes, killed ones.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

void Fill(SqlTestDatabase& database, int rows) {
    database.Run("CREATE TABLE T (ID Long, N Memo)");
    const auto appender = database.Session().OpenAppender("SELECT ID, N FROM T");
    for (int i = 1; i <= rows; ++i)
        appender->Append(std::vector<Value>{Value::OfInteger(i), Value::OfText("row " + std::to_string(i))},
                         {true, true});
}

/// Reads all remaining rows: how many, and the sum of their first column.
std::pair<int, std::int64_t> Drain(RowReader& rows) {
    std::vector<Value> row(rows.Columns().size());
    std::pair<int, std::int64_t> seen{0, 0};
    while (rows.Next(row)) ++seen.first, seen.second += row[0].AsInteger();
    return seen;
}

TEST(Sharing, AReadKeepsTheRowsThatWereThere) {
    const struct {
        const char* name;
        std::function<void(SqlTestDatabase&)> change;
    } cases[] = {
        {"emptied", [](auto& d) { d.Run("DELETE FROM T"); }},
        {"dropped", [](auto& d) { d.Run("DROP TABLE T"); }},
        {"updated", [](auto& d) { d.Run("UPDATE T SET ID=-1, N=''"); }},
        {"inserted", [](auto& d) { d.Run("INSERT INTO T VALUES (99999,'x')"); }},
        {"appended", [](auto& d) { d.Append("SELECT ID FROM T", {Value::OfInteger(99'999)}); }},
        {"prepared",
         [](auto& d) {
             d.Session()
                 .Prepare("DELETE FROM T WHERE ID>?", std::vector<ParameterInfo>(1))
                 ->Execute(std::vector<Value>{Value::OfInteger(3)});
         }},
        {"another table",
         [](auto& d) {
             d.Run("CREATE TABLE U (A Long)");
             d.Run("INSERT INTO U VALUES (1)");
             d.Run("DROP TABLE U");
         }},
        {"refused", [](auto& d) { EXPECT_THROW(d.Run("INSERT INTO T VALUES ('x','y')"), Error); }},
        {"a trigger", [](auto& d) { d.Run("INSERT INTO Other VALUES (1)"); }},
    };
    for (const auto& one : cases) {
        SqlTestDatabase database;
        Fill(database, 5000);
        database.RunRaw(
            "CREATE TABLE Other (A INTEGER); CREATE TRIGGER R AFTER INSERT ON Other BEGIN DELETE FROM T; END");
        const auto first = database.Session().Query("SELECT ID, N FROM T");
        const auto second = database.Another()->Query("SELECT ID FROM T WHERE N Like 'row%'");
        std::vector<Value> row(2);
        for (int i = 0; i < 10; ++i) ASSERT_TRUE(first->Next(row));
        EXPECT_EQ(row[1].AsText(), "row 10") << one.name;
        one.change(database);
        ASSERT_TRUE(first->Next(row));
        EXPECT_EQ(row[1].AsText(), "row 11") << one.name;
        EXPECT_EQ(Drain(*first), std::pair(4989, std::int64_t{5000} * 5001 / 2 - 66)) << one.name;
        EXPECT_EQ(Drain(*second), std::pair(5000, std::int64_t{5000} * 5001 / 2)) << one.name;
        EXPECT_FALSE(first->Next(row)) << one.name;
    }
}

TEST(Sharing, AppendedRowsAreSeenAtOnceByTheWholeProcess) {
    SqlTestDatabase database;
    Fill(database, 1);
    std::filesystem::create_symlink(database.Path(), database.Folder().File("link.db"));
    const auto linked =
        OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + database.Folder().File("link.db"));
    const auto one = database.Session().OpenAppender("SELECT ID FROM T");
    const auto two = linked->OpenAppender("SELECT ID FROM T");
    one->Append(std::vector<Value>{Value::OfInteger(2)}, {true});
    EXPECT_EQ(SqlTestDatabase::AskOn(*linked, "SELECT count(*) FROM T"), "2");
    two->Append(std::vector<Value>{Value::OfInteger(3)}, {true});
    EXPECT_EQ(database.Ask("SELECT count(*) FROM T"), "3");
    database.Run("UPDATE T SET ID=7 WHERE ID=3");  // pending rows are committed first
    EXPECT_EQ(database.AskRaw("SELECT group_concat(ID) FROM T"), "1,2,7");
}

TEST(Sharing, AnIdleSessionHoldsNoLock) {
    SqlTestDatabase database;
    Fill(database, 100);
    const auto rows = database.Session().Query("SELECT ID FROM T");
    Drain(*rows);
    {
        const auto appender = database.Session().OpenAppender("SELECT ID FROM T");
        appender->Append(std::vector<Value>{Value::OfInteger(2)}, {true});
    }
    EXPECT_TRUE(database.Session().Reset());
    database.RunRaw("BEGIN EXCLUSIVE; DROP TABLE T; COMMIT");
}

TEST(Sharing, RowsAreCommittedWhileTheyAreAppended) {
    SqlTestDatabase database;
    Fill(database, 1);
    const auto appender = database.Session().OpenAppender("SELECT ID FROM T");
    const auto append = [&] { appender->Append(std::vector<Value>{Value::OfInteger(2)}, {true}); };
    append();
    EXPECT_EQ(database.AskRaw("SELECT count(*) FROM T"), "1");
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    append();
    EXPECT_EQ(database.AskRaw("SELECT count(*) FROM T"), "3");
}

/// Runs body in a child process and returns its exit status; -1 when a signal ended it.
int WaitFor(pid_t child) {
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

pid_t Fork(const std::function<void()>& body) {
    const pid_t child = fork();
    if (child != 0) return child;
    try {
        body();
    } catch (const Error& error) {
        std::fprintf(stderr, "child: %s\n", error.what());
        _exit(1);
    }
    _exit(0);
}

TEST(Sharing, ProcessesThatChangeOneFileWaitForEachOther) {
    const TempFolder folder;
    const std::string connection = "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder.File("shared.db");
    OpenSession(connection)->Execute("CREATE TABLE T (ID Long, N Long)");
    std::vector<pid_t> children;
    for (int k = 1; k <= 3; ++k)
        children.push_back(Fork([&] {
            const auto session = OpenSession(connection);
            for (int i = 0; i < 40; ++i) {
                // A read that stays open must not keep two writers waiting for each other.
                const auto rows = session->Query("SELECT ID FROM T");
                std::vector<Value> row(1);
                rows->Next(row);
                session->Execute("INSERT INTO T VALUES (" + std::to_string(k) + ",0)");
                session->Execute("UPDATE T SET N=N+1 WHERE ID=" + std::to_string(k));
                Drain(*rows);
            }
        }));
    for (const pid_t child : children) EXPECT_EQ(WaitFor(child), 0);
    EXPECT_EQ(SqlTestDatabase::AskOn(*OpenSession(connection), "SELECT ID, count(*), sum(N) FROM T GROUP BY ID"),
              "1|40|820;2|40|820;3|40|820");
}

TEST(Sharing, ALongAppendLetsOtherProcessesWrite) {
    const TempFolder folder;
    const std::string connection = "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder.File("shared.db");
    OpenSession(connection)->Execute("CREATE TABLE T (ID Long)");
    const std::string done = folder.File("done");
    const pid_t appending = Fork([&] {
        const auto session = OpenSession(connection);
        const auto appender = session->OpenAppender("SELECT ID FROM T");
        for (int i = 0; i < 100'000'000 && !std::filesystem::exists(done); ++i)
            appender->Append(std::vector<Value>{Value::OfInteger(i)}, {true});
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ErrorOf([&] { OpenSession(connection)->Execute("INSERT INTO T VALUES (-1)"); }), "");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    std::ofstream(done).put('x');
    EXPECT_EQ(WaitFor(appending), 0);
}

}  // namespace
}  // namespace varnel
