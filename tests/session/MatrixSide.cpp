#include "tests/session/MatrixSide.h"

#include <algorithm>
#include <filesystem>

#include "ado/Ado.h"
#include "platform/CodePage.h"
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

/// Of every column of a file in fixed widths.
constexpr int kFixedWidth = 80;

std::string FixedCell(const Cell& cell) {
    const std::string text = cell.value_or("");
    return text + std::string(static_cast<std::size_t>(kFixedWidth) - CharacterCount(text), ' ');
}

}  // namespace

MatrixSide::MatrixSide(const MatrixKind& kind, const std::string& name, const std::string& installation)
    : kind_(kind.kind), type_(kind.type) {
    const std::string folder = installation + "/drives/C/" + name;
    std::filesystem::create_directories(folder);
    folder_ = folder;
    if (kind_ == "ACCESS") connection_ = AccessConnection(folder + "/base.mdb");
    for (const ServerKind* server : {&kMySql, &kOracle, &kSqlServer}) {
        if (kind_ == server->kind) server_ = server;
    }
    if (server_ != nullptr) connection_ = ConnectionTo(*server_);
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
    if (IsFixed()) session.targetText = {"", "", false, "FIXED"};
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
    if (IsFiles()) return WriteText(table, columns, rows);
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
        native.reserve(columns.size());
        for (const MatrixColumn& column : columns) native.push_back({column.name, column.form});
        OpenNative(*server_)->Insert(table, native, rows);
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

std::vector<std::string> MatrixSide::WriteText(const std::string& table, const std::vector<MatrixColumn>& columns,
                                               const Rows& rows) const {
    std::vector<std::string> leftOut;
    std::string text =
        "\xEF\xBB\xBF" + Joined(columns, [](const MatrixColumn& column) { return column.name; }) + "\r\n";
    if (IsFixed()) text.clear();
    for (const Row& row : rows) {
        const auto brokenLine = [](const Cell& cell) {
            return cell && cell->find_first_of("\r\n") != std::string::npos;
        };
        if (IsFixed() && std::any_of(row.begin(), row.end(), brokenLine)) {
            leftOut.push_back(*row[0]);
            continue;
        }
        for (std::size_t k = 0; k < columns.size(); ++k) {
            text += IsFixed() ? FixedCell(row[k]) : (k == 0 ? "" : ",") + CsvCell(row[k], columns[k].form);
        }
        text += "\r\n";
    }
    WriteBytes(folder_ + "/" + TableName(table), text);
    if (kind_ == "TEXTPOLL") return leftOut;  // a polled folder's schema is the program's to write
    std::string schema = "[" + TableName(table) + "]\r\nFormat=" + (IsFixed() ? "FixedLength" : "CSVDelimited") +
                         "\r\nColNameHeader=" + (IsFixed() ? "False" : "True") + "\r\nCharacterSet=65001\r\n";
    int number = 0;
    for (const MatrixColumn& column : columns) {
        const std::string declared = column.text;
        schema +=
            "Col" + std::to_string(++number) + "=\"" + column.name + "\" " +
            (IsFixed() ? declared.substr(0, declared.find(' ')) + " Width " + std::to_string(kFixedWidth) : declared) +
            "\r\n";
    }
    const std::string path = folder_ + "/Schema.ini";
    WriteBytes(path, (std::filesystem::exists(path) ? ReadBytes(path) : "") + schema);
    return leftOut;
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
        const bool exact = field.Precision() != 0 && field.Precision() != kNotStated && !IsText(type);
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
