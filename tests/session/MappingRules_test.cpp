// What the load's own rules change: each case states the rule by the value that comes out of it.
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

/// A column of a SQLite source and what becomes of its value in MySQL, per way of writing.
struct Rule {
    const char* name;
    const char *declared, *type;  // in the source, and its name in the mapping
    int width, scale;
    const char* stored;    // as SQL writes it
    const char* byBatch;   // the value read back as text
    const char* byRecord;  // the same, or the words of the refusal
    bool recordRefused = false;
};

void PrintTo(const Rule& rule, std::ostream* out) {
    *out << rule.name;
}

const Rule kRules[] = {
    {"TheFourLettersNull", "Text(20)", "VarWchar", 20, 0, "'NULL'", "NULL", "'NULL'"},
    {"TextLikeNullInOtherCase", "Text(20)", "VarWchar", 20, 0, "'Null'", "'Null'", "'Null'"},
    {"SingleBecomesInt", "Single", "Single", 4, 0, "1.5", "2", "v: Overflow", true},
    {"CurrencyBecomesDouble", "Currency", "Currency", 19, 4, "cast('922337203685477.5807' as blob)",
     "922337203685477.6", "v: Overflow", true},
    {"TimeOfDayInADateColumn", "DateTime", "Date", 8, 0, "'2003-07-15 13:05:09'", "2003-07-15", "2003-07-15"},
    {"TimeOfDayInATimestamp", "DateTime", "DBTimeStamp", 8, 0, "'2003-07-15 13:05:09'", "2003-07-15 13:05:09",
     "2003-07-15 00:00:00"},
    {"FractionOfASecond", "DateTime", "DBTimeStamp", 8, 0, "'2003-07-15 13:05:09.75'", "2003-07-15 13:05:09",
     "2003-07-15 00:00:00"},
    {"DigitsBeyondTheScale", "Decimal(9,4)", "Numeric", 9, 2, "1.2345", "1.23", "v: '1.2345' has more decimal places",
     true},
};

class MappingRuleTest : public SessionTest, public testing::WithParamInterface<Rule> {
protected:
    /// The value that arrives in MySQL, as SQL writes it; by record: with a memo beside it. "" when no row arrived.
    std::string Arrived(bool byRecord) {
        const Rule& rule = GetParam();
        NativeSqlite source(Path("source.db"));
        source.Run({std::string("create table t (v ") + rule.declared + ", m LongText)",
                    std::string("insert into t values (") + rule.stored + ", 'memo')"});
        session_.targetKind = "MySQL";
        session_.targetConnection = Server().ConnectionString();
        const std::string target = ServerTable("rule");
        Server().Run({"create table shop.rule (old int)"});
        TestTable table{"t", target, {{"v", rule.type, rule.width, rule.scale}}};
        if (byRecord) table.columns.push_back({"m", "LongVarWChar"});
        session_.tables = {table};
        status_ = Run();
        NativeMySql database(Server());
        const bool isText = std::string_view(rule.type) == "VarWchar";
        return database.Ask(isText ? "select quote(v) from rule" : "select v from rule");
    }
    int status_ = -1;
};

TEST_P(MappingRuleTest, InBatches) {
    EXPECT_EQ(Arrived(false), GetParam().byBatch) << log_;
    EXPECT_EQ(status_, 0);
}

TEST_P(MappingRuleTest, RecordByRecord) {
    const std::string arrived = Arrived(true);
    if (!GetParam().recordRefused) {
        EXPECT_EQ(arrived, GetParam().byRecord) << log_;
        EXPECT_EQ(status_, 0);
        return;
    }
    EXPECT_EQ(arrived, "") << log_;
    EXPECT_EQ(InLog("Error Loading Row\r\n" + std::string(GetParam().byRecord)), 1) << log_;
    EXPECT_EQ(InLog(" 0 Rows Loaded"), 1);
    EXPECT_EQ(status_, 1);
}

INSTANTIATE_TEST_SUITE_P(Rules, MappingRuleTest, testing::ValuesIn(kRules),
                         [](const auto& rule) { return std::string(rule.param.name); });

}  // namespace
}  // namespace varnel
