// SQL Server's dialect through the real FreeTDS driver. The server is our stand-in: it vouches for the driver's side.
#include <gtest/gtest.h>

#include "ado/types/ValueText.h"
#include "platform/DateTime.h"
#include "platform/Error.h"
#include "providers/odbc/OdbcProvider.h"
#include "tests/support/CatalogText.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

class SqlServerTest : public testing::Test {
protected:
    std::unique_ptr<ProviderSession> LogIn(const std::string& more = "") {
        return OdbcProvider().Open(ConnectionString(server_.ConnectionString() + more));
    }
    static std::vector<std::vector<Value>> Rows(ProviderSession& session, const std::string& query) {
        const auto reader = session.Query(query);
        std::vector<std::vector<Value>> rows;
        std::vector<Value> row(reader->Columns().size());
        while (reader->Next(row)) rows.push_back(row);
        return rows;
    }
    TdsServer server_;
};

TEST_F(SqlServerTest, TellsItsTablesAndTheirColumns) {
    const auto session = LogIn();
    session->Execute("Create Table [dbo].[T 1]( [id] int not null primary key, [p] money, [n] nvarchar(20))");
    EXPECT_EQ(TablesText(*session), "dbo.T 1");
    EXPECT_EQ(ColumnsText(*session, "dbo", "T 1"),
              "id Integer(10) int key assigned\np Currency(19) money\nn VarWchar(20) nvarchar\n");
}

TEST_F(SqlServerTest, CarriesEveryTypeThatTheLoadCreates) {
    const auto session = LogIn();
    session->Execute(
        "Create Table [dbo].[T 1](\r [a] bit,\r [b] tinyint,\r [c] smallint,\r [d] int,\r [e] real,\r [f] float,\r [g] "
        "decimal(12,4),\r [h] money,\r [i] datetime,\r [j] varchar(50),\r [k] nvarchar(50),\r [l] binary(4),\r [m] "
        "varbinary(20),\r [n] uniqueidentifier,\r [o] text,\r [p] ntext,\r [q] image\r)");
    std::string memo, bytes;
    for (int k = 0; k < 100000; ++k) memo += "a\xC3\xA4\xD0\x96";
    for (int k = 0; k < 500000; ++k) bytes += static_cast<char>(k * 7);
    const std::vector<Value> row{Value::OfBoolean(true),
                                 Value::OfInteger(255),
                                 Value::OfInteger(-32768),
                                 Value::OfInteger(-2147483648LL),
                                 Value::OfSingle(0.1F),
                                 Value::OfDouble(-1.5e300),
                                 Value::OfDecimal("-12345678.1234"),
                                 Value::OfCurrency(-9223372036854775807LL),
                                 Value::OfDateTime(FromCivil({9999, 12, 31, 23, 59, 59, 0})),
                                 Value::OfText("it's [x]"),
                                 Value::OfText("  \xD0\x96 \xC3\xA4 "),
                                 Value::OfBytes(std::string("\0\xFF\x1A'", 4)),
                                 Value::OfBytes(std::string("\x01", 1)),
                                 Value::OfGuid("{01234567-89AB-CDEF-0123-456789ABCDEF}"),
                                 Value::OfText("plain"),
                                 Value::OfText(memo),
                                 Value::OfBytes(bytes)};
    const std::string all =
        "Select [a],[b],[c],[d],[e],[f],[g],[h],[i],[j],[k],[l],[m],[n],[o],[p],[q] FROM [dbo].[T 1]";
    {
        const auto appender = session->OpenAppender(all);
        const DataTypeEnum kTypes[] = {adBoolean,      adUnsignedTinyInt, adSmallInt,  adInteger,     adSingle,
                                       adDouble,       adNumeric,         adCurrency,  adDBTimeStamp, adVarChar,
                                       adVarWChar,     adBinary,          adVarBinary, adGUID,        adLongVarChar,
                                       adLongVarWChar, adLongVarBinary};
        for (std::size_t k = 0; k < std::size(kTypes); ++k) EXPECT_EQ(appender->Columns()[k].type, kTypes[k]) << k;
        EXPECT_EQ(appender->Columns()[6].precision, 12);
        EXPECT_EQ(appender->Columns()[6].numericScale, 4);
        appender->Append(row, std::vector<bool>(row.size(), true));
        appender->Append(std::vector<Value>(row.size()), std::vector<bool>(row.size(), true));
    }
    const auto rows = Rows(*session, all);
    ASSERT_EQ(rows.size(), 2u);
    for (std::size_t k = 0; k < row.size(); ++k) {
        EXPECT_TRUE(rows[0][k] == row[k]) << k << ": kind " << static_cast<int>(rows[0][k].Kind());
        EXPECT_TRUE(rows[1][k].IsNull()) << k;
    }
    EXPECT_EQ(Rows(*session, "select count(*) FROM [dbo].[T 1]")[0][0].AsInteger(), 2);
}

TEST_F(SqlServerTest, ArraysCostOnlyTheRefusedRows) {
    const auto session = LogIn();
    session->Execute("Create Table [dbo].[U]([id] int not null primary key, [name] nvarchar(5))");
    const auto appender = session->OpenAppender("Select [id],[name] FROM [dbo].[U]");
    const std::vector<bool> both{true, true};
    ASSERT_GT(appender->QueueLimit(), 8u);
    for (const auto& [id, name] : std::vector<std::pair<int, std::string>>{{1, "a"}, {2, "b"}, {1, "again"}, {3, "c"}})
        appender->Queue(std::vector<Value>{Value::OfInteger(id), Value::OfText(name)}, both);
    std::string seen;
    const auto note = [&](const Error* error) { seen += error == nullptr ? "." : error->what(); };
    appender->Send(note);
    EXPECT_EQ(seen.substr(0, 2), "..");
    EXPECT_NE(seen.find("Violation of UNIQUE KEY"), std::string::npos) << seen;
    EXPECT_EQ(seen.find("[FreeTDS]"), std::string::npos) << "an OLE DB provider's words come without the driver's tags";
    EXPECT_EQ(seen.back(), '.');
    for (int id = 10; id < 60; ++id) {
        if (appender->QueueLimit() <= static_cast<std::size_t>(id - 10)) break;
        appender->Queue(std::vector<Value>{Value::OfInteger(id), Value::OfText("x")}, both);
    }
    seen.clear();
    appender->Send(note);
    EXPECT_EQ(seen, std::string(50, '.'));
    EXPECT_EQ(Rows(*session, "select count(*) from [dbo].[U]")[0][0].AsInteger(), 53);
    EXPECT_THROW(appender->Append(std::vector<Value>{Value::OfInteger(99), Value::OfText("longer than five")}, both),
                 Error);
}

/// A refused array goes again in parts, the part with the refused row one by one, and the next array together.
TEST_F(SqlServerTest, EveryArrayMayBeRefused) {
    const auto session = LogIn();
    session->Execute("Create Table [dbo].[V]([id] int not null primary key)");
    session->Execute("insert into [dbo].[V] ([id]) values (7)");
    session->Execute("insert into [dbo].[V] ([id]) values (1250)");
    const auto appender = session->OpenAppender("Select [id] FROM [dbo].[V]");
    std::string seen;
    const auto note = [&](const Error* error) { seen += error == nullptr ? '.' : 'F'; };
    for (int id = 1; id <= 2500; ++id) {
        appender->Queue(std::vector<Value>{Value::OfInteger(id)}, {true});
        if (id % 1000 == 0) appender->Send(note);
    }
    appender->Send(note);
    std::string expected(2500, '.');
    expected[6] = expected[1249] = 'F';
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(Rows(*session, "select count(*) from [dbo].[V]")[0][0].AsInteger(), 2500);
}

/// Each narrow column by its own collation's code page; what it lacks the server would make question marks of.
TEST_F(SqlServerTest, NarrowColumnsHoldWhatTheirCollationHas) {
    const auto session = LogIn();
    session->Execute(
        "Create Table [dbo].[N 1]([own] varchar(20), [cyrillic] varchar(20) COLLATE Cyrillic_General_CI_AS null, "
        "[Polish] varchar(20) COLLATE Polish_CI_AS, [wide] nvarchar(20))");
    const auto appender = session->OpenAppender("Select [own],[cyrillic],[polish],[wide] FROM [dbo].[N 1]");
    const struct {
        const char *text, *heldBy;
    } kCases[] = {{"caf\u00e9", "own polish"},
                  {"\u041f\u0440\u0438\u0432\u0435\u0442", "cyrillic"},
                  {"\u0141\u00f3d\u017a", "polish"},
                  {"\u20ac", "own cyrillic polish"},
                  {"\u65e5", ""}};
    const std::vector<std::string> names{"own", "cyrillic", "polish", "wide"};
    for (const auto& row : kCases) {
        for (std::size_t k = 0; k < names.size(); ++k) {
            std::vector<Value> values(names.size());
            std::vector<bool> assigned(names.size());
            values[k] = Value::OfText(row.text);
            assigned[k] = true;
            const bool holds = names[k] == "wide" || std::string_view(row.heldBy).find(names[k]) != std::string::npos;
            EXPECT_EQ(ErrorOf([&] { appender->Append(values, assigned); }).empty(), holds) << row.text << names[k];
            if (!holds) continue;
            const auto back = Rows(
                *session, "select [" + names[k] + "] from [dbo].[N 1] where [" + names[k] + "]=N'" + row.text + "'");
            ASSERT_EQ(back.size(), 1u) << row.text << names[k];
            EXPECT_TRUE(back[0][0] == values[k]) << names[k] << back[0][0].AsText();
        }
    }
}

TEST_F(SqlServerTest, ValuesThatTheServerWouldRoundAreRefused) {
    const auto session = LogIn();
    session->Execute(
        "Create Table [dbo].[R]([datetime] datetime, [minute] smalldatetime, [day] date, [fine] datetime2, "
        "[amount] decimal(9,2))");
    const auto moment = [](int second, int micros) {
        return Value::OfDateTime(FromCivil({2003, 7, 15, 13, 5, second, micros}));
    };
    const struct {
        const char* column;
        Value value;
        bool held;  ///< noise of up to 50 microseconds is none of the value
    } kCases[] = {{"datetime", moment(9, 250'000), true},
                  {"datetime", moment(9, 123'000), true},
                  {"datetime", moment(9, 1'000), false},
                  {"datetime", moment(9, 123'456), false},
                  {"minute", moment(0, 0), true},
                  {"minute", moment(9, 0), false},
                  {"minute", moment(0, 2), true},
                  {"datetime", moment(8, 999'999), true},
                  {"day", Value::OfDateTime(FromCivil({2003, 7, 15, 0, 0, 0, 0})), true},
                  {"day", moment(9, 0), false},
                  {"fine", moment(9, 123'456), true},
                  {"amount", Value::OfDouble(1.25), true},
                  {"amount", Value::OfDouble(1.255), false},
                  {"amount", Value::OfCurrency(12'501), false}};
    for (const auto& row : kCases) {
        const auto appender = session->OpenAppender("Select [" + std::string(row.column) + "] FROM [dbo].[R]");
        EXPECT_EQ(ErrorOf([&] { appender->Append(std::vector<Value>{row.value}, {true}); }).empty(), row.held)
            << row.column << " " << DefaultText(row.value);
    }
    EXPECT_TRUE(Rows(*session, "select max([minute]) FROM [dbo].[R]")[0][0] ==
                Value::OfText("2003-07-15 13:05:00.000000"));
}

TEST_F(SqlServerTest, ErrorsKeepTheServersWords) {
    const auto session = LogIn();
    EXPECT_NE(ErrorOf([&] { session->Execute("select [x] from [dbo].[Nowhere]"); }).find("Invalid object name"),
              std::string::npos);
    EXPECT_NE(ErrorOf([&] { session->Execute("drop table [dbo].[Nowhere]"); }).find("Cannot drop the table"),
              std::string::npos);
    EXPECT_NE(ErrorOf([&] { session->Execute("Create Table [dbo].[V]([a] strange)"); }).find("Cannot find data type"),
              std::string::npos);
    session->Execute("Create Table [dbo].[V]([a] int)");
    const std::string refused = ErrorOf([&] {
        OdbcProvider().Open(ConnectionString("Driver={SQL Server};Server=127.0.0.1," + std::to_string(server_.Port()) +
                                             ";Uid=sa;Pwd=topsecret"));
    });
    EXPECT_NE(refused.find("Login failed"), std::string::npos) << refused;
    EXPECT_EQ(refused.find("topsecret"), std::string::npos);
}

TEST_F(SqlServerTest, ALostServerFailsThatLogInAndNotTheNext) {
    const auto session = LogIn();
    session->Execute("Create Table [dbo].[W]([a] int)");
    server_.DropLogIns();
    EXPECT_THROW(session->Execute("insert into [dbo].[W]([a]) values (1)"), Error);
    EXPECT_FALSE(session->Reset());
    LogIn()->Execute("insert into [dbo].[W]([a]) values (1)");
}

}  // namespace
}  // namespace varnel
