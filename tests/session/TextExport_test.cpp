// Tables written as text files, byte for byte against files that were worked out by hand.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "tests/session/TextSession.h"

namespace varnel {
namespace {

const TestTextLayout kDelimited{",", "SQ", true, "DELIMITED"};
const TestTextLayout kFixed{",", "SQ", true, "FIXED"};

/// Every type that a SQLite table reports; the target types and widths are those of the header's rules.
struct SqliteColumn {
    const char *name, *declared;
    CellForm form;
    const char* targetType;
    int width;
    std::vector<Cell> values;
    const char* target = "";
};

const Cell kNull = std::nullopt;

const std::vector<SqliteColumn>& SqliteColumns() {
    static const std::vector<SqliteColumn> columns = {
        {"ID", "Long", CellForm::Number, "INTEGER", 0, {"42", "2", "-2147483648", "0", "12345678"}},
        {"SMALL", "Short", CellForm::Number, "smallint", 0, {"-7", kNull, "-32768", "0", "1"}},
        {"WEIGHT",
         "Double",
         CellForm::Double,
         "Double",
         0,
         {"12.5", kNull, "123456789012345670000", "-0.001", "123456789012345680"}},
        {"PRICE",
         "Currency",
         CellForm::Number,
         "money",
         0,
         {"1234.5", kNull, "-922337203685477.5807", "0.0001", "922337203685477.5807"}},
        {"AMOUNT",
         "Decimal(28,10)",
         CellForm::Number,
         "MediumInt",
         0,
         {"1234.5", kNull, "1234567890123456.0123456789", "0.1", "123456789012345.678"}},
        {"OPEN", "Number", CellForm::Number, "LONG", 0, {"0.1", kNull, "-0.5", "12345678901234567890.12345678", "-1"}},
        {"NAME",
         "Text(10)",
         CellForm::Text,
         "VARCHAR",
         3,
         {"  Smith ", kNull, "O'B,\"x\"; y", "café €", "longer than ten"}},
        {"CODE", "Char(4)", CellForm::Text, "Char", 8, {"AB", kNull, "", "€", "ABCDE"}},
        {"SOLD",
         "DateTime",
         CellForm::Moment,
         "ShortDate",
         0,
         {"2026-11-18 00:00:00", kNull, "2026-11-18 16:05:09", "1899-12-30 18:30:00", "2026-01-02 00:00:00"},
         "Sold on"},
        {"STAMP",
         "Timestamp",
         CellForm::Moment,
         "TimeStamp",
         0,
         {"2026-11-18 16:05:09", kNull, "2026-11-18 00:00:00", "1971-03-09 00:00:01", "2026-12-31 23:59:59"}},
        {"ACTIVE", "YesNo", CellForm::Number, "Bit", 0, {"1", kNull, "0", "1", kNull}},
        {"RATING", "Byte", CellForm::Number, "VARCHAR", 0, {"5", kNull, "255", "0", "10"}},
        {"RATIO", "Single", CellForm::Single, "LongInt", 0, {"0.5", kNull, "0.0000001", "-3.5", "16777216"}},
        {"BIG", "BigInt", CellForm::Number, "BigInt", 8, {"9007199254740993", kNull, "-1", "0", "9223372036854775807"}},
        {"BADGE",
         "Guid",
         CellForm::Text,
         "Guid",
         38,
         {"{6F9619FF-8B86-D011-B42D-00C04FC964FF}", kNull, "{00000000-0000-0000-0000-000000000001}", kNull, kNull}},
        {"RAW", "Binary(4)", CellForm::Bytes, "Binary", 4, {std::string("\0\xFF", 2), kNull, "", "\n", kNull}}};
    return columns;
}

class TextExportTest : public TextSessionTest {
protected:
    /// The SQLite table "Every" in source.db.
    void MakeEvery() {
        NativeSqlite source(Path("source.db"));
        std::string declarations;
        std::vector<NativeColumn> columns;
        Rows rows(5);
        for (const SqliteColumn& column : SqliteColumns()) {
            declarations += (declarations.empty() ? "" : ", ") + std::string(column.name) + " " + column.declared;
            columns.push_back({column.name, column.form});
            for (std::size_t r = 0; r < rows.size(); ++r) rows[r].push_back(column.values[r]);
        }
        source.Run({"create table Every (" + declarations + ")"});
        source.Insert("Every", columns, rows);
    }
    /// The columns of "Every" with these names; all of them without names.
    static TestTable Every(const std::string& output, const std::vector<std::string>& names = {}) {
        TestTable table{"Every", output, {}};
        for (const SqliteColumn& column : SqliteColumns()) {
            const bool named = names.empty() || std::find(names.begin(), names.end(), column.name) != names.end();
            table.columns.push_back(
                {column.name, "VarWchar", column.width, 0, column.target, column.targetType, named ? 1 : 0});
        }
        return table;
    }
    /// Runs the session with its one table into the file "out/t.txt".
    void Export(const TestTextLayout& layout, const TestTable& table, int status = 0) {
        const std::string connection = session_.targetConnection;
        TargetIsText(layout);
        if (connection.find("CharacterSet") != std::string::npos) session_.targetConnection = connection;
        session_.tables = {table};
        std::filesystem::remove(session_.log);
        EXPECT_EQ(Run(), status) << log_;
        ++session_.id;
        EXPECT_EQ(errorLog_, "");
        EXPECT_NE(log_.find("******( FINISH )*******\r\n"), std::string::npos) << log_;
    }
    void WriteUtf8() {
        session_.targetConnection = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Path("out") +
                                    ";Extended Properties=\"text;HDR=Yes;CharacterSet=65001\"";
    }
};

TEST_F(TextExportTest, EverySqliteTypeDelimited) {
    MakeEvery();
    Export(kDelimited, Every(Path("out/t.txt")));
    ExpectGolden("sqlite_delimited.txt", "out/t.txt");
    EXPECT_EQ(InLog("\r\n5 Rows Loaded\r\n"), 1) << log_;
    EXPECT_EQ(Outcome(), "recorded, no error");
    WriteUtf8();
    Export(kDelimited, Every(Path("out/t.txt")));
    ExpectGolden("sqlite_delimited_utf8.txt", "out/t.txt");
}

TEST_F(TextExportTest, WithoutDelimiterQualifierAndHeader) {
    MakeEvery();
    Export({"", "", false, "DELIMITED"}, Every(Path("out/t.txt"), {"ID", "NAME", "SOLD", "ACTIVE"}));
    ExpectGolden("sqlite_bare.txt", "out/t.txt");
}

TEST_F(TextExportTest, EverySqliteTypeFixed) {
    MakeEvery();
    Export(kFixed, Every(Path("out/t.txt"), {"ID", "SMALL", "WEIGHT", "PRICE", "AMOUNT", "OPEN", "NAME", "CODE", "SOLD",
                                             "STAMP", "ACTIVE", "RATING", "RATIO", "BIG"}));
    ExpectGolden("sqlite_fixed.txt", "out/t.txt");
}

TEST_F(TextExportTest, ATableWithBinariesIsRefusedInTheFixedLayout) {
    MakeEvery();
    PutFile("out/t.txt", "what was there before");
    Export(kFixed, Every(Path("out/t.txt"), {"ID", "RAW"}));
    EXPECT_EQ(Content("out/t.txt"), "ID     RAW \r\n");
    EXPECT_EQ(InLog("Table Contains Long Datatypes."), 1) << log_;
    EXPECT_EQ(InLog("\r\nSkipping Table\r\n"), 1);
    EXPECT_EQ(InLog("Rows Loaded"), 0);
}

TEST_F(TextExportTest, WhatIsNoNumberIsReportedAndItsCellBlank) {
    MakeEvery();
    Export(kFixed, Every(Path("out/t.txt"), {"ID", "BADGE"}), 1);
    const std::string blanks(16, ' ');
    EXPECT_EQ(Content("out/t.txt"), "ID     BADGE" + std::string(33, ' ') + "\r\n     42" + blanks + "\r\n      2" +
                                        blanks + "\r\n-214748" + blanks + "\r\n      0" + blanks + "\r\n1234567" +
                                        blanks + "\r\n");
    EXPECT_EQ(InLog("Error Loading Row:0\r\nType mismatch\r\n"), 1) << log_;
    EXPECT_EQ(InLog("Error Loading Row:2\r\nType mismatch\r\n"), 1) << log_;
    EXPECT_EQ(InLog("\r\n3 Rows Loaded\r\n"), 1);
}

TEST_F(TextExportTest, ACharacterThatTheCodePageLacksCostsItsCell) {
    NativeSqlite(Path("source.db"))
        .Run({"create table t (ID Long, NAME Text(6))", "insert into t values (1,'café'),(2,'Łódź'),(3,'€')"});
    const TestTable table{"t", Path("out/t.txt"), {{"ID", "Integer", 0, 0, "", "Integer"}, {"NAME", "VarWchar", 6}}};
    Export(kDelimited, table, 1);
    ExpectGolden("unfit_1252.txt", "out/t.txt");
    EXPECT_EQ(InLog("Error Loading Row:1\r\n"), 1) << log_;
    EXPECT_EQ(InLog("Ł"), 1) << log_;
    EXPECT_EQ(InLog("\r\n2 Rows Loaded\r\n"), 1);
    Export(kFixed, table, 1);
    ExpectGolden("unfit_fixed_1252.txt", "out/t.txt");
    WriteUtf8();
    Export(kDelimited, table);
    ExpectGolden("unfit_utf8.txt", "out/t.txt");
}

TEST_F(TextExportTest, EveryMySqlType) {
    Server().Run(
        {"create or replace table shop.`every` (ID int, SMALL smallint, WEIGHT double, AMOUNT decimal(28,10), "
         "NAME varchar(10), CODE char(4), SOLD date, AT time, STAMP datetime, ACTIVE bit(1), RATING tinyint, "
         "COUNT int unsigned, BIG bigint, RATIO float)",
         "insert into shop.`every` values (42,-7,12.5,1234.5,'  Smith ','AB','2026-11-18','18:30:00',"
         "'2026-11-18 16:05:09',b'1',5,4294967295,-9223372036854775808,0.5),"
         "(2,null,null,null,null,null,null,null,null,null,null,null,null,null),"
         "(-2147483648,-32768,1.5e-7,1234567890123456.0123456789,'','café','2026-01-02','00:00:00',"
         "'2026-11-18',b'0',-128,0,1,0.25),(9,9,9,9,'left out','','2026-01-01','01:00:00','2026-01-01',b'1',"
         "9,9,9,9)"});
    session_.sourceKind = "MySQL";
    session_.sourceConnection = Server().ConnectionString();
    TestTable table{"every", Path("out/t.txt"), {}};
    for (const auto& [name, type, width] :
         std::vector<std::tuple<const char*, const char*, int>>{{"ID", "integer", 0},
                                                                {"SMALL", "SMALLINT", 0},
                                                                {"WEIGHT", "double", 0},
                                                                {"AMOUNT", "Numeric", 19},
                                                                {"NAME", "Varchar", 10},
                                                                {"CODE", "Char", 4},
                                                                {"SOLD", "Date", 0},
                                                                {"AT", "Time", 10},
                                                                {"STAMP", "DateTime", 0},
                                                                {"ACTIVE", "Boolean", 0},
                                                                {"RATING", "TinyInt", 1},
                                                                {"COUNT", "Int", 4},
                                                                {"BIG", "BigInt", 8},
                                                                {"RATIO", "Float", 4}}) {
        table.columns.push_back({name, "VarWchar", width, 0, "", type});
    }
    table.where = "`ID` <> 9";
    Export(kFixed, table);
    ExpectGolden("mysql_fixed.txt", "out/t.txt");
    WriteUtf8();
    Export({"|", "DQ", false, "DELIMITED"}, table);
    ExpectGolden("mysql_delimited_utf8.txt", "out/t.txt");
    EXPECT_EQ(InLog("\r\n3 Rows Loaded\r\n"), 1) << log_;
}

/// The cells follow the stored output type of a column, whatever the file's column is.
TEST_F(TextExportTest, TextToTextByTheStoredTypes) {
    PutFile("in/people.csv",
            "Id,Name,Born,Seen,Amount,Open,Active,Money,Free,Tag,Num\n"
            "1,\"  Smith \",2026-11-18,2026-11-18 16:05:09,1234.5,42,True,12.5,42,x1,7\n"
            "2,,,,,,,,,,\n"
            "3,\"\",1/2/2026,2026-11-18,123456.789,-0.5,False,-3,-7,\" y \",-12\n");
    PutFile("in/Schema.ini",
            "[people.csv]\nFormat=CSVDelimited\nColNameHeader=True\nCol1=Id Long\nCol2=Name Text Width 10\n"
            "Col3=Born DateTime\nCol4=Seen DateTime\nCol5=Amount Double\nCol6=Open Double\nCol7=Active Bit\n"
            "Col8=Money Currency\nCol9=Free Long\nCol10=Tag Text Width 4\nCol11=Num Long\n");
    session_.sourceKind = "TEXT";
    session_.sourceConnection = TextConnection(Path("in"));
    TestTable table{"people.csv", Path("out/t.txt"), {}};
    for (const auto& [name, type, width] :
         std::vector<std::tuple<const char*, const char*, int>>{{"Id", "Integer", 0},
                                                                {"Name", "Char", 10},
                                                                {"Born", "Date", 0},
                                                                {"Seen", "135", 22},
                                                                {"Amount", "131", 8},
                                                                {"Open", "139", 40},
                                                                {"Active", "11", 5},
                                                                {"Money", "Currency", 0},
                                                                {"Free", "integer", 0},
                                                                {"Tag", "Integer", 0},
                                                                {"Num", "129", 4}}) {
        table.columns.push_back({name, "VarWchar", width, 0, "", type});
    }
    Export(kDelimited, table);
    ExpectGolden("text_delimited.txt", "out/t.txt");
    EXPECT_EQ(InLog("About to Start Loading Rows in :C:\\Out\\people.csv.txt\r\n"), 1) << log_;
    Export(kFixed, table);
    ExpectGolden("text_fixed.txt", "out/t.txt");

    table.columns = {{"Tag", "VarWchar", 4, 0, "", "VARCHAR"}};
    table.where = "Id < 3";
    Export(kFixed, table, 1);
    EXPECT_EQ(Content("out/t.txt"), "Tag \r\n    \r\n    \r\n");
    EXPECT_EQ(InLog("Type mismatch"), 1) << log_;
    EXPECT_EQ(InLog("Error Loading Row"), 0) << log_;
}

}  // namespace
}  // namespace varnel
