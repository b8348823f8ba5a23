// Folders of text files, from the connection string to the fields of a record set.
#include <gtest/gtest.h>

#include "ado/Ado.h"
#include "ado/SessionLease.h"
#include "ado/types/ValueText.h"
#include "providers/ProviderList.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

class TextFiles : public testing::Test {
protected:
    TextFiles() {
        SetProviders(AllProviders());
        folder.Write("orders.csv",
                     "ID,First.Name,Country,Price,Day\r\n1,Ann,DE,1.5,1/2/2026\r\n2,\"O'Brien\",fr,,1/3/2026\r\n"
                     "3,Zoe,de,7.25,\r\n");
        folder.Write("two.dots.txt", "A;B\n5;x\n");
        folder.Write("Schema.ini", "[two.dots.txt]\nFormat=Delimited(;)\n");
    }
    ~TextFiles() override { CloseIdleSessions(); }

    std::string Jet(const std::string& options = "text;HDR=Yes;FMT=Delimited") const {
        return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder.Path() + ";Extended Properties=\"" + options +
               "\"";
    }
    std::string Ask(const std::string& query, const std::string& connection) const {
        Recordset rows;
        rows.Open(query, connection);
        std::string text;
        for (; !rows.Eof(); rows.MoveNext()) {
            if (!text.empty()) text += ";";
            for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
                const Value& value = rows.Fields(k).GetValue();
                text += (k > 0 ? "|" : "") + (value.IsNull() ? std::string("NULL") : DefaultText(value));
            }
        }
        return text;
    }
    std::string Ask(const std::string& query) const { return Ask(query, Jet()); }

    TempFolder folder;
};

TEST_F(TextFiles, AnswerTheStatementsOfSessions) {
    const struct {
        const char* query;
        const char* rows;
    } cases[] = {
        {"SELECT [ID],[Country] FROM [orders.csv]", "1|DE;2|fr;3|de"},
        {"SELECT [ID] FROM [orders#csv]", "1;2;3"},
        {"SELECT `ID` FROM `ORDERS.CSV`", "1;2;3"},
        {"SELECT [B],[A] FROM [two#dots#txt] WHERE [A]=5", "x|5"},
        {"SELECT [ID] FROM [orders.csv] WHERE Country='DE'", "1;3"},
        {"SELECT [ID] FROM [orders.csv] WHERE [First#Name] Like 'o%'", "2"},
        {"SELECT [First.Name] FROM [orders.csv] WHERE [First.Name]>'b'", "O'Brien;Zoe"},
        {"SELECT [ID] FROM [orders.csv] WHERE [Day]=#1/2/2026#", "1"},
        {"SELECT [ID] FROM [orders.csv] WHERE [Price] Is Null", "2"},
        {"SELECT [ID] FROM [orders.csv] WHERE IIf([Price] Is Null,0,[Price])>1 And Year([Day])=2026", "1"},
        {"SELECT DISTINCT [Country] FROM [orders.csv] ORDER BY [Country] DESC", "fr;DE"},
        {"SELECT TOP 1 [F1] FROM [orders.csv]", "1"},
        {"SELECT * FROM [orders.csv] WHERE ID=1", "1|Ann|DE|1.5|1/2/2026"},
    };
    for (const auto& one : cases) {
        std::string rows;
        EXPECT_EQ(ErrorOf([&] { rows = Ask(one.query); }), "") << one.query;
        EXPECT_EQ(rows, one.rows) << one.query;
    }
}

TEST_F(TextFiles, AreReachedByEveryKindOfConnectionString) {
    const std::string query = "SELECT [ID] FROM [orders.csv] WHERE ID=2";
    const std::string path = folder.Path();
    for (const std::string& connection :
         {"Provider=Microsoft.ACE.OLEDB.12.0;Data Source=" + path + "/;Extended Properties='Text;HDR=Yes'",
          "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=" + path + ";Extensions=asc,csv,tab,txt",
          "Driver={Microsoft Access Text Driver (*.txt, *.csv)};DefaultDir=" + path,
          "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + "/orders.csv;Extended Properties=text"})
        EXPECT_EQ(Ask(query, connection), "2") << connection;
    EXPECT_EQ(Ask("SELECT ID FROM [" + path + "/].[orders.csv] WHERE ID=1"), "1");
    EXPECT_EQ(Ask("SELECT F1,F2 FROM [two.dots.txt]", Jet("text;HDR=No")), "A|B;5|x");
    EXPECT_EQ(Ask("SELECT A,B FROM [two.dots.txt]", Jet("text;HDR=Yes")), "5|x");
}

TEST_F(TextFiles, RefuseEveryChange) {
    const auto session = OpenSession(Jet());
    const std::string refusal = "Cannot update. Database or object is read-only.",
                      before = ReadBytes(folder.File("orders.csv"));
    for (const char* statement :
         {"INSERT INTO [orders.csv] (ID) VALUES (9)", "UPDATE [orders.csv] SET ID=9", "DELETE FROM [orders.csv]",
          "DROP TABLE [orders.csv]", "CREATE TABLE [new.csv] (A Long)"})
        EXPECT_EQ(ErrorOf([&] { session->Execute(statement); }), refusal) << statement;
    EXPECT_EQ(ErrorOf([&] { session->OpenAppender("SELECT ID FROM [orders.csv]"); }), refusal);
    EXPECT_EQ(ErrorOf([&] { session->Prepare("INSERT INTO [orders.csv] (ID) VALUES (?)", {}); }), refusal);
    EXPECT_EQ(ReadBytes(folder.File("orders.csv")), before);
}

TEST_F(TextFiles, ServeTwoReadersAtOnce) {
    const auto one = OpenSession(Jet()), other = OpenSession(Jet());
    const auto first = one->Query("SELECT ID FROM [orders.csv]");
    const auto second = one->Query("SELECT ID FROM [orders.csv] WHERE ID>0");
    const auto third = other->Query("SELECT ID FROM [orders.csv] ORDER BY ID");
    std::vector<Value> row(1);
    for (int id = 1; id <= 3; ++id)
        for (const auto* rows : {&first, &second, &third}) {
            ASSERT_TRUE((*rows)->Next(row));
            EXPECT_EQ(row[0].AsInteger(), id);
        }
}

TEST_F(TextFiles, NoticeAFolderThatWasReplaced) {
    const std::string path = folder.MakeFolder("in");
    folder.Write("in/a.csv", "A\n1\n");
    const std::string connection = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + ";Extended Properties=text";
    const auto session = OpenSession(connection);
    EXPECT_TRUE(session->Alive());
    std::filesystem::rename(path, path + ".away");
    EXPECT_FALSE(session->Alive());
    folder.MakeFolder("in");
    folder.Write("in/a.csv", "A\n2\n");
    EXPECT_FALSE(session->Alive());
    EXPECT_EQ(SqlTestDatabase::AskOn(*OpenSession(connection), "SELECT A FROM [a.csv] WHERE A>0"), "2");
}

}  // namespace
}  // namespace varnel
