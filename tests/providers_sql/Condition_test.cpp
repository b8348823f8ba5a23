// Which rows a stored condition chooses, in the words of the people who wrote it.
#include <gtest/gtest.h>

#include "tests/providers_sql/MemoryStore.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

/// One table for all cases: five people, the last one all Null but the key; in a SQLite file and in a store of tables.
template <class Database>
class Conditions : public testing::Test {
protected:
    static void SetUpTestSuite() {
        database = std::make_unique<Database>();
        database->Run(
            "CREATE TABLE P (ID Long PRIMARY KEY, Name Text(50), City Text(30), Born DateTime, Flag YesNo, Price "
            "Currency,"
            " Rate Double, Amount Decimal(20,4), Code Memo, Tag GUID)");
        const char* rows[] = {"(1,'Smith','London',#1/2/1970#,True,10.5,0.5,100.25,'A-1',NULL)",
                              ("(2,'O''Brien','DUBLIN',#11/18/2026 4:23:05 PM#,False,20,1.5,0.1,'50%',"
                               "'{0123ABCD-0123-4567-89AB-0123456789AB}')"),
                              "(3,'\xC3\x84rger','Berlin',#12/31/1999#,Yes,-3.25,-2,12345678901234.5678,'x_y',NULL)",
                              "(4,'smithers','london','5/6/2001',No,0,0,0,'007',NULL)",
                              "(5,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL)"};
        for (const char* row : rows) database->Run(std::string("INSERT INTO P VALUES ") + row);
    }
    static void TearDownTestSuite() { database.reset(); }

    static std::unique_ptr<Database> database;
};
template <class Database>
std::unique_ptr<Database> Conditions<Database>::database;

using Places = testing::Types<SqlTestDatabase, MemoryTestDatabase>;
TYPED_TEST_SUITE(Conditions, Places);

TYPED_TEST(Conditions, ChooseTheRowsThatTheDialectMeans) {
    const struct {
        const char* condition;
        const char* ids;
    } cases[] = {
        // texts compare without case
        {"Name='SMITH'", "1"},
        {"City = \"london\"", "1;4"},
        {"Name='\xC3\xA4RGER'", "3"},
        {"Name <> 'smith'", "2;3;4"},
        {"Name='O''Brien'", "2"},
        {"Name=\"O'Brien\"", "2"},
        {"Name<'p'", "2"},
        {"Name=''", ""},
        // names
        {"[Name]='Smith'", "1"},
        {"`Name`='Smith'", "1"},
        {"P.Name='Smith'", "1"},
        {"[P].[Name]='Smith'", "1"},
        {"name='Smith'", "1"},
        {"P.ID= 3", "3"},
        {"p.id=-3", ""},
        // Null is neither true nor false
        {"Name Is Null", "5"},
        {"Name Is Not Null", "1;2;3;4"},
        {"Name = Null", ""},
        {"Not (Name='Smith')", "2;3;4"},
        {"Name='Smith' Or Flag Is Null", "1;5"},
        {"Null Or ID=2", "2"},
        {"Not (Null And ID=2)", "1;3;4;5"},
        // truth
        {"Flag", "1;3"},
        {"Flag=True", "1;3"},
        {"Flag=-1", "1;3"},
        {"Flag=0", "2;4"},
        {"Not Flag", "2;4"},
        {"Flag=Yes", "1;3"},
        {"Flag=Off", "2;4"},
        {"True=-1 And ID=1", "1"},
        {"Flag=(1=1)", "1;3"},
        // numbers, exact ones too
        {"ID>=2 And ID<4", "2;3"},
        {"ID=1.0", "1"},
        {"Price=10.5", "1"},
        {"Price>0", "1;2"},
        {"Rate=.5", "1"},
        {"Amount=0.1", "2"},
        {"Amount=100.25", "1"},
        {"ID=&H3", "3"},
        {"ID=1E0", "1"},
        {"Amount>12345678901234", "3"},
        {"Price=-3.25", "3"},
        {"ID In (1,3,9)", "1;3"},
        {"ID Not In (1,3)", "2;4;5"},
        {"ID In (1,Null)", "1"},
        {"ID Not In (1,Null)", ""},
        {"Name In ('SMITH','nobody')", "1"},
        // a number against a text reads the text
        {"Code=7", "ERR"},
        {"ID='2'", "2"},
        {"ID=' 2 '", "2"},
        // ranges go either way
        {"ID Between 2 And 4", "2;3;4"},
        {"ID Between 4 And 2", "2;3;4"},
        {"ID Not Between 2 And 4", "1;5"},
        {"Born Between #1/1/1999# And #1/1/2002#", "3;4"},
        {"Name Between 'a' And 'p'", "2"},
        // dates: month first, day first only when it must be
        {"Born=#1/2/1970#", "1"},
        {"Born=#1970-01-02#", "1"},
        {"Born=#31/12/1999#", "3"},
        {"Born>#11/18/2026#", "2"},
        {"Born=#11/18/2026 4:23:05 PM#", "2"},
        {"Born={d '1970-01-02'}", "1"},
        {"Born={ts '2026-11-18 16:23:05'}", "2"},
        {"Born='12/31/1999'", "3"},
        {"Born>40000", "2"},
        {"Born=25570", "1"},
        {"Born+1=#1/3/1970#", "1"},
        {"Born-#1/1/1970#=1", "1"},
        {"TimeValue(Born)=#4:23:05 PM#", "2"},
        {"Int(Born)=#11/18/2026#", "2"},
        {"IIf(ID=1,Born,Null)=#1/2/1970#", "1"},
        {"DateAdd('d',1,DateValue(Born))=#11/19/2026#", "2"},
        // patterns
        {"Name Like 'smith%'", "1;4"},
        {"Name Like 'SM_TH'", "1"},
        {"Name Not Like 's%'", "2;3"},
        {"Name Like '%r'", "3"},
        {"Name Like '[a-p]%'", "2"},
        {"Name Like '[!a-p]%'", "1;3;4"},
        {"Name Like '[^s]%'", "2;3"},
        {"Code Like '%[%]'", "2"},
        {"Code Like '%[_]%'", "3"},
        {"Code Like '%*%'", ""},
        {"Code Like '00?'", ""},
        {"Code Like '###'", ""},
        {"Name ALike '\xC3\xA4%'", "3"},
        {"ID Like '1'", "1"},
        {"Name Like '%'", "1;2;3;4"},
        {"Name Like '%%i%t%h%%'", "1;4"},
        {"Name Like Null", ""},
        {"Code Like '[]'", ""},
        // precedence
        {"ID=1 Or ID=2 And Flag", "1"},
        {"Not ID=1 And ID<3", "2"},
        {"2+3*4=14 And ID=1", "1"},
        {"-2^2=-4 And ID=1", "1"},
        {"2^3^2=64 And ID=1", "1"},
        {"7\\2*2=1 And ID=1", "1"},
        {"12 Mod 5\\2=0 And ID=1", "1"},
        {"1+2&3='33' And ID=1", "1"},
        {"ID=1 Xor ID<3", "2"},
        {"ID<3 Eqv ID=1", "1;3;4;5"},
        {"ID<3 Imp ID=1", "1;3;4;5"},
        {"10-3-2=5 And ID=1", "1"},
        {"2^-1=0.5 And ID=1", "1"},
        {"Not Not ID=1", "1"},
        {"ID=1=True", "1"},
        {"ID = - -1", "1"},
        // arithmetic
        {"ID Mod 2=0", "2;4"},
        {"-7 Mod 3=-1 And ID=1", "1"},
        {"-7\\2=-3 And ID=1", "1"},
        {"5.5\\2=3 And ID=1", "1"},
        {"1/0=1 Or ID=1", "1"},
        {"ID/0 Is Null And ID=1", "1"},
        {"Price*2=21", "1"},
        {"Price+0.1=10.6", "1"},
        {"Amount+Price=110.75", "1"},
        {"ID+ID=4", "2"},
        {"9223372036854775807+1>9.2E18 And ID=1", "1"},
        // joining texts
        {"Name & '!'='Smith!'", "1"},
        {"City & Name=''", "5"},
        {"Name+City='SmithLondon'", "1"},
        {"Name+'x' Is Null", "5"},
        {"ID & ''='1'", "1"},
        {"Name & ID='smithers4'", "4"},
        {"'2'+3=5 And ID=1", "1"},
        // GUID and the rest
        {"Tag='{0123abcd-0123-4567-89ab-0123456789ab}'", "2"},
        {"Tag Is Not Null", "2"},
        {"ID=1 \r\n\t And  1=1", "1"},
        // an unusual layout of a stored filter
        {"((((ID)=((1)))))", "1"},
        {"ID= 1 ;", "1"},
    };
    for (const auto& one : cases) {
        const auto ask = [&] { return this->database->Ask(std::string("SELECT ID FROM P WHERE ") + one.condition); };
        if (std::string(one.ids) == "ERR") {
            EXPECT_EQ(ErrorOf(ask), "Type mismatch in expression.") << one.condition;
            continue;
        }
        std::string ids;
        EXPECT_EQ(ErrorOf([&] { ids = ask(); }), "") << one.condition;
        EXPECT_EQ(ids, one.ids) << one.condition;
    }
}

TYPED_TEST(Conditions, ComputeWithTheFunctionsOfFilters) {
    const struct {
        const char* expression;
        const char* text;
    } cases[] = {
        {"Left('\xC3\x84rger',2)", "\xC3\x84r"},
        {"Right('abc',2)", "bc"},
        {"Right('abc',9)", "abc"},
        {"Mid('abcdef',2,3)", "bcd"},
        {"Mid('abc',9)", ""},
        {"Len('\xC3\x84rger')", "5"},
        {"Len(12345)", "5"},
        {"Trim('  a b  ')", "a b"},
        {"'<' & LTrim(' a ') & '>'", "<a >"},
        {"'<' & RTrim(' a ') & '>'", "< a>"},
        {"UCase('stra\xC3\x9F"
         "e \xC3\xA4\xCE\xB1\xD0\xB6')",
         "STRA\xC3\x9F"
         "E \xC3\x84\xCE\x91\xD0\x96"},
        {"LCase('\xC3\x84"
         "BC')",
         "\xC3\xA4"
         "bc"},
        {"InStr('abcABC','C')", "3"},
        {"InStr(4,'abcABC','c')", "6"},
        {"InStr(1,'abcABC','C',0)", "6"},
        {"InStr('abc','x')", "0"},
        {"'<' & Space(2) & '>'", "<  >"},
        {"String(3,'xy')", "xxx"},
        {"String(2,65)", "AA"},
        {"StrComp('a','B')", "-1"},
        {"StrComp('a','A')", "0"},
        {"StrComp('a','A',0)", "1"},
        {"Chr(65) & Chr(128)", "A\xE2\x82\xAC"},
        {"Asc('\xE2\x82\xAC')", "128"},
        {"Asc('A')", "65"},
        {"Str(5)", " 5"},
        {"Str(-5)", "-5"},
        {"Val('12.5kg')", "12.5"},
        {"Val(' 1 2 x')", "12"},
        {"Val('&HFF')", "255"},
        {"Val('x')", "0"},
        {"Val('1E2')", "100"},
        {"StrReverse('a\xC3\xA4"
         "b')",
         "b\xC3\xA4"
         "a"},
        {"Replace('abcABC','b','-')", "a-cA-C"},
        {"Replace('aaa','a','b',2,1)", "ba"},
        {"CInt(2.5)", "2"},
        {"CLng(3.5)", "4"},
        {"CInt('7')", "7"},
        {"CDbl('1.5')", "1.5"},
        {"CSng(0.1)", "0.1"},
        {"CCur(1.00005)", "1"},
        {"CCur(2.00015)", "2.0002"},
        {"CDec('12345678901234567890.5')", "12345678901234567890.5"},
        {"CStr(1.5)", "1.5"},
        {"CBool(3)", "True"},
        {"CByte(255)", "255"},
        {"CDate('11/18/2026')", "11/18/2026"},
        {"CStr(True)", "-1"},
        {"Int(-2.5)", "-3"},
        {"Fix(-2.5)", "-2"},
        {"Int(2.5)", "2"},
        {"Abs(-3)", "3"},
        {"Sgn(-0.5)", "-1"},
        {"Round(2.5)", "2"},
        {"Round(3.5)", "4"},
        {"Round(2.345,2)", "2.34"},
        {"Round(0.125,2)", "0.12"},
        {"Sqr(9)", "3"},
        {"Exp(0)", "1"},
        {"Log(1)", "0"},
        {"Year(#11/18/2026#)", "2026"},
        {"Month(#11/18/2026#)", "11"},
        {"Day('11/18/2026')", "18"},
        {"Weekday(#11/18/2026#)", "4"},
        {"Weekday(#11/18/2026#,2)", "3"},
        {"Hour(#4:23:05 PM#)", "16"},
        {"Minute(#4:23:05 PM#)", "23"},
        {"Second(#4:23:05 PM#)", "5"},
        {"DateSerial(2026,11,18)", "11/18/2026"},
        {"DateSerial(2026,13,1)", "1/1/2027"},
        {"DateSerial(2024,3,0)", "2/29/2024"},
        {"DateSerial(26,1,1)", "1/1/2026"},
        {"TimeSerial(16,23,5)", "4:23:05 PM"},
        {"TimeSerial(0,0,-1)", "12/29/1899 11:59:59 PM"},
        {"DateAdd('m',1,#1/31/2026#)", "2/28/2026"},
        {"DateAdd('yyyy',-1,#2/29/2024#)", "2/28/2023"},
        {"DateAdd('h',25,#11/18/2026#)", "11/19/2026 1:00:00 AM"},
        {"DateAdd('ww',1,#11/18/2026#)", "11/25/2026"},
        {"DateDiff('h',#10:59:50 AM#,#11:00:10 AM#)", "1"},
        {"DateDiff('n',#10:59:50 AM#,#11:00:10 AM#)", "1"},
        {"DateDiff('s',#10:59:50 AM#,#11:00:10 AM#)", "20"},
        {"DateDiff('yyyy',#12/31/2025#,#1/1/2026#)", "1"},
        {"DateDiff('d',#1/1/2026#,#12/31/2025#)", "-1"},
        {"DateDiff('ww',#11/21/2026#,#11/22/2026#)", "1"},
        {"DateDiff('m',#1/31/2026#,#2/1/2026#)", "1"},
        {"DateDiff('q',#3/31/2026#,#4/1/2026#)", "1"},
        {"DatePart('q',#11/18/2026#)", "4"},
        {"DatePart('y',#2/1/2026#)", "32"},
        {"DatePart('ww',#1/1/2026#)", "1"},
        {"DatePart('ww',#1/4/2026#)", "2"},
        {"DateValue(#11/18/2026 4:23 PM#)", "11/18/2026"},
        {"TimeValue('4:23 PM')", "4:23:00 PM"},
        {"IIf(1=1,'y',1/0)", "y"},
        {"IIf(Null,1,2)", "2"},
        {"Switch(1=2,'a',2=2,'b')", "b"},
        {"Choose(2,'a','b')", "b"},
        {"Nz(Null,'x')", "x"},
        {"Nz(1,'x')", "1"},
        {"IsNull(Null)", "True"},
        {"IsNumeric('1.5')", "True"},
        {"IsNumeric('x')", "False"},
        {"IsDate('11/18/2026')", "True"},
        {"IsDate('x')", "False"},
        {"Left(Null,1)", "NULL"},
        {"Choose(9,1)", "NULL"},
        {"Format(#11/18/2026 4:23:05 PM#,'dd_mmm_yy_hh_m_ss')", "18_Nov_26_16_23_05"},
        {"Format(1234.5,'#,##0.00')", "1,234.50"},
        {"Format(#11/18/2026 4:23:05 PM#,'yyyy-mm-dd-hh-nn-ss')", "2026-11-18-16-23-05"},
        {"Format(0.5,'Percent')", "50.00%"},
        {"Format(#11/18/2026 4:23:05 PM#,'hh:mm:ss AM/PM')", "04:23:05 PM"},
        {"Format(-1.5,'0.0;(0.0)')", "(1.5)"},
        {"Format(7,'000')", "007"},
        {"Format(#12:36:00#,'hh:mm :ss:mm')", "12:36 :00:12"},
        {"Format('11/18/2026','m/d/yy')", "11/18/26"},
        {"Format('ABC','<')", "abc"},
        {"Format(#11/18/2026#,'Long Date')", "Wednesday, November 18, 2026"},
    };
    for (const auto& one : cases) {
        std::string text;
        EXPECT_EQ(ErrorOf([&] {
                      text = this->database->Ask(std::string("SELECT ") + one.expression + " FROM P WHERE ID=1");
                  }),
                  "")
            << one.expression;
        EXPECT_EQ(text, one.text) << one.expression;
    }
}

TYPED_TEST(Conditions, ReportWhatTheyDoNotKnow) {
    const struct {
        const char* statement;
        const char* error;
    } cases[] = {
        {"SELECT ID FROM P WHERE Foo(1)=1", "Undefined function 'Foo' in expression."},
        {"SELECT ID FROM P WHERE Left('a')='a'",
         "Wrong number of arguments used with function 'Left' in query expression."},
        {"SELECT ID FROM P WHERE Nmae='x'",
         "No value given for one or more required parameters. (There is no column 'Nmae' in table 'P'.)"},
        {"SELECT Nmae FROM P",
         "No value given for one or more required parameters. (There is no column 'Nmae' in table 'P'.)"},
        {"SELECT ID FROM P WHERE Q.ID=1",
         "No value given for one or more required parameters. (There is no column 'Q.ID' in table 'P'.)"},
        {"SELECT ID FROM P WHERE ID=?", "No value given for one or more required parameters."},
        {"SELECT ID FROM Q", "The Jet database engine cannot find the input table or query 'Q'."},
        {"SELECT FROM P", "Syntax error in SELECT clause near 'FROM'."},
        {"SELECT ID FROM P WHERE", "Syntax error in WHERE clause at its end."},
        {"SELECT ID FROM P WHERE ID=1 ID=2", "Syntax error in WHERE clause near 'ID'."},
        {"SELECT ID FROM P; DELETE FROM P", "Syntax error in FROM clause near 'DELETE'."},
        {"SELECT ID FROM P WHERE Name='x", "Syntax error: ' is not closed."},
        {"SELECT ID FROM P WHERE ID~1", "Syntax error: unexpected character '~'."},
        {"SELECT ID FROM P WHERE Born=#13/13/2026#", "Syntax error in date in query expression '#13/13/2026#'."},
        {"SELECT ID FROM P WHERE Born='soon'", "Type mismatch in expression."},
        {"SELECT ID FROM P WHERE Code Like '[a'", "Invalid pattern string."},
        {"SELECT ID FROM P WHERE Sum(ID)=1", "Cannot have aggregate function in this place of the statement."},
        {"TRUNCATE P",
         "Invalid SQL statement; expected 'DELETE', 'INSERT', 'SELECT', 'UPDATE', 'CREATE TABLE' or 'DROP TABLE'."},
        {"SELECT varnel_value(1) FROM P", "Undefined function 'varnel_value' in expression."},
    };
    for (const auto& one : cases)
        EXPECT_EQ(ErrorOf([&] { this->database->Ask(one.statement); }), one.error) << one.statement;
    const std::string deep(5000, '(');
    EXPECT_EQ(ErrorOf([&] { this->database->Ask("SELECT ID FROM P WHERE " + deep + "1"); }),
              "Expression too complex in query expression.");
}

TYPED_TEST(Conditions, OrderGroupAndCount) {
    const struct {
        const char* query;
        const char* rows;
    } cases[] = {
        {"Select count(*)  FROM [P]", "5"},
        {" Select Count(*) FROM P WHERE Flag", "2"},
        {"SELECT count(Name), count(*) FROM P", "4|5"},
        {"SELECT ID FROM P ORDER BY Name, ID", "5;2;1;4;3"},
        {"SELECT ID FROM P ORDER BY Born DESC", "2;4;3;1;5"},
        {"SELECT ID, Name AS N FROM P WHERE ID<4 ORDER BY N", "2|O'Brien;1|Smith;3|\xC3\x84rger"},
        {"SELECT ID FROM P ORDER BY 1 DESC", "5;4;3;2;1"},
        {"SELECT TOP 2 ID FROM P ORDER BY ID DESC", "5;4"},
        {"SELECT DISTINCT City FROM P WHERE City Like 'lon%'", "London"},
        {"SELECT City, count(*) FROM P GROUP BY City HAVING count(*)>1", "London|2"},
        {"SELECT sum(Price), avg(ID), min(Name), max(Born) FROM P", "27.25|3|O'Brien|11/18/2026 4:23:05 PM"},
        {"SELECT max(Amount), sum(Amount) FROM P", "12345678901234.5678|12345678901334.9178"},
        {"SELECT sum(ID) FROM P WHERE ID>99", "NULL"},
        {"SELECT max(ID)-min(ID) FROM P", "4"},
        {"SELECT \"ID\", \"Name\" FROM P WHERE ID=1", "1|Smith"},
        {"SELECT \"text\" FROM P WHERE ID=1", "text"},
        {"SELECT ID FROM [dbo].[P] WHERE ID=1", "1"},
        {"SELECT `ID` FROM `db`.`P` WHERE ID=1", "1"},
        {"SELECT ID FROM OWNER.P WHERE ID=1", "1"},
        {"SELECT x.ID FROM P AS x WHERE x.ID=1", "1"},
        {"select * from P where ID=5", "5|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL"},
    };
    for (const auto& one : cases) {
        std::string rows;
        EXPECT_EQ(ErrorOf([&] { rows = this->database->Ask(one.query); }), "") << one.query;
        EXPECT_EQ(rows, one.rows) << one.query;
    }
}

}  // namespace
}  // namespace varnel
