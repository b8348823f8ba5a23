#include "bench/BenchData.h"

#include "ado/Ado.h"
#include "load/BatchInsert.h"
#include "platform/Files.h"

namespace varnel {

namespace {

struct BenchColumn {
    const char *name, *declared, *type;
    int width, scale;
};

constexpr BenchColumn kColumns[] = {
    {"id", "integer", "Integer", 11, 0},         {"quantity", "integer", "Integer", 11, 0},
    {"counter", "bigint", "BigInt", 20, 0},      {"price", "decimal(10,2)", "Numeric", 10, 2},
    {"rate", "decimal(12,4)", "Numeric", 12, 4}, {"code", "varchar(12)", "VarWchar", 12, 0},
    {"name", "varchar(40)", "VarWchar", 40, 0},  {"place", "varchar(30)", "VarWchar", 30, 0},
    {"made", "datetime", "Date", 8, 0},          {"changed", "datetime", "Date", 8, 0},
};

Value Money(std::int64_t hundredths) {
    Value value;
    value.SetDecimal({static_cast<UInt128>(hundredths), 2, false});
    return value;
}

void SetRow(Recordset& rows, int id) {
    const BenchRow row = MakeBenchRow(id);
    rows.Fields(0).SetValue(Value::OfInteger(row.id));
    rows.Fields(1).SetValue(Value::OfInteger(row.quantity));
    rows.Fields(2).SetValue(Value::OfInteger(row.counter));
    rows.Fields(3).SetValue(Money(row.price));
    rows.Fields(4).SetValue(Money(row.rate));
    rows.Fields(5).SetValue(Value::OfText(row.code));
    rows.Fields(6).SetValue(Value::OfText(row.name));
    rows.Fields(7).SetValue(Value::OfText(row.place));
    rows.Fields(8).SetValue(Value::OfDateTime(row.made));
    rows.Fields(9).SetValue(Value::OfDateTime(row.changed));
}

}  // namespace

BenchRow MakeBenchRow(int id) {
    static constexpr const char* kPlaces[] = {"Hamburg", "Lyon", "Gda\xC5\x84sk", "Porto", "Aarhus", "Tarragona"};
    const DateTime made{40'000 + id % 5'000, (id % 86'400) * kMicrosPerSecond};
    return {id,
            id % 997,
            std::int64_t{id} * 1'000'003,
            id % 1'000'000,
            id % 99'991 + 1,
            "A-" + std::to_string(100'000 + id % 900'000),
            "Customer number " + std::to_string(id),
            kPlaces[id % 6],
            made,
            {made.days + id % 30, 0}};
}

std::string BenchTableStatement(const std::string& name) {
    std::string statement = "create table " + name + " (";
    for (const BenchColumn& column : kColumns) statement += std::string(column.name) + " " + column.declared + ",";
    statement.back() = ')';
    return statement;
}

std::vector<TestColumn> BenchColumns() {
    std::vector<TestColumn> columns;
    for (const BenchColumn& c : kColumns) columns.push_back({c.name, c.type, c.width, c.scale, c.name, c.declared});
    return columns;
}

std::string BenchColumnList() {
    std::string list;
    for (const BenchColumn& column : kColumns) list += std::string(column.name) + ",";
    list.pop_back();
    return list;
}

void FillBenchTable(const std::string& connection, const std::string& name, int count) {
    Recordset rows;
    rows.Open("select " + BenchColumnList() + " from " + name, connection, adOpenDynamic, adLockOptimistic);
    for (int id = 1; id <= count; ++id) {
        rows.AddNew();
        SetRow(rows, id);
        rows.Update();
    }
    rows.Close();
}

void WriteBenchInserts(const std::string& sourceConnection, const std::string& source, const std::string& target,
                       const std::string& path) {
    Recordset rows;
    rows.Open("select " + BenchColumnList() + " from " + source, sourceConnection);
    OutputFile file(path, OutputFile::Mode::Truncate);
    BatchInsert batch("INSERT INTO `" + target + "` (" + BenchColumnList() + ") VALUES ");
    const auto send = [&] {
        if (!batch.Empty()) file.Write(batch.Finish(";\n"));
        batch.Clear();
    };
    for (int count = 1; !rows.Eof(); rows.MoveNext(), ++count) {
        batch.StartRow();
        for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
            batch.AddValue(rows.Fields(k).Type(), rows.Fields(k).GetValue());
        }
        batch.EndRow();
        if (count % 100 == 0) send();
    }
    send();
    file.Close();
}

}  // namespace varnel
