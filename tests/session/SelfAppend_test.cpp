// Rows appended to tables that exist: types that the mapping has no word for, and a table appended to itself.
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

struct TypedColumn {
    const char* declaration;
    CellForm form;
    std::vector<Cell> values;
};

class AppendTest : public SessionTest {
protected:
    struct Table {
        std::string name;
        std::vector<NativeColumn> columns;
        Rows rows;
    };

    /// A table with one column per declaration and count rows, "n" counting them.
    Table Make(NativeDatabase& database, const std::string& name, const std::vector<TypedColumn>& types, int count) {
        Table table{name, {{"n", CellForm::Number}}, {}};
        std::string statement = "create table " + name + " (n int";
        for (const TypedColumn& type : types) {
            table.columns.push_back({"c" + std::to_string(table.columns.size()), type.form});
            statement += ", " + table.columns.back().name + " " + type.declaration;
        }
        database.Run({statement + ")"});
        for (int r = 0; r < count; ++r) {
            Row& row = table.rows.emplace_back(Row{std::to_string(r + 1)});
            for (const TypedColumn& type : types) {
                row.push_back(type.values[(static_cast<std::size_t>(r) + row.size()) % type.values.size()]);
            }
        }
        database.Insert(name, table.columns, table.rows);
        return table;
    }
    void AddToSession(const Table& table, const std::string& target) {
        TestTable entry;
        entry.source = table.name;
        entry.target = target;
        entry.option = "append";
        entry.sourceOwner = "shop";
        for (const NativeColumn& column : table.columns) entry.columns.push_back({column.name, "Integer", 4});
        session_.tables.push_back(entry);
    }
    static Rows Doubled(const Rows& rows) {
        Rows doubled;
        for (const Row& row : rows) doubled.insert(doubled.end(), 2, row);
        return doubled;
    }
};

const std::vector<TypedColumn> kSqliteTypes = {
    {"BigInt", CellForm::Number, {"9223372036854775807", "-9223372036854775808", std::nullopt, "9007199254740993"}},
    {"Decimal(38,10)", CellForm::Number, {"1234567890123456789012345678.0123456789", "-0.0000000001", std::nullopt}},
    {"Guid", CellForm::Text, {"{00112233-4455-6677-8899-AABBCCDDEEFF}", std::nullopt}},
    {"DateTime", CellForm::Moment, {"2003-07-15 13:05:09.123456", "1899-12-30 18:30:00", std::nullopt}},
    {"NChar(10)", CellForm::Text, {"fixed", "Łódź", "", std::nullopt}}};

const std::vector<TypedColumn> kMySqlTypes = {
    {"BigInt", CellForm::Number, {"9223372036854775807", "-9223372036854775808", std::nullopt, "9007199254740993"}},
    {"BigInt unsigned", CellForm::Number, {"18446744073709551615", "0", std::nullopt}},
    {"TinyInt", CellForm::Number, {"-128", "127", std::nullopt}},
    {"Int unsigned", CellForm::Number, {"4294967295", "0", std::nullopt}},
    {"Decimal(38,10)", CellForm::Number, {"1234567890123456789012345678.0123456789", "-0.0000000001", std::nullopt}},
    {"Year", CellForm::Number, {"2003", std::nullopt}},
    {"Char(10)", CellForm::Text, {"fixed", "Łódź", "", std::nullopt}},
    {"Enum('one','two')", CellForm::Text, {"one", "two", std::nullopt}}};

TEST_F(AppendTest, DoublesASqliteTable) {
    NativeSqlite database(Path("source.db"));
    session_.targetConnection = session_.sourceConnection;
    std::vector<TypedColumn> longTypes = kSqliteTypes;
    longTypes.push_back({"OleObject", CellForm::Bytes, {std::string(70'000, '\x81'), std::nullopt, ""}});
    const Table plain = Make(database, "plain", kSqliteTypes, 250);
    const Table withLong = Make(database, "with_long", longTypes, 120);
    for (const Table& table : {plain, withLong}) AddToSession(table, table.name);
    EXPECT_EQ(Run(), 0) << FirstFailure();
    for (const Table& table : {plain, withLong}) {
        EXPECT_EQ(FirstDifference(Doubled(table.rows), database.Read(table.name, table.columns, "n"), table.columns),
                  "");
    }
}

TEST_F(AppendTest, DoublesAMySqlTable) {
    NativeMySql database(Server());
    session_.sourceKind = session_.targetKind = "MySQL";
    session_.sourceConnection = session_.targetConnection = Server().ConnectionString();
    std::vector<TypedColumn> longTypes = kMySqlTypes;
    longTypes.push_back({"LongBlob", CellForm::Bytes, {std::string(70'000, '\x81'), std::nullopt, ""}});
    longTypes.push_back({"Binary(3)", CellForm::Bytes, {std::string("\0'\\", 3), std::nullopt}});
    std::vector<TypedColumn> shortTypes = kMySqlTypes;
    shortTypes.push_back({"DateTime", CellForm::Moment, {"2003-07-15 13:05:09", "1899-12-30 18:30:00", std::nullopt}});
    const Table plain = Make(database, ServerTable("plain"), shortTypes, 250);
    const Table withLong = Make(database, ServerTable("with_long"), longTypes, 120);
    for (const Table& table : {plain, withLong}) AddToSession(table, table.name);
    EXPECT_EQ(Run(), 0) << FirstFailure();
    for (const Table& table : {plain, withLong}) {
        EXPECT_EQ(FirstDifference(Doubled(table.rows), database.Read(table.name, table.columns, "n"), table.columns),
                  "");
    }
}

/// The batch way writes every moment as a date and time, which a column of times of day does not take.
TEST_F(AppendTest, ATimeOfDayIsRefusedInWordsByAColumnOfTimes) {
    NativeMySql database(Server());
    session_.sourceKind = session_.targetKind = "MySQL";
    session_.sourceConnection = session_.targetConnection = Server().ConnectionString();
    const Table times = Make(database, ServerTable("times"), {{"Time", CellForm::Text, {"13:05:09"}}}, 3);
    AddToSession(times, "times");
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(InLog("Error Loading Row\r\nIncorrect time value: '1899-12-30-13-05-09'"), 1) << log_;
    EXPECT_EQ(FirstDifference(times.rows, database.Read("times", times.columns, "n"), times.columns), "");
}

}  // namespace
}  // namespace varnel
