#include "tests/session/MatrixSide.h"

#include <algorithm>
#include <filesystem>

#include "ado/Ado.h"
#include "providers/foxpro/Container.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {

namespace {

std::string Joined(const std::vector<MatrixColumn>& columns,
                   const std::function<std::string(const MatrixColumn&)>& part) {
    std::string list;
    for (const MatrixColumn& column : columns) list += (list.empty() ? "" : ",") + part(column);
    return list;
}

std::string CsvCell(const Cell& cell, CellForm form) {
    if (!cell) return "";
    if (form == CellForm::Text) {
        std::string quoted = "\"";
        for (const char c : *cell) quoted += c == '"' ? "\"\"" : std::string(1, c);
        return quoted + "\"";
    }
    return *cell;
}

}  // namespace

MatrixSide::MatrixSide(const MatrixKind& kind, const std::string& name, const MatrixWorld& world)
    : kind_(kind.kind), type_(kind.type), world_(world) {
    const std::string folder = world.folder + "/drives/C/" + name;
    std::filesystem::create_directories(folder);
    folder_ = folder;
    if (kind_ == "ACCESS") connection_ = AccessConnection(folder + "/base.mdb");
    if (kind_ == "MySQL") connection_ = world.mariaDb->ConnectionString();
    if (kind_ == "MSSQL") connection_ = world.sqlServer;
    if (kind_ == "ORACLE") {
        connection_ = std::string("DSN=oracle;UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword + "}";
    }
    if (IsFiles()) {
        connection_ =
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder + ";Extended Properties=\"text;HDR=Yes\"";
    }
    local_ = connection_;
    if (kind_ != "FOXPRO") return;
    const std::string file = type_ == "DBC" ? "base.dbc" : "";
    if (type_ == "DBC") foxpro::CreateContainer(folder + "/" + file);
    connection_ = "Provider=VFPOLEDB.1;Data Source=C:\\" + name + "\\" + file;
    local_ = "Provider=VFPOLEDB;Data Source=" + folder + (file.empty() ? "" : "/" + file);
}

void MatrixSide::BeSource(TestSession& session) const {
    session.sourceKind = kind_;
    session.sourceType = type_;
    session.sourceConnection = connection_;
    session.sourceFolder = "C:\\from\\";
    if (kind_ != "TEXTPOLL") return;
    session.folder = folder_;
    session.pattern = "*.csv";
    session.rename = "done";
}

void MatrixSide::BeTarget(TestSession& session) const {
    session.targetKind = kind_;
    session.targetType = type_;
    session.targetConnection = connection_;
    session.targetFolder = "C:\\into\\";
}

std::string MatrixSide::Quoted(const std::string& name) const {
    if (kind_ == "FOXPRO" || kind_ == "ORACLE") return name;
    return kind_ == "MySQL" ? "`" + name + "`" : "[" + name + "]";
}

std::string MatrixSide::TableInSql(const std::string& table) const {
    if (kind_ == "MSSQL") return "[dbo].[" + table + "]";
    return Quoted(TableName(table));
}

void MatrixSide::MakeOld(const std::string& table) const {
    if (IsFiles()) return;
    const char* type = kind_ == "FOXPRO" ? " I" : " int";
    if (kind_ == "MySQL" || kind_ == "ORACLE") ExecuteOn(local_, "drop table if exists " + TableInSql(table));
    if (kind_ == "MSSQL") ErrorOf([&] { ExecuteOn(local_, "drop table " + TableInSql(table)); });
    ExecuteOn(local_, "create table " + TableInSql(table) + " (" + Quoted("OLD") + type + ")");
}

std::vector<std::string> MatrixSide::Fill(const std::string& table, const std::vector<MatrixColumn>& columns,
                                          const Rows& rows) {
    if (IsFiles()) return WriteText(table, columns, rows), std::vector<std::string>();
    MakeOld(table);
    ExecuteOn(local_, "drop table " + TableInSql(table));
    const std::string definitions = Joined(columns, [&](const MatrixColumn& column) {
        const bool plain = kind_ == "FOXPRO" || kind_ == "ACCESS";
        return Quoted(column.name) + " " + column.DeclaredFor(kind_) + (plain ? "" : " null");
    });
    ExecuteOn(local_, "create table " + TableInSql(table) + " (" + definitions + ")");
    const std::string names = Joined(columns, [&](const MatrixColumn& column) { return Quoted(column.name); });
    if (kind_ == "MySQL" || kind_ == "ORACLE") {
        std::vector<NativeColumn> native;
        for (const MatrixColumn& column : columns) native.push_back({column.name, column.form});
        NativeMySql(*world_.mariaDb).Insert(table, native, rows);
        return {};
    }
    std::vector<std::string> refused;
    Recordset target;
    target.Open("Select " + names + " FROM " + TableInSql(table), local_, adOpenDynamic, adLockOptimistic);
    for (const Row& row : rows) {
        const std::string error = ErrorOf([&] {
            target.AddNew();
            for (std::size_t k = 0; k < columns.size(); ++k) {
                target.Fields(k).SetValue(ValueOf(row[k], columns[k].form));
            }
            target.Update();
        });
        if (error.empty()) continue;
        refused.push_back(*row[0]);
        target.CancelUpdate();
    }
    target.Close();
    return refused;
}

void MatrixSide::WriteText(const std::string& table, const std::vector<MatrixColumn>& columns, const Rows& rows) const {
    std::string text =
        "\xEF\xBB\xBF" + Joined(columns, [](const MatrixColumn& column) { return column.name; }) + "\r\n";
    for (const Row& row : rows) {
        for (std::size_t k = 0; k < columns.size(); ++k) {
            text += (k == 0 ? "" : ",") + CsvCell(row[k], columns[k].form);
        }
        text += "\r\n";
    }
    WriteBytes(folder_ + "/" + TableName(table), text);
    if (kind_ == "TEXTPOLL") return;  // a polled folder's schema is the program's to write
    std::string schema =
        "[" + TableName(table) + "]\r\nFormat=CSVDelimited\r\nColNameHeader=True\r\nCharacterSet=65001\r\n";
    int number = 0;
    for (const MatrixColumn& column : columns) {
        schema += "Col" + std::to_string(++number) + "=" + column.name + " " + column.text + "\r\n";
    }
    WriteBytes(folder_ + "/Schema.ini", schema);
}

std::vector<TestColumn> MatrixSide::Describe(const std::string& table, const std::vector<MatrixColumn>& columns) const {
    Recordset rows;
    const std::string names = Joined(columns, [&](const MatrixColumn& column) { return Quoted(column.name); });
    rows.Open("SELECT " + names + " FROM " + TableInSql(table), local_);
    std::vector<TestColumn> described;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const Field& field = rows.Fields(k);
        const DataTypeEnum type = field.Type();
        TestColumn column{columns[k].name, DesignerTypeName(type)};
        const bool exact = field.Precision() != 0 && !IsText(type);
        column.width =
            exact ? field.Precision() : static_cast<int>(std::min<std::int64_t>(field.DefinedSize(), 2147483647));
        column.scale = type == adNumeric ? field.NumericScale() : 0;
        column.targetType = IsText(type) && IsLongOrBinary(type) ? "203" : IsText(type) ? "VarWchar" : column.type;
        described.push_back(column);
    }
    return described;
}

std::vector<std::vector<Value>> MatrixSide::Read(const std::string& table,
                                                 const std::vector<MatrixColumn>& columns) const {
    Recordset rows;
    const std::string names = Joined(columns, [&](const MatrixColumn& column) { return Quoted(column.name); });
    rows.Open("SELECT " + names + " FROM " + TableInSql(table), local_);
    std::vector<std::vector<Value>> all;
    for (; !rows.Eof(); rows.MoveNext()) {
        auto& row = all.emplace_back();
        for (std::size_t k = 0; k < columns.size(); ++k) row.push_back(rows.Fields(k).GetValue());
    }
    return all;
}

}  // namespace varnel
