// Log-ins, their failures, what goes back to a pool, and servers that die.
#include <gmock/gmock.h>

#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

class MySqlLogIns : public MySqlTest {};

TEST_F(MySqlLogIns, FailuresSayWhatTheServerSaysButNoPassword) {
    const std::string port = "PORT=" + std::to_string(Server().Port());
    const std::string secret = "Secret;99";
    const std::string start = "Driver={MySQL};PWD={" + secret + "};" + port + ";";
    const struct {
        std::string keys;
        const char* text;
    } cases[] = {
        {"SERVER=127.0.0.1;UID=loader", "Access denied for user 'loader'@'127.0.0.1' (using password: YES)"},
        {"SERVER=localhost;UID=nobody", "Access denied for user 'nobody'@'127.0.0.1' (using password: YES)"},
        {"SERVER=127.0.0.1:1;UID=loader;CONN_TIMEOUT=5", "Can't connect to server on '127.0.0.1' ("},
        {"SOCKET=/nowhere/s.sock;UID=loader", "Can't connect to local server through socket '/nowhere/s.sock' (2)"},
        {"SERVER=127.0.0.1;UID=loader;PWD=pa55 w'ord;SSLMODE=REQUIRED",
         "The connection string requires an encrypted connection, but"},  // the server has no certificate
        {"SERVER=127.0.0.1;UID=loader;PWD=pa55 w'ord;SSLVERIFY=1", ""},
        {"SERVER=127.0.0.1;CHARSET=klingon", "Unknown character set 'klingon' in the connection string."},
        {"SERVER=127.0.0.1;UID=loader;PWD=pa55 w'ord;DATABASE=missing", "Unknown database 'missing'"},
        {"SERVER=127.0.0.1;UID=loader;PWD=pa55 w'ord;INITSTMT={SELECT 'pa55 w'ord' oops}", nullptr},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.keys);
        try {
            MySqlProvider().Open(ConnectionString(start + expected.keys));
            ADD_FAILURE() << "logged in";
        } catch (const Error& error) {
            if (expected.text != nullptr) {
                EXPECT_THAT(error.what(), testing::StartsWith(expected.text));
            }
            const std::string all = error.what() + error.where;
            EXPECT_EQ(all.find(secret), std::string::npos);
            EXPECT_EQ(all.find("pa55"), std::string::npos) << all;
        }
    }
}

TEST_F(MySqlLogIns, WorkOverTheSocketCompressedAndUnderOtherCharacterSets) {
    for (const std::string& keys :
         {"SOCKET=" + Server().Socket(), std::string("OPTION=2048"), std::string("CHARSET=latin1"),
          std::string("SERVER=localhost"), std::string("Foo=Bar")}) {
        const auto session = LogIn(keys);
        EXPECT_EQ(Shown(First(*session, "SELECT 'ü😀'")), "Text ü😀") << keys;
        EXPECT_EQ(Shown(First(*session, "SELECT @@character_set_client")), "Text utf8mb4") << keys;
    }
}

TEST_F(MySqlLogIns, KeepALongQuietStreamAlive) {
    const auto session = LogIn("INITSTMT={SET autocommit=0}");
    EXPECT_EQ(Shown(First(*session, "SELECT @@net_write_timeout >= 86400 AND @@wait_timeout >= 86400")), "Integer 1");
    EXPECT_EQ(Shown(First(*session, "SELECT @@autocommit")), "Integer 1");
}

TEST_F(MySqlLogIns, StatementFailuresHaveTheServersWordsAndAKind) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE keyed (id INT PRIMARY KEY)");
    EXPECT_EQ(ErrorOf([&] { session->Execute("SELECT * FROM no_such"); }), "Table 'shop.no_such' doesn't exist");
    EXPECT_EQ(ErrorOf([&] { session->Query("SELECT * FROM no_such"); }), "Table 'shop.no_such' doesn't exist");
    EXPECT_EQ(ErrorOf([&] { session->Execute("DROP TABLE no_such"); }), "Unknown table 'shop.no_such'");
    EXPECT_EQ(KindOf([&] { session->Execute("SELEKT 1"); }), ErrorKind::Syntax);
    EXPECT_EQ(KindOf([&] { session->Execute("INSERT INTO keyed VALUES (1),(1)"); }), ErrorKind::Constraint);
    EXPECT_NE(ErrorOf([&] { session->Query("SELECT ? FROM keyed"); }).find("SQL syntax"), std::string::npos);
    EXPECT_TRUE(session->Alive());
}

TEST_F(MySqlLogIns, LocalFilesAreNeverSent) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE files (t TEXT)");
    EXPECT_NE(ErrorOf([&] { session->Execute("LOAD DATA LOCAL INFILE '/etc/hostname' INTO TABLE files"); }), "");
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.files"), "0");
}

TEST_F(MySqlLogIns, GoBackToAPoolAsTheyWere) {
    const auto session = LogIn("INITSTMT={SET sql_mode='ANSI_QUOTES'}");
    session->Execute("CREATE OR REPLACE TABLE pooled (id INT)");
    session->Execute("START TRANSACTION");
    session->Execute("INSERT INTO pooled VALUES (1)");
    EXPECT_TRUE(session->Reset());
    EXPECT_TRUE(session->Alive());
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.pooled"), "0");
    EXPECT_EQ(Shown(First(*session, "SELECT @@sql_mode")), "Text ANSI_QUOTES");
    for (const char* statement :
         {"SET @a = 1", "USE mysql", "LOCK TABLES pooled READ", "CREATE TEMPORARY TABLE tt (id INT)"}) {
        const auto altered = LogIn();
        altered->Execute(statement);
        EXPECT_FALSE(altered->Reset()) << statement;
    }
}

TEST_F(MySqlLogIns, AKilledServerIsALostConnection) {
    Server().Run({"SET GLOBAL innodb_flush_log_at_trx_commit = 2"});  // commits survive the process
    const auto reading = LogIn(), writing = LogIn(), idle = LogIn();
    writing->Execute("CREATE OR REPLACE TABLE survivors (id INT PRIMARY KEY)");
    const auto appender = writing->OpenAppender("SELECT id FROM survivors");
    const auto reader = reading->Query("SELECT seq, REPEAT('x', 1000) FROM seq_1_to_1000000");
    Row row(2);
    for (int k = 1; k <= 100; ++k) {
        ASSERT_TRUE(reader->Next(row));
        appender->Append(Row{Value::OfInteger(k)}, {true});
    }
    Server().Kill();
    EXPECT_EQ(KindOf([&] {
                  while (reader->Next(row)) {
                  }
              }),
              ErrorKind::Connection);
    EXPECT_EQ(KindOf([&] { appender->Append(Row{Value::OfInteger(101)}, {true}); }), ErrorKind::Connection);
    EXPECT_EQ(KindOf([&] { writing->Execute("INSERT INTO survivors VALUES (102)"); }), ErrorKind::Connection);
    EXPECT_FALSE(idle->Alive());
    for (const auto* session : {&reading, &writing}) EXPECT_FALSE((*session)->Reset());
    Server().Start();
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.survivors"), "100");  // all that was counted
}

}  // namespace
}  // namespace varnel
