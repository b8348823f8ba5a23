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
    // by the rows that they choose
    const struct {
        const char* ids;
        std::vector<const char*> conditions;
    } groups[] = {
        {"1",
         {"Name='SMITH'", "[Name]='Smith'", "`Name`='Smith'", "P.Name='Smith'", "[P].[Name]='Smith'",
          "True=-1 And ID=1", "ID=1.0", "Price=10.5", "Rate=.5", "ID In (1,Null)"}},
        {"1",
         {"Name In ('SMITH','nobody')", "Born=#1/2/1970#", "Born=#1970-01-02#", "Born={d '1970-01-02'}", "Born=25570",
          "Born+1=#1/3/1970#", "Born-#1/1/1970#=1", "IIf(ID=1,Born,Null)=#1/2/1970#", "Name Like 'SM_TH'",
          "ID Like '1'"}},
        {"1",
         {"ID=1 Or ID=2 And Flag", "2+3*4=14 And ID=1", "-2^2=-4 And ID=1", "2^3^2=64 And ID=1", "7\\2*2=1 And ID=1",
          "12 Mod 5\\2=0 And ID=1", "1+2&3='33' And ID=1", "2^-1=0.5 And ID=1", "Not Not ID=1", "ID=1=True"}},
        {"1",
         {"ID = - -1", "-7 Mod 3=-1 And ID=1", "-7\\2=-3 And ID=1", "5.5\\2=3 And ID=1", "1/0=1 Or ID=1",
          "ID/0 Is Null And ID=1", "Price*2=21", "Price+0.1=10.6", "Amount+Price=110.75",
          "9223372036854775807+1>9.2E18 And ID=1"}},
        {"1",
         {"Name & '!'='Smith!'", "Name+City='SmithLondon'", "ID & ''='1'", "'2'+3=5 And ID=1", "ID=1 \r\n\t And  1=1",
          "((((ID)=((1)))))", "ID= 1 ;"}},
        {"3",
         {"Name='\xC3\xA4RGER'", "P.ID= 3", "ID=&H3", "Amount>12345678901234", "Price=-3.25", "Born=#31/12/1999#",
          "Born='12/31/1999'", "Name Like '%r'", "Code Like '%[_]%'", "Name ALike '\xC3\xA4%'"}},
        {"2;3;4", {"Name <> 'smith'", "Not (Name='Smith')", "ID Between 2 And 4", "ID Between 4 And 2"}},
        {"2",
         {"Name='O''Brien'", "Name=\"O'Brien\"", "Name<'p'", "Null Or ID=2", "Amount=0.1", "ID='2'", "ID=' 2 '",
          "Name Between 'a' And 'p'", "Born>#11/18/2026#", "Born=#11/18/2026 4:23:05 PM#"}},
        {"2",
         {"Born={ts '2026-11-18 16:23:05'}", "Born>40000", "TimeValue(Born)=#4:23:05 PM#", "Int(Born)=#11/18/2026#",
          "DateAdd('d',1,DateValue(Born))=#11/19/2026#", "Name Like '[a-p]%'", "Code Like '%[%]'", "Not ID=1 And ID<3",
          "ID=1 Xor ID<3", "Tag='{0123abcd-0123-4567-89ab-0123456789ab}'"}},
        {"",
         {"Name=''", "p.id=-3", "Name = Null", "ID Not In (1,Null)", "Code Like '%*%'", "Code Like '00?'",
          "Code Like '###'", "Name Like Null", "Code Like '[]'"}},
        {"5", {"Name Is Null", "City & Name=''"}},
        {"1;5", {"Name='Smith' Or Flag Is Null"}},
        {"1;3;4;5", {"Not (Null And ID=2)", "ID<3 Eqv ID=1", "ID<3 Imp ID=1"}},
        {"1;3", {"Flag", "Flag=True", "Flag=-1", "Flag=(1=1)", "ID In (1,3,9)"}},
        {"2;4", {"Flag=0", "Not Flag", "Flag=Off", "ID Mod 2=0"}},
        {"2;3", {"ID>=2 And ID<4", "Name Like '[^s]%'"}},
        {"2;4;5", {"ID Not In (1,3)"}},
        {"3;4", {"Born Between #1/1/1999# And #1/1/2002#"}},
        {"1;4", {"Name Like 'smith%'", "Name Like '%%i%t%h%%'"}},
        {"1;3;4", {"Name Like '[!a-p]%'"}},
        {"1;2;3;4", {"Name Like '%'"}},
        {"4", {"Name & ID='smithers4'"}}};
    for (const auto& group : groups)
        for (const std::string condition : group.conditions) {
            std::string ids;
            EXPECT_EQ(ErrorOf([&] { ids = this->database->Ask("SELECT ID FROM P WHERE " + condition); }), "")
                << condition;
            EXPECT_EQ(ids, group.ids) << condition;
        }
}

TYPED_TEST(Conditions, ComputeWithTheFunctionsOfFilters) {
    const struct {
        const char *expressions, *texts;
    } cases[] = {
        {"Left('Ärger',2), Right('abc',9), Mid('abcdef',2,3), Mid('abc',9), Len('Ärger')", "Är|abc|bcd||5"},
        {"Trim('  a b  '), '<' & LTrim(' a ') & '>', '<' & RTrim(' a ') & '>'", "a b|<a >|< a>"},
        {"UCase('straße äαж'), LCase('ÄBC'), InStr('abcABC','C')", "STRAßE ÄΑЖ|äbc|3"},
        {"InStr(4,'abcABC','c'), InStr(1,'abcABC','C',0), InStr('abc','x')", "6|6|0"},
        {"'<' & Space(2) & '>', String(3,'xy'), String(2,65), StrComp('a','B')", "<  >|xxx|AA|-1"},
        {"StrComp('a','A'), StrComp('a','A',0), Chr(65) & Chr(128), Asc('€'), Asc('A')", "0|1|A€|128|65"},
        {"Str(5), Val('12.5kg'), Val(' 1 2 x'), Val('&HFF'), Val('x')", " 5|12.5|12|255|0"},
        {"StrReverse('aäb'), Replace('abcABC','b','-'), Replace('aaa','a','b',2,1)", "bäa|a-cA-C|ba"},
        {"CInt(2.5), CLng(3.5), CInt('7'), CDbl('1.5'), CSng(0.1), CCur(1.00005)", "2|4|7|1.5|0.1|1"},
        {"CCur(2.00015), CDec('12345678901234567890.5'), CBool(3)", "2.0002|12345678901234567890.5|True"},
        {"CByte(255), CDate('11/18/2026'), CStr(True), Int(-2.5), Fix(-2.5)", "255|11/18/2026|-1|-3|-2"},
        {"Abs(-3), Sgn(-0.5), Round(2.5), Round(3.5), Round(2.345,2), Round(0.125,2)", "3|-1|2|4|2.34|0.12"},
        {"Sqr(9), Exp(0), Log(1), Year(#11/18/2026#), Month(#11/18/2026#)", "3|1|0|2026|11"},
        {"Day('11/18/2026'), Weekday(#11/18/2026#), Weekday(#11/18/2026#,2)", "18|4|3"},
        {"Hour(#4:23:05 PM#), Minute(#4:23:05 PM#), Second(#4:23:05 PM#)", "16|23|5"},
        {"DateSerial(2026,11,18), DateSerial(2026,13,1)", "11/18/2026|1/1/2027"},
        {"DateSerial(2024,3,0), DateSerial(26,1,1), TimeSerial(16,23,5)", "2/29/2024|1/1/2026|4:23:05 PM"},
        {"TimeSerial(0,0,-1), DateAdd('m',1,#1/31/2026#)", "12/29/1899 11:59:59 PM|2/28/2026"},
        {"DateAdd('yyyy',-1,#2/29/2024#), DateAdd('h',25,#11/18/2026#)", "2/28/2023|11/19/2026 1:00:00 AM"},
        {"DateAdd('ww',1,#11/18/2026#), DateDiff('h',#10:59:50 AM#,#11:00:10 AM#)", "11/25/2026|1"},
        {"DateDiff('n',#10:59:50 AM#,#11:00:10 AM#), DateDiff('s',#10:59:50 AM#,#11:00:10 AM#)", "1|20"},
        {"DateDiff('yyyy',#12/31/2025#,#1/1/2026#), DateDiff('d',#1/1/2026#,#12/31/2025#)", "1|-1"},
        {"DateDiff('ww',#11/21/2026#,#11/22/2026#), DateDiff('m',#1/31/2026#,#2/1/2026#)", "1|1"},
        {"DateDiff('q',#3/31/2026#,#4/1/2026#), DatePart('q',#11/18/2026#)", "1|4"},
        {"DatePart('y',#2/1/2026#), DatePart('ww',#1/1/2026#), DatePart('ww',#1/4/2026#)", "32|1|2"},
        {"DateValue(#11/18/2026 4:23 PM#), TimeValue('4:23 PM')", "11/18/2026|4:23:00 PM"},
        {"IIf(1=1,'y',1/0), IIf(Null,1,2), Switch(1=2,'a',2=2,'b'), Choose(2,'a','b')", "y|2|b|b"},
        {"Nz(Null,'x'), IsNull(Null), IsNumeric('1.5'), IsNumeric('x')", "x|True|True|False"},
        {"IsDate('x'), Left(Null,1), Choose(9,1)", "False|NULL|NULL"},
        {"Format(#11/18/2026 4:23:05 PM#,'dd_mmm_yy_hh_m_ss')", "18_Nov_26_16_23_05"},
        {"Format(1234.5,'#,##0.00')", "1,234.50"},
        {"Format(#11/18/2026 4:23:05 PM#,'yyyy-mm-dd-hh-nn-ss')", "2026-11-18-16-23-05"},
        {"Format(0.5,'Percent'), Format(#11/18/2026 4:23:05 PM#,'hh:mm:ss AM/PM')", "50.00%|04:23:05 PM"},
        {"Format(-1.5,'0.0;(0.0)'), Format(#12:36:00#,'hh:mm :ss:mm')", "(1.5)|12:36 :00:12"},
        {"Format('11/18/2026','m/d/yy'), Format('ABC','<')", "11/18/26|abc"},
        {"Format(#11/18/2026#,'Long Date')", "Wednesday, November 18, 2026"},
    };
    for (const auto& one : cases) {
        std::string text;
        EXPECT_EQ(ErrorOf([&] {
                      text = this->database->Ask(std::string("SELECT ") + one.expressions + " FROM P WHERE ID=1");
                  }),
                  "")
            << one.expressions;
        EXPECT_EQ(text, one.texts) << one.expressions;
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
        {"SELECT ID FROM P WHERE Code=7", "Type mismatch in expression."},
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
