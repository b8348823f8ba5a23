// Values of every sort on their way out and back, long ones in pieces, and what a lost server leaves behind.
#include "tests/providers_odbc/OdbcTest.h"

namespace varnel {
namespace {

TEST_F(OdbcTest, CarriesEverySortOfValue) {
    const auto session = LogIn();
    session->Execute(
        "create or replace table v (b tinyint(1), i int, big bigint, s float, d double, n decimal(38,10), t "
        "datetime(6),"
        " c varchar(50), r varbinary(20), m longtext, o longblob, g varchar(38))");
    std::string memo, bytes;
    for (int k = 0; k < 300000; ++k) memo += "a\xC3\xA4\xF0\x9F\x98\x80";  // 2.1 MB, pieces end inside characters
    for (int k = 0; k < 1000000; ++k) bytes += static_cast<char>(k * 7);
    const std::vector<Value> row{Value::OfBoolean(true),
                                 Value::OfInteger(-2147483648LL),
                                 Value::OfInteger(INT64_MAX),
                                 Value::OfSingle(0.1F),
                                 Value::OfDouble(-1.7976931348623157e308),
                                 Value::OfDecimal("-1234567890123456789012345678.0123456789"),
                                 Value::OfDateTime(FromCivil({9999, 12, 31, 23, 59, 59, 123456})),
                                 Value::OfText("  q'\"\\ \xD0\x96\r\n\xF0\x9F\x98\x80 "),
                                 Value::OfBytes(std::string("\0\xFF\x1A'", 4)),
                                 Value::OfText(memo),
                                 Value::OfBytes(bytes),
                                 Value::OfGuid("{01234567-89AB-CDEF-0123-456789ABCDEF}")};
    const ParameterInfo parameters[] = {{adBoolean},      {adInteger},       {adBigInt},
                                        {adSingle},       {adDouble},        {adNumeric, 19, 38, 10},
                                        {adDBTimeStamp},  {adVarWChar, 50},  {adVarBinary, 20},
                                        {adLongVarWChar}, {adLongVarBinary}, {adGUID}};
    const auto insert = session->Prepare("insert into v values (?,?,?,?,?,?,?,?,?,?,?,?)", parameters);
    EXPECT_EQ(insert->QueueLimit(), 0u) << "long values go row by row";
    insert->Execute(row);
    insert->Execute(std::vector<Value>(12));

    const auto reader = session->Query("select b, i, big, s, d, n, t, c, r, m, o from v");
    std::vector<Value> back(11);
    ASSERT_TRUE(reader->Next(back));
    EXPECT_EQ(back[0].AsInteger(), 1);
    for (const std::size_t k : {1, 2, 3, 4, 5, 6, 7, 8}) EXPECT_EQ(back[k], row[k]) << k;
    EXPECT_TRUE(back[9] == row[9]) << back[9].AsText().size();
    EXPECT_TRUE(back[10] == row[10]);
    ASSERT_TRUE(reader->Next(back));
    for (const Value& value : back) EXPECT_TRUE(value.IsNull());
    EXPECT_FALSE(reader->Next(back));
    EXPECT_EQ(Rows(*session, "select g from v where g is not null"), "{01234567-89AB-CDEF-0123-456789ABCDEF};\n");
}

TEST_F(OdbcTest, RefusesTextsThatADriverWouldCut) {
    const auto session = LogIn();
    session->Execute("create or replace table w (c varchar(50))");
    const ParameterInfo parameters[] = {{adVarWChar, 3}};
    const auto insert = session->Prepare("insert into w values (?)", parameters);
    EXPECT_THROW(insert->Execute(std::vector<Value>{Value::OfText("abcd")}), Error);
    insert->Execute(std::vector<Value>{Value::OfText("\xF0\x9F\x98\x80\xC3\xA4\xC3\xA4")});
    EXPECT_EQ(Rows(*session, "select count(*) from w"), "1;\n");
}

TEST_F(OdbcTest, SaysWhyALogInFailsWithoutThePassword) {
    LogIn();
    std::string text;
    try {
        OdbcProvider().Open(ConnectionString("DSN=shop;UID=loader;PWD=wrong-secret"));
    } catch (const Error& error) {
        text = error.what();
        EXPECT_EQ(error.kind, ErrorKind::Connection);
    }
    EXPECT_NE(text.find("loader"), std::string::npos) << text;
    EXPECT_EQ(text.find("wrong-secret"), std::string::npos) << text;
    EXPECT_THROW(OdbcProvider().Open(ConnectionString("DSN=nowhere;UID=u;PWD=p")), Error);
    EXPECT_THROW(OdbcProvider().Open(ConnectionString("Driver={No Such Driver};Server=h")), Error);
}

TEST_F(OdbcTest, ALostServerFailsThatLogInAndNotTheNext) {
    const auto session = LogIn();
    session->Execute("create or replace table x (id int)");
    const ParameterInfo parameters[] = {{adInteger}};
    const auto insert = session->Prepare("insert into x values (?)", parameters);
    insert->Execute(std::vector<Value>{Value::OfInteger(1)});
    Server().Kill();
    EXPECT_THROW(insert->Execute(std::vector<Value>{Value::OfInteger(2)}), Error);
    EXPECT_FALSE(session->Reset());
    Server().Start();
    EXPECT_EQ(Rows(*LogIn(), "select 1 from dual"), "1;\n");
}

}  // namespace
}  // namespace varnel
