#include "ado/types/ConnectionString.h"

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(ConnectionStringTest, ReadsEveryFormOfAValue) {
    struct Case {
        const char* text;
        const char* keyword;
        const char* value;
    };
    for (const auto& [text, keyword, value] : {Case{"Provider=X;Data Source=C:\\a b.mdb", "data source", "C:\\a b.mdb"},
                                               {" Data Source = x y ; ", "Data Source", "x y"},
                                               {"a=\"x;'y\"\"z\" ;b=1", "a", "x;'y\"z"},
                                               {"a='x;\"y''z'", "a", "x;\"y'z"},
                                               {"a={x;}}y}", "a", "x;}y"},
                                               {"a=x\"y", "a", "x\"y"},
                                               {"a=b=c", "a", "b=c"},
                                               {"k==v=1", "k=v", "1"},
                                               {"a=;b=2", "a", ""},
                                               {";; a=1;;b=2;", "b", "2"},
                                               {"a=1;A=2", "a", "2"},
                                               {"Provider=P;provider=Q", "Provider", "P"},
                                               {"a=\"\"", "a", ""},
                                               {"a=(DESCRIPTION=(HOST=h))", "a", "(DESCRIPTION=(HOST=h))"}}) {
        EXPECT_EQ(ConnectionString(text).Find({keyword}), value) << text;
    }
    EXPECT_TRUE(ConnectionString("").Pairs().empty());
    EXPECT_TRUE(ConnectionString(" ; ").Pairs().empty());
}

TEST(ConnectionStringTest, FindTakesTheFirstSynonymPresent) {
    const ConnectionString text("Server=s;Data Source=d;Empty=");
    EXPECT_EQ(text.Get({"Data Source", "Server"}), "d");
    EXPECT_EQ(text.Get({"Address", "server"}), "s");
    EXPECT_EQ(text.Get({"Port"}, "1433"), "1433");
    EXPECT_EQ(text.Get({"Empty"}, "1433"), "");
    EXPECT_FALSE(text.Find({"Port"}).has_value());
}

TEST(ConnectionStringTest, RefusesWithoutRepeatingValues) {
    for (const char* text : {"PWD=secret;more-secret", "PWD=\"secret", "PWD='secret", "PWD={secret", "a=1;=secret",
                             "PWD=\"secret\"secret", "secret"}) {
        const std::string error = ErrorOf([&] { ConnectionString broken(text); });
        EXPECT_NE(error, "") << text;
        EXPECT_EQ(error.find("secret"), std::string::npos) << error;
    }
}

TEST(ConnectionStringTest, NamesProviderAndDriver) {
    struct Case {
        const char* text;
        const char* provider;
        const char* driver;
    };
    for (const auto& [text, provider, driver] :
         {Case{"PROVIDER=SQLOLEDB.1", "SQLOLEDB", ""},
          {"Provider=OraOLEDB.Oracle.1", "OraOLEDB.Oracle", ""},
          {"Provider=Microsoft.Jet.OLEDB.4.0", "Microsoft.Jet.OLEDB.4.0", ""},
          {"Provider=Microsoft.Jet.OLEDB.3.51", "Microsoft.Jet.OLEDB.3.51", ""},
          {"Provider=SQLNCLI11", "SQLNCLI11", ""},
          {"Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=x", "", "Microsoft Text Driver (*.txt; *.csv)"},
          {"driver=\"{SQL Server}\"", "", "SQL Server"},
          {"Driver=FreeTDS", "", "FreeTDS"},
          {"DSN=x", "", ""}}) {
        EXPECT_EQ(ConnectionString(text).Provider(), provider);
        EXPECT_EQ(ConnectionString(text).Driver(), driver);
    }
}

TEST(ConnectionStringTest, ShownMasksPasswordsOfAllSpellings) {
    struct Case {
        const char* text;
        const char* shown;
    };
    for (const auto& [text, shown] :
         {Case{"UID=sa;PWD=secret;Port=1", "UID=sa;PWD=***;Port=1"},
          {"Password = secret ;a=1", "Password = *** ;a=1"},
          {"Jet OLEDB:Database Password=\"se;cret\"", "Jet OLEDB:Database Password=***"},
          {" pwd ={se}}cret};x=y", " pwd =***;x=y"},
          {"PassWord='se''cret'", "PassWord=***"},
          {"PWD=a;pwd=b", "PWD=***;pwd=***"},
          {"Extended Properties=\"DSN=x;PWD=secret;UID=u\";a=1", "Extended Properties=\"DSN=x;PWD=***;UID=u\";a=1"},
          {"Extended Properties='DSN=\"q\";Password={secret}'", "Extended Properties='DSN=\"q\";Password=***'"},
          {"Extended Properties=PWD=secret", "Extended Properties=PWD=***"},
          {"a=\"x;y\";Data Source={p}", "a=\"x;y\";Data Source={p}"},
          {"Extended Properties=\"text;HDR=Yes\"", "Extended Properties=\"text;HDR=Yes\""},
          {"Extended Properties=\"PWD=a;b;c=\"\"open\"", "Extended Properties=\"PWD=***;******\""}}) {
        EXPECT_EQ(ConnectionString(text).Shown(), shown) << text;
    }
}

TEST(ConnectionStringTest, RedactHidesPasswordsInOtherTexts) {
    const ConnectionString text("PWD=se'cret;Password={long;er}}se'cret};Extended Properties=\"PWD=nested\";X Pwd=abc");
    EXPECT_EQ(text.Redact("login failed: se'cret, long;er}se'cret, long;er}}se'cret, nested, abc"),
              "login failed: ***, ***, ***, ***, abc");
    EXPECT_EQ(ConnectionString("a=1").Redact("nothing to hide"), "nothing to hide");
}

TEST(TextHelpersTest, TouchAsciiOnly) {
    EXPECT_TRUE(EqualNoCase("Data Source", "DATA SOURCE"));
    EXPECT_FALSE(EqualNoCase("a", "ab"));
    EXPECT_EQ(AsciiLower("ÄB@["), "Äb@[");
    EXPECT_EQ(AsciiUpper("äb`{"), "äB`{");
    EXPECT_EQ(TrimBlanks(" \ta "), "\ta");
}

}  // namespace
}  // namespace varnel
