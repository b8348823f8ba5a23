// Rows put aside and sent together behave as if each had been sent alone.
#include <malloc.h>

#include "tests/providers_odbc/OdbcTest.h"

namespace varnel {
namespace {

class OdbcArrays : public OdbcTest {
protected:
    OdbcArrays() : session_(LogIn()) {
        session_->Execute("create or replace table t (id int not null primary key, name varchar(10), n decimal(10,2))");
    }
    /// Sends rows in arrays and returns what became of each: "." or the first word of its failure.
    static std::string SendAll(PreparedStatement& insert, const std::vector<std::vector<Value>>& rows) {
        std::string seen;
        const auto note = [&](const Error* error) { seen += error == nullptr ? "." : "F"; };
        for (const auto& row : rows) {
            insert.Queue(row);
            if (++queued_ < insert.QueueLimit()) continue;
            insert.Send(note);
            queued_ = 0;
        }
        insert.Send(note);
        queued_ = 0;
        return seen;
    }
    static std::vector<Value> Row(int id, const std::string& name) {
        return {Value::OfInteger(id), Value::OfText(name), Value::OfDecimal(std::to_string(id) + ".25")};
    }
    std::unique_ptr<PreparedStatement> Insert() {
        const ParameterInfo parameters[] = {{adInteger}, {adVarWChar, 40}, {adNumeric, 19, 10, 2}};
        return session_->Prepare("insert into t (id, name, n) values (?, ?, ?)", parameters);
    }
    static inline std::size_t queued_ = 0;
    std::unique_ptr<ProviderSession> session_;
};

TEST_F(OdbcArrays, StoreEveryRowOnce) {
    const auto insert = Insert();
    ASSERT_GT(insert->QueueLimit(), 1u);
    ASSERT_LT(insert->QueueLimit(), 1200u) << "more than two arrays are wanted";
    std::vector<std::vector<Value>> rows;
    for (int id = 1; id <= 2500; ++id) rows.push_back(Row(id, "n" + std::to_string(id)));
    EXPECT_EQ(SendAll(*insert, rows), std::string(2500, '.'));
    EXPECT_EQ(Rows(*session_, "select count(*), sum(id), sum(n) from t"), "2500;3126250;3126875;\n");
}

TEST_F(OdbcArrays, LeaveNoTransactionBehind) {
    const auto insert = Insert();
    EXPECT_EQ(SendAll(*insert, {Row(1, "x"), Row(2, "x")}), "..");
    insert->Execute(Row(3, "x"));
    const auto other = LogIn();
    EXPECT_EQ(Rows(*other, "select count(*) from t"), "3;\n");
    EXPECT_EQ(SendAll(*insert, {Row(4, "x"), Row(4, "x")}), ".F");
    session_->Execute("insert into t (id) values (5)");
    EXPECT_EQ(Rows(*other, "select count(*) from t"), "5;\n");
}

TEST_F(OdbcArrays, KeepNoMemoryOfTheirMoments) {
    session_->Execute("create or replace table t (at datetime(6))");
    const ParameterInfo parameter[] = {{adDBTimeStamp}};
    const auto insert = session_->Prepare("insert into t (at) values (?)", parameter);
    const std::vector<std::vector<Value>> rows(50'000,
                                               {Value::OfDateTime(FromCivil({1753, 12, 31, 23, 59, 58, 123'400}))});
    SendAll(*insert, {rows[0], rows[1]});
    const std::size_t before = mallinfo2().uordblks;
    SendAll(*insert, rows);
    EXPECT_LT(mallinfo2().uordblks, before + 400'000);
    EXPECT_EQ(Rows(*session_, "select distinct cast(at as char) from t"), "1753-12-31 23:59:58.123400;\n");
}

TEST_F(OdbcArrays, CostOnlyTheRefusedRows) {
    const auto insert = Insert();
    std::vector<std::vector<Value>> rows;
    for (int id = 1; id <= 10; ++id) rows.push_back(Row(id, "x"));
    rows[2] = Row(1, "again");                        // a key that is taken
    rows[6] = Row(7, "far too long for its column");  // refused by the server, not cut by the driver
    EXPECT_EQ(SendAll(*insert, rows), "..F...F...");
    EXPECT_EQ(Rows(*session_, "select id from t order by id"), "1;\n2;\n4;\n5;\n6;\n8;\n9;\n10;\n");
    EXPECT_EQ(SendAll(*insert, {Row(11, "x"), Row(12, "x")}), "..") << "the statement goes on";
}

TEST_F(OdbcArrays, SendNothingBehindARowThatEndsTheRun) {
    const auto insert = Insert();
    for (const int id : {1, 1, 2, 3}) insert->Queue(Row(id, "x"));
    EXPECT_THROW(insert->Send([](const Error* error) {
        if (error != nullptr) throw *error;
    }),
                 Error);
    EXPECT_EQ(Rows(*session_, "select id from t order by id"), "1;\n");
}

TEST_F(OdbcArrays, AppenderSendsWhatWasSet) {
    session_->Execute("create or replace table t (id int not null, name varchar(10) default 'dflt', n decimal(10,2))");
    const auto appender = session_->OpenAppender("select id, name, n from t");
    ASSERT_GT(appender->QueueLimit(), 1u);
    const std::vector<bool> twoSet{true, false, true};
    for (int id = 1; id <= 3; ++id) appender->Queue(Row(id, ""), twoSet);
    EXPECT_THROW(appender->Queue(Row(4, ""), {true, true, true}), Error);
    std::string outcomes;
    appender->Send([&](const Error* error) { outcomes += error == nullptr ? "." : "F"; });
    EXPECT_EQ(outcomes, "...");
    EXPECT_EQ(Rows(*session_, "select id, name, n from t order by id"), "1;dflt;1.25;\n2;dflt;2.25;\n3;dflt;3.25;\n");
    EXPECT_THROW(appender->Append(std::vector<Value>{Value::OfInteger(9), Value(), Value::OfDecimal("0.125")},
                                  {true, false, true}),
                 Error)
        << "places that the column would round away";
}

}  // namespace
}  // namespace varnel
