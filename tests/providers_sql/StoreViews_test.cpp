// Queries kept in a store, read by name like tables.
#include <gtest/gtest.h>

#include "tests/providers_sql/MemoryStore.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

class StoreViews : public testing::Test {
protected:
    StoreViews() {
        MemoryTable& table = database_.Store().Make(
            "goods", {ColumnOf("name", adVarWChar), ColumnOf("price", adInteger), ColumnOf("gone", adBoolean, 2)});
        const auto add = [&](const char* name, int price, bool gone) {
            table.Add({Value::OfText(name), Value::OfInteger(price), Value::OfBoolean(gone)});
        };
        add("pear", 30, false), add("fig", 10, false), add("rotten", 99, true), add("apple", 20, false);
        database_.Store().Keep("living", "SELECT name AS [Good], price FROM [goods] WHERE (goods.gone)=False");
        database_.Store().Keep("dear", "SELECT TOP 2 [living].Good, price FROM [living] ORDER BY living.price DESC;");
        database_.Store().Keep("round", "SELECT * FROM [about]");
        database_.Store().Keep("about", "SELECT * FROM [round]");
        database_.Store().Keep("change", "DELETE FROM goods");
    }
    std::string Ask(const std::string& query) { return database_.Ask(query); }
    MemoryTestDatabase database_;
};

TEST_F(StoreViews, AreReadByEveryRoad) {
    EXPECT_EQ(Ask("SELECT * FROM living"), "pear|30;fig|10;apple|20");
    EXPECT_EQ(Ask("SELECT price, Good FROM living WHERE price > 10"), "30|pear;20|apple");
    EXPECT_EQ(Ask("SELECT count(*) FROM living"), "3");
    EXPECT_EQ(Ask("SELECT max(price)+1 FROM living"), "31");
    // A query over a query, with an order of its own, and another order on top.
    EXPECT_EQ(Ask("SELECT * FROM dear"), "pear|30;apple|20");
    EXPECT_EQ(Ask("SELECT d.Good, d.Good FROM dear AS d ORDER BY d.price"), "apple|apple;pear|pear");
}

TEST_F(StoreViews, ThatCannotBeReadOrWrittenAreRefused) {
    EXPECT_EQ(ErrorOf([&] { Ask("SELECT * FROM round"); }), "Circular reference caused by 'round'.");
    EXPECT_EQ(ErrorOf([&] { Ask("SELECT * FROM change"); }),
              "The query 'change' is no plain select and cannot be read.");
    // A statement that writes knows tables only.
    EXPECT_NE(ErrorOf([&] { database_.Run("DELETE FROM living"); }), "");
    EXPECT_EQ(Ask("SELECT count(*) FROM goods"), "4");
}

}  // namespace
}  // namespace varnel
