// Which connection strings this provider takes, and what it reads from them.
#include <gtest/gtest.h>

#include "providers/mysql/MySqlOptions.h"
#include "providers/mysql/MySqlProvider.h"
#include "tests/support/ErrorOf.h"

namespace varnel::mysql {
namespace {

TEST(MySqlConnectionStrings, NameADriverInManyForms) {
    const char* accepted[] = {
        "DRIVER={MySQL ODBC 3.51 Driver};SERVER=db;DATABASE=shop;USER=u;PASSWORD=p;OPTION=3",
        "Driver={MySQL ODBC 5.2 ANSI Driver};Server=db",
        "driver=MySQL ODBC 9.1 Unicode Driver;Server=db",
        "Driver={mySQL};Server=db",
        "Driver=mariadb unicode;Server=db",
        "Driver=/usr/lib/x86_64-linux-gnu/odbc/libmaodbc.so;Server=db",
        "Driver={/opt/libmyodbc8w.so};Server=db",
        "Provider=MSDASQL;Driver={MySQL ODBC 3.51 Driver};Server=db",
        "Provider=MSDASQL.1;Extended Properties=\"DRIVER={MySQL ODBC 3.51 Driver};SERVER=db;DATABASE=shop\"",
        "Provider=MySQLProv.3.9;Data Source=shop",
    };
    for (const char* text : accepted) EXPECT_TRUE(MySqlProvider().Accepts(ConnectionString(text))) << text;
    const char* refused[] = {
        "Driver={SQL Server};Server=mysql;Database=mysql",
        "Provider=SQLOLEDB;Data Source=db;Driver={MySQL ODBC 3.51 Driver}",
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\mysql.mdb",
        "Provider=MSDASQL;Extended Properties=\"Driver={SQL Server};SERVER=db\"",
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\data;Extended Properties=\"text;HDR=Yes\"",
        "DSN=mysql",
        "Server=db;Database=shop",
    };
    for (const char* text : refused) EXPECT_FALSE(MySqlProvider().Accepts(ConnectionString(text))) << text;
}

struct ReadCase {
    const char* keys;
    const char* host;
    unsigned port;
    const char* database;
    const char* user;
    const char* password;
};

TEST(MySqlConnectionStrings, GiveServerDatabaseAndUser) {
    const ReadCase cases[] = {
        {"Driver={MySQL};SERVER=db.example;PORT=3307;DATABASE=shop;UID=u;PWD=p", "db.example", 3307, "shop", "u", "p"},
        {"Driver={MySQL};Host=db.example:3308;DB=shop;USER=u;PASSWORD={p;}}q}", "db.example", 3308, "shop", "u",
         "p;}q"},
        {"Driver={MySQL};Data Source=db;Initial Catalog=shop;User ID=u;Password=\"a b\"", "db", 3306, "shop", "u",
         "a b"},
        {"Driver={MySQL};Servername=localhost;Port=3309", "127.0.0.1", 3309, "", "", ""},
        {"Driver={MySQL};DATABASE=shop", "127.0.0.1", 3306, "shop", "", ""},
        {"Driver={MySQL};SERVER=[::1]:3310", "::1", 3310, "", "", ""},
        {"Driver={MySQL};SERVER=fe80::1", "fe80::1", 3306, "", "", ""},
        {"Driver={MySQL};SERVER=one;server=two;NoSuchKey=3", "two", 3306, "", "", ""},
        {"Provider=MSDASQL;Initial Catalog=old;Extended Properties=\"Driver={MySQL};SERVER=db;DATABASE=shop;UID=u\"",
         "db", 3306, "shop", "u", ""},
        {"Provider=MySQLProv;Data Source=shop;Location=db;User Id=u;Password=p", "db", 3306, "shop", "u", "p"},
        {"Provider=MySQLProv;Data Source=db;Database=shop", "db", 3306, "shop", "", ""},
    };
    for (const ReadCase& expected : cases) {
        SCOPED_TRACE(expected.keys);
        const MySqlOptions options = ReadMySqlOptions(ConnectionString(expected.keys));
        EXPECT_EQ(options.host, expected.host);
        EXPECT_EQ(options.port, expected.port);
        EXPECT_EQ(options.database, expected.database);
        EXPECT_EQ(options.user, expected.user);
        EXPECT_EQ(options.password, expected.password);
    }
}

TEST(MySqlConnectionStrings, GiveOptions) {
    const MySqlOptions plain = ReadMySqlOptions(ConnectionString("Driver={MySQL};OPTION=3"));
    EXPECT_FALSE(plain.compress || plain.noBigInt || plain.zeroDateToMinimum || plain.tlsRequired || plain.tlsVerify);
    const MySqlOptions flags = ReadMySqlOptions(ConnectionString("Driver={MySQL};OPTION=16795648"));
    EXPECT_TRUE(flags.compress && flags.noBigInt && flags.zeroDateToMinimum);
    const MySqlOptions words = ReadMySqlOptions(ConnectionString(
        "Driver={MySQL};NO_BIGINT=1;COMPRESSED_PROTO=0;SSLMODE=verify_identity;SSLCA=/etc/ca.pem;TLSVERSION=TLSv1.3;"
        "STMT={set a=1;};CHARSET=latin1;SOCKET=/run/s.sock;Connect Timeout=7"));
    EXPECT_TRUE(words.noBigInt && words.tlsRequired && words.tlsVerify);
    EXPECT_FALSE(words.compress);
    EXPECT_EQ(words.tlsCa, "/etc/ca.pem");
    EXPECT_EQ(words.tlsVersion, "TLSv1.3");
    EXPECT_EQ(words.initStatement, "set a=1;");
    EXPECT_EQ(words.socket, "/run/s.sock");
    EXPECT_EQ(words.connectSeconds, 7U);
    const MySqlOptions chain = ReadMySqlOptions(ConnectionString("Driver={MySQL};SSLMODE=VERIFY_CA;SSLCA=/etc/ca.pem"));
    EXPECT_TRUE(chain.tlsRequired && !chain.tlsVerify);  // a given authority is checked anyway, the name is not
    EXPECT_TRUE(ReadMySqlOptions(ConnectionString("Driver={MySQL};SSLMODE=VERIFY_CA")).tlsVerify);
}

TEST(MySqlConnectionStrings, RefuseWhatCannotBeRead) {
    for (const std::string keys :
         {"PORT=0", "PORT=65536", "PORT=abc", "SERVER=db:x", "CONN_TIMEOUT=soon", "SSLMODE=perhaps"}) {
        const std::string error =
            ErrorOf([&] { ReadMySqlOptions(ConnectionString("Driver={MySQL};PWD=secret99;" + keys)); });
        EXPECT_NE(error, "") << keys;
        EXPECT_EQ(error.find("secret99"), std::string::npos);
    }
}

}  // namespace
}  // namespace varnel::mysql
