#include "providers/sql/StatementWriter.h"

#include "providers/sql/Evaluator.h"
#include "providers/sql/ExpressionWriter.h"
#include "providers/sql/SqlFunctions.h"
#include "providers/sql/SqliteCatalog.h"

namespace varnel::sql {
namespace {

SqliteStatement Begin(std::size_t markers) {
    SqliteStatement made;
    made.markers = std::make_shared<std::vector<Value>>(markers);
    return made;
}

/// A value without columns is worked out once per run and bound; one with columns is worked out per row.
std::string WriteAssigned(ExpressionWriter& expressions, SqliteStatement& into, const Expr& value,
                          const ShapeColumn& column) {
    if (HasColumns(value)) return expressions.WriteForColumn(value, column);
    BoundParameter parameter;
    parameter.number = ++into.parameterCount;
    parameter.expression = value;
    BindConstant(parameter.expression);
    parameter.type = column.type.type;
    parameter.affinity = column.affinity;
    parameter.refusesNull = column.refusesNull;
    parameter.column = column.name;
    into.parameters.push_back(std::move(parameter));
    return "?" + std::to_string(into.parameterCount);
}

std::string WhereText(ExpressionWriter& expressions, const std::optional<Expr>& where) {
    return where ? " WHERE " + expressions.WriteCondition(*where, false) : std::string();
}

std::vector<std::size_t> TargetColumns(const TableShape& table, const InsertStatement& insert) {
    std::vector<std::size_t> columns;
    if (insert.columns.empty())
        for (std::size_t i = 0; i < table.columns.size(); ++i) columns.push_back(i);
    for (const std::string& name : insert.columns) columns.push_back(NeedColumn(table, name));
    return columns;
}

}  // namespace

SqliteStatement WriteInsert(SqliteFile& file, const InsertStatement& insert, std::size_t markers) {
    SqliteStatement made = Begin(markers);
    const TableShape table = ReadShape(file, insert.table);
    const std::vector<std::size_t> columns = TargetColumns(table, insert);
    std::string sql = "INSERT INTO " + QuotedName(table.name) + " (";
    for (std::size_t i = 0; i < columns.size(); ++i)
        sql += (i > 0 ? "," : "") + QuotedName(table.columns[columns[i]].name);
    sql += ") VALUES ";
    ExpressionWriter expressions(table, "", made);
    for (const std::vector<Expr>& row : insert.rows) {
        if (row.size() != columns.size())
            throw Error(ErrorKind::Syntax, table.name,
                        "Number of query values and destination fields are not the same.");
        sql += &row == insert.rows.data() ? "(" : ",(";
        for (std::size_t i = 0; i < row.size(); ++i) {
            Expr value = row[i];
            if (HasColumns(value)) BindConstant(value);
            sql += (i > 0 ? "," : "") + WriteAssigned(expressions, made, value, table.columns[columns[i]]);
        }
        sql += ")";
    }
    made.tracked = file.Prepare(sql);
    return made;
}

SqliteStatement WriteUpdate(SqliteFile& file, const UpdateStatement& update, std::size_t markers) {
    SqliteStatement made = Begin(markers);
    const TableShape table = ReadShape(file, update.table);
    ExpressionWriter expressions(table, "", made);
    std::string sql = "UPDATE " + QuotedName(table.name) + " SET ";
    for (const Assignment& assignment : update.assignments) {
        const ShapeColumn& column = table.columns[NeedColumn(table, assignment.column)];
        if (&assignment != update.assignments.data()) sql += ",";
        sql += QuotedName(column.name) + "=" + WriteAssigned(expressions, made, assignment.value, column);
    }
    sql += WhereText(expressions, update.where);
    made.tracked = file.Prepare(sql);
    return made;
}

SqliteStatement WriteDelete(SqliteFile& file, const DeleteStatement& statement, std::size_t markers) {
    SqliteStatement made = Begin(markers);
    const TableShape table = ReadShape(file, statement.table);
    ExpressionWriter expressions(table, "", made);
    made.tracked = file.Prepare("DELETE FROM " + QuotedName(table.name) + WhereText(expressions, statement.where));
    return made;
}

void BindParameters(const SqliteFile& file, SqliteStatement& statement, BoundValues& buffers) {
    sqlite3_stmt* handle = statement.tracked.statement.get();
    for (const BoundProgram& bound : statement.programs)
        sqlite3_bind_pointer(handle, bound.number, bound.program.get(), kProgramPointer, nullptr);
    buffers.values.resize(statement.parameters.size());
    buffers.texts.resize(statement.parameters.size());
    Value scratch;
    for (std::size_t i = 0; i < statement.parameters.size(); ++i) {
        const BoundParameter& parameter = statement.parameters[i];
        const Value& value = Evaluate(parameter.expression, {kJetRules, {}, *statement.markers}, scratch);
        if (value.IsNull() && parameter.refusesNull)
            throw Error(ErrorKind::Constraint, file.StoredPath(),
                        "The field '" + parameter.column + "' cannot contain a Null value.");
        ConvertForColumn(kJetRules, value, parameter.type, buffers.values[i]);
        const StoredForm form = StoreValue(buffers.values[i], parameter.affinity, buffers.texts[i]);
        if (const int code = BindForm(handle, parameter.number, form); code != SQLITE_OK) throw file.Failure(code);
    }
}

}  // namespace varnel::sql
