// Every value that goes through a session comes out equal, or as the rule says that changes it.
#include "tests/session/SampleColumns.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

struct Trip {
    const char *name, *sourceKind, *targetKind;
};

void PrintTo(const Trip& trip, std::ostream* out) {
    *out << trip.name;
}

Engine EngineOf(const std::string& kind) {
    return kind == "MySQL" ? Engine::MySql : Engine::Sqlite;
}

/// A cell as the rules of the load leave it. MySQL: the mapping gives date columns for dates, and the record-by-record
/// way transfers no time of day. Oracle: a Boolean is a letter.
Cell Expected(const SampleColumn& column, const Cell& cell, const std::string& targetKind, bool recordByRecord) {
    if (!cell) return cell;
    if (targetKind == "ORACLE" && column.type == "Boolean") return *cell == "1" ? "T" : "F";
    const bool dateColumn = column.type == "Date" || column.type == "DBDate";
    if (targetKind == "MySQL" && column.form == CellForm::Moment && (dateColumn || recordByRecord)) {
        return cell->substr(0, 10) + " 00:00:00";
    }
    return cell;
}

class RoundTripTest : public SessionTest, public testing::WithParamInterface<Trip> {
protected:
    RoundTripTest() {
        session_.sourceKind = GetParam().sourceKind;
        session_.targetKind = GetParam().targetKind;
        source_ = Open(session_.sourceKind, session_.sourceConnection, "source.db");
        target_ = Open(session_.targetKind, session_.targetConnection, "target.db");
    }

    std::unique_ptr<NativeDatabase> Open(const std::string& kind, std::string& connection, const std::string& file) {
        if (EngineOf(kind) == Engine::Sqlite) return std::make_unique<NativeSqlite>(Path(file));
        connection = Server().ConnectionString();
        return std::make_unique<NativeMySql>(Server());
    }

    struct Table {
        std::string name, copy;
        bool recordByRecord;
        std::vector<SampleColumn> columns;
        Rows rows;
    };

    /// One source table of count sample rows; the session drops its target and creates it from the source.
    void AddTable(int count, bool withLongColumns) {
        AddTable((withLongColumns ? "long_" : "short_") + std::to_string(count),
                 SampleColumns(session_.targetKind, withLongColumns), count, withLongColumns);
    }
    TestTable& AddTable(const std::string& name, std::vector<SampleColumn> columns, int count, bool recordByRecord) {
        Table table{name, name + "_copy", recordByRecord, std::move(columns), {}};
        table.rows = SampleRows(table.columns, count);
        if (EngineOf(session_.sourceKind) == Engine::MySql) ServerTable(table.name);
        if (EngineOf(session_.targetKind) == Engine::MySql) ServerTable(table.copy);
        MakeSource(*source_, EngineOf(session_.sourceKind), table.name, table.columns, table.rows);
        const char* quote = EngineOf(session_.targetKind) == Engine::MySql ? "`" : "\"";
        target_->Run({std::string("create table ") + quote + table.copy + quote + " (old int)"});
        TestTable entry;
        entry.source = table.name;
        entry.target = table.copy;
        entry.columns = MappingOf(table.columns);
        entry.sourceOwner = "shop";
        tables_.push_back(std::move(table));
        return session_.tables.emplace_back(entry);
    }

    void ExpectEqual(const Table& table) {
        std::vector<NativeColumn> columns = NativeColumnsOf(table.columns);
        Rows expected = table.rows;
        for (std::size_t k = 0; k < columns.size(); ++k) {
            for (Row& row : expected) {
                row[k] = Expected(table.columns[k], row[k], session_.targetKind, table.recordByRecord);
            }
            if (session_.targetKind == "ORACLE" && table.columns[k].type == "Boolean") columns[k].form = CellForm::Text;
        }
        EXPECT_EQ(FirstDifference(expected, target_->Read(table.copy, columns, "id"), columns), "") << table.name;
        EXPECT_EQ(InLog(" " + std::to_string(table.rows.size()) + " Rows Loaded\r\n"), table.rows.size() < 2 ? 2 : 1)
            << table.name;
    }

    std::unique_ptr<NativeDatabase> source_, target_;
    std::vector<Table> tables_;
};

TEST_P(RoundTripTest, CopiesEveryValueOfEveryTypeAtEveryCount) {
    for (const int count : {0, 1, 99, 100, 101}) AddTable(count, false);
    for (const int count : {0, 1, 250}) AddTable(count, true);
    EXPECT_EQ(Run(), 0) << FirstFailure();
    for (const Table& table : tables_) ExpectEqual(table);
    EXPECT_TRUE(LogIsClosed());
    EXPECT_EQ(Outcome(), "recorded, no error");
}

TEST_P(RoundTripTest, KeepsNamesThatNeedQuotesAndTheFilter) {
    if (session_.targetKind == "ORACLE") return;  // its statements write names bare
    std::vector<SampleColumn> columns{{"id", "Integer", CellForm::Number, 11, 0, "Long", "Int", {}}};
    for (const char* name : {"Ship To", "group", "O'Name", "Größe", "50%", "select"}) {
        columns.push_back({name, "VarWchar", CellForm::Text, 50, 0, "Text(50)", "Varchar(50)", {name, std::nullopt}});
    }
    TestTable& entry = AddTable("Order Lines", columns, 120, false);
    entry.where = session_.sourceKind == "MySQL" ? "`id` > 20 and (`Ship To` like 'Ship%' or `Ship To` is null)"
                                                 : "[id] > 20 And ([Ship To] Like 'ship%' Or [Ship To] Is Null)";
    EXPECT_EQ(Run(), 0) << FirstFailure();
    tables_[0].rows.erase(tables_[0].rows.begin(), tables_[0].rows.begin() + 20);
    ExpectEqual(tables_[0]);
}

INSTANTIATE_TEST_SUITE_P(
    Trips, RoundTripTest,
    testing::Values(Trip{"SqliteToSqlite", "ACCESS", "ACCESS"}, Trip{"SqliteToSqliteByParameters", "ACCESS", "ORACLE"},
                    Trip{"SqliteToMySql", "ACCESS", "MySQL"}, Trip{"MySqlToSqlite", "MySQL", "ACCESS"},
                    Trip{"MySqlToSqliteByParameters", "MySQL", "ORACLE"}, Trip{"MySqlToMySql", "MySQL", "MySQL"}),
    [](const auto& trip) { return std::string(trip.param.name); });

}  // namespace
}  // namespace varnel
