// Which rows a condition chooses in the FoxPro dialect, as people write it in filters.
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "providers/sql/FoxProStatements.h"
#include "tests/providers_sql/MemoryStore.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

/// Five people; the last one has nothing but a key, the third no birthday. Names are ten characters wide.
class FoxProConditions : public testing::Test {
protected:
    static void SetUpTestSuite() {
        database = std::make_unique<MemoryTestDatabase>(sql::FoxProDialect(true, false));
        database->Store().Make(
            "P", {ColumnOf("ID", adInteger), ColumnOf("Name", adChar, 10), ColumnOf("Code", adVarChar, 10),
                  ColumnOf("Born", adDBDate), ColumnOf("Seen", adDBTimeStamp), ColumnOf("Flag", adBoolean),
                  ColumnOf("Price", adCurrency), ColumnOf("Rate", adDouble), ColumnOf("Amount", adNumeric, 19, 4),
                  ColumnOf("Note", adLongVarChar)});
        const char* rows[] = {
            "(1,'Smith     ','A-1',{^1970-01-02},{^2026-11-18 16:23:05},.T.,$10.5,0.5,100.25,'first')",
            "(2,\"O'Brien   \",'50%',{^2026/11/18},{^2026-11-18 00:00:00},.F.,$20,1.5,0.1,'')",
            "(3,'\xC3\x84rger     ','x_y',{},{},.Y.,-$3.25,-2,12345678901234.5678,'a longer note')",
            "(4,'smithers  ','007',{^2001.05.06},{^2001-05-06 12:00:00 AM},.N.,$0,0,0,[it's])",
            "(5,NULL,.NULL.,NULL,NULL,NULL,NULL,NULL,NULL,NULL)"};
        for (const char* row : rows) database->Run(std::string("INSERT INTO P VALUES ") + row);
    }
    static void TearDownTestSuite() { database.reset(); }

    static std::string Ids(const std::string& condition) {
        return database->Ask("SELECT ID FROM P WHERE " + condition);
    }

    static std::unique_ptr<MemoryTestDatabase> database;
};
std::unique_ptr<MemoryTestDatabase> FoxProConditions::database;

TEST_F(FoxProConditions, ChooseTheRowsThatTheDialectMeans) {
    // by the rows that they choose
    const struct {
        const char* ids;
        std::vector<const char*> conditions;
    } groups[] = {
        {"1",
         {"Name='Smith'", "Name==\"Smith\"", "Name=[Smith     ]", "UPPER(Name)='SMITH'", "p->name = 'Smith'",
          "ID=1.OR.ID=2.AND.Flag", "Price=$10.50", "2+3*4=14 AND ID=1", "-2^2=4 AND ID=1", "2**3**2=64 AND ID=1",
          "7%3=1 AND -7%3=2 AND 7%-3=-2 AND ID=1"}},
        {"1",
         {"MOD(-7,3)=2 AND ID=1", "1/0=1 OR ID=1",
          "ROUND(2.5,0)=3 AND ROUND(-2.5,0)=-3 AND ROUND(1234,-2)=1200 AND ID=1",
          "INT(-2.7)=-2 AND FLOOR(-2.7)=-3 AND CEILING(2.1)=3 AND ID=1", "VAL('12abc')=12 AND VAL('x')=0 AND ID=1",
          "Born={^1970-01-02}", "Born={01/02/1970}", "Born={d '1970-01-02'}", "Seen={ts '2026-11-18 16:23:05'}",
          "Seen={^2026-11-18, 4:23:05 PM}", "Born+1={^1970-01-03}"}},
        {"1",
         {"Born-{^1970-01-01}=1", "Seen+3={^2026-11-18 16:23:08}", "Seen-{^2026-11-18}=58985", "YEAR(Born)=1970",
          "DTOS(Born)='19700102'", "DTOC(Born)='01/02/70'", "GOMONTH({^2000-01-31},1)={^2000-02-29} AND ID=1",
          "Name LIKE 'Sm%'", "Name LIKE '_mith'", "ALLTRIM(Name)+'!'='Smith!'", "Name-'!'='Smith!'"}},
        {"1",
         {"RAT('i','Mississippi')=11 AND OCCURS('ss','Mississippi')=2 AND ID=1",
          "STRTRAN('banana','a','o',2,1)='banona' AND ID=1",
          "STUFF('abcdef',2,3,'X')='aXef' AND CHRTRAN('banana','an','o')=='booo' AND ID=1",
          "PADL('7',3,'0')='007' AND PADC('x',3)==' x' AND ID=1",
          "STR(3.14159,6,2)='  3.14' AND STR(12345,3)='***' AND ID=1", "STR(9.96,3,2)=' 10' AND ID=1",
          "PROPER('o brien SMITH')='O Brien Smith' AND ID=1", "TRANSFORM(1234.5,'9,999.99')='1,234.50' AND ID=1",
          "CAST('12.6' AS I)=13 AND ID=1"}},
        {"", {"Name='SMITH'", "Name='Smi'", "'' $ Name", "Name = .NULL.", "ID BETWEEN 4 AND 2", "Code LIKE '[0-9]%'"}},
        {"2",
         {"Name=\"O'Brien\"", "Name='O''Brien'", "note = ''", "(ID=1.or.ID=2).and..not.Flag", "Amount=0.1",
          "Seen={^2026-11-18}", "Code LIKE '50\\%' ESCAPE '\\'", "EMPTY(Note) AND EMPTY(Rate-1.5)",
          "!DELETED() AND RECNO()=2"}},
        {"2;3;4", {"Name<>'Smith'", "Name#'Smith'", "Name!='Smith'", "NOT (Name='Smith')", "ID BETWEEN 2 AND 4"}},
        {"1;2",
         {"Name<'T'", "Price>$0", "Seen>={^2026-11-18}", "TTOD(Seen)={^2026-11-18}", "ID BETW 1 AND 2 && the first"}},
        {"1;4",
         {"'mit' $ Name", "INLIST(Code,'007','A-1')", "SUBSTR(Name,2,3)='mit'", "AT('i',Name)=3",
          "ATC('SMITH',Name)=1"}},
        {"2;3", {"!('mit'$Name)", "BETWEEN(ID,2,3)", "Name NOT LIKE '%m%'"}},
        {"1;3",
         {"Flag", "Flag=.T.", "ID IN (1,3,9)", "LEN(Name)=10 AND LEN(TRIM(Name))=5", "TRANSFORM(Flag)='.T.'",
          "IIF(Flag,'y','n')='y'"}},
        {"2;4", {"!Flag", ".NOT. Flag"}},
        {"4",
         {"Flag = .f. .AND. ID>2", "MAX(ID,3)=4", "CTOD('05/06/2001')=Born", "CMONTH(Born)='May' AND DOW(Born)=1",
          "DATE(2001,5,6)=Born", "BETWEEN(Born,{^2000-01-01},{^2010-01-01}) AND Born<DATE()", "LIKE('sm*',Name)",
          "LEFT(Name,1)='s'", "CAST(Code AS C(2))='00'"}},
        {"5", {"Name IS NULL", "ISNULL(Name)", "NVL(Name,'none')='none'"}},
        {"1;3;5", {"Flag OR ID=5"}},
        {"3",
         {"ID=0x3", "ID*2+1=7", "Name LIKE '%r'", "Code LIKE 'x!_y' ESCAPE '!'", "UPPER('\xC3\xA4rger')=UPPER(Name)"}},
        {"2;4;5", {"ID NOT IN (1,3)"}},
        {"3;5", {"Born={}", "EMPTY(Born)", "YEAR(Born)=0"}},
        {"1;2;4", {"Born<>{  /  /  }", "!EMPTY(Seen)"}},
        {"3;4;5", {"ICASE(ID=1,'one',ID=2,'two','many')='many'"}}};
    for (const auto& group : groups)
        for (const char* condition : group.conditions) EXPECT_EQ(Ids(condition), group.ids) << condition;
}

TEST_F(FoxProConditions, AreRefusedInTheDialectsWords) {
    const struct {
        const char* condition;
        const char* words;
    } cases[] = {
        {"Name=5", "Operator/operand type mismatch."},
        {"Flag=1", "Operator/operand type mismatch."},
        {"ID", "Operator/operand type mismatch."},
        {"Born='1970-01-02'", "Operator/operand type mismatch."},
        {"Name & 'x' = 'y'", "unexpected character '&'"},
        {"NoSuch=1", "SQL: Column 'NOSUCH' is not found."},
        {"FROBNICATE(ID)=1", "FROBNICATE"},
        {"SUBSTR(Name)='x'", "'SUBSTR'"},
        {"LEFT(ID,1)='1'", "Function argument value, type, or count is invalid."},
        {"Born={^1970-02-30}", "{^1970-02-30}"},
        {"ID=(1", "WHERE clause"},
        {"Name='x", "' is not closed"},
    };
    for (const auto& one : cases) {
        const std::string text = ErrorOf([&] { Ids(one.condition); });
        EXPECT_NE(text.find(one.words), std::string::npos) << one.condition << ": " << text;
    }
}

TEST_F(FoxProConditions, CompareUpToTheShorterTextWithoutAnsi) {
    MemoryTestDatabase loose(sql::FoxProDialect(false, true));
    loose.Run("CREATE TABLE T (Name C(10))");
    loose.Run("INSERT INTO T VALUES ('Smith')");
    EXPECT_EQ(loose.Ask("SELECT Name FROM T WHERE Name='Smi'"), "Smith");
    EXPECT_EQ(loose.Ask("SELECT Name FROM T WHERE Name=='Smi'"), "");
    // which rows are deleted cannot be told when they are shown
    EXPECT_NE(ErrorOf([&] { loose.Ask("SELECT Name FROM T WHERE !DELETED()"); }), "");
}

TEST_F(FoxProConditions, ComputeColumnsAndOrderByCase) {
    EXPECT_EQ(database->Ask("SELECT count(*) FROM P WHERE Flag"), "2");
    EXPECT_EQ(database->Ask("SELECT TRIM(Name)+'/'+Code, ID%2 FROM P WHERE ID<3"), "Smith/A-1|1;O'Brien/50%|0");
    EXPECT_EQ(database->Ask("SELECT ID FROM P WHERE ID<5 ORDER BY Name DESC"), "3;4;1;2");
    EXPECT_EQ(database->Ask("SELECT MAX(Price), SUM(ID) FROM P"), "20|15");
    EXPECT_EQ(database->Ask("SELECT Born+1, Seen+1 FROM P WHERE ID=1"), "1/3/1970|11/18/2026 4:23:06 PM");
}

}  // namespace
}  // namespace varnel
