#include "providers/sql/ExpressionWriter.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/sql/ExpressionTypes.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {

/// What a program's columns stand for: pieces of SQLite text with their types, each once.
struct ExpressionWriter::Inputs {
    std::vector<std::string> sql;
    std::vector<DeclaredType> types;
    std::vector<ColumnCodec> codecs;

    std::size_t Slot(WrittenExpression written) {
        const auto known = std::find(sql.begin(), sql.end(), written.sql);
        if (known != sql.end()) return static_cast<std::size_t>(known - sql.begin());
        sql.push_back(std::move(written.sql));
        types.push_back(written.type);
        codecs.push_back(std::move(written.codec));
        return sql.size() - 1;
    }
};

namespace {

constexpr std::string_view kAggregateNames[] = {"count", "sum", "avg", "min", "max"};

Expr LiteralOf(Value value, std::size_t at) {
    Expr literal;
    literal.literal = std::move(value);
    literal.at = at;
    return literal;
}

DeclaredType TypeOfSum(const DeclaredType& summed) {
    const bool exact = summed.type == adCurrency || summed.type == adNumeric || summed.type == adVarNumeric;
    if (!exact) return PlainType(adDouble);
    return summed.type == adCurrency ? summed : PlainType(adVarNumeric);
}

bool IsWholeColumn(const ShapeColumn& column) {
    const DataTypeEnum type = column.type.type;
    return type == adInteger || type == adSmallInt || type == adBigInt || type == adUnsignedTinyInt;
}

}  // namespace

bool BindTruthWord(Expr& e) {
    if (!e.owner.empty() || e.quoted) return false;
    const bool yes = EqualNoCase(e.name, "yes") || EqualNoCase(e.name, "on");
    const bool no = EqualNoCase(e.name, "no") || EqualNoCase(e.name, "off");
    if (yes || no) e = LiteralOf(Value::OfBoolean(yes), e.at);
    return yes || no;
}

bool IsAggregate(const Expr& e) {
    if (e.kind == ExprKind::CountAll) return true;
    if (e.operands.size() > 1) return false;  // MAX and MIN of several values are functions
    return e.kind == ExprKind::Call && std::any_of(std::begin(kAggregateNames), std::end(kAggregateNames),
                                                   [&](auto name) { return EqualNoCase(e.name, name); });
}

bool HasAggregate(const Expr& e) {
    return IsAggregate(e) || std::any_of(e.operands.begin(), e.operands.end(), HasAggregate);
}

bool HasColumns(const Expr& e) {
    return (e.kind == ExprKind::Column && !e.quoted) || std::any_of(e.operands.begin(), e.operands.end(), HasColumns);
}

void BindCalls(Expr& e, const ExpressionRules& rules) {
    if (e.kind != ExprKind::Call) return;
    e.function = rules.function(e.name);
    if (e.function == nullptr) throw rules.unknownFunction(e.name);
    if (e.operands.size() < e.function->least || e.operands.size() > e.function->most)
        throw rules.wrongArguments(e.name);
}

void BindConstant(Expr& e, const ExpressionRules& rules) {
    if (e.kind == ExprKind::Column) {
        if (e.quoted) {
            e = LiteralOf(Value::OfText(e.name), e.at);
        } else if (!rules.truthWords || !BindTruthWord(e)) {
            throw rules.unknownColumn(e.name, "");
        }
        return;
    }
    if (IsAggregate(e))
        throw Error(ErrorKind::Syntax, e.name, "Cannot have aggregate function in this place of the statement.");
    BindCalls(e, rules);
    for (Expr& operand : e.operands) BindConstant(operand, rules);
    if (rules.settle != nullptr) rules.settle(e, {});
}

ExpressionWriter::ExpressionWriter(const TableShape& table, std::string alias, SqliteStatement& into)
    : table_(table), alias_(std::move(alias)), into_(into) {}

WrittenExpression ExpressionWriter::WriteColumn(std::size_t column) const {
    const ShapeColumn& shape = table_.columns[column];
    return {QuotedName(shape.name), shape.type, ColumnCodec(shape.type, shape.affinity, table_.Place(column))};
}

std::ptrdiff_t ExpressionWriter::FindNamed(const Expr& e) const {
    const std::string owner = FoldCase(e.owner);
    const bool ours = owner.empty() || owner == FoldCase(table_.name) || owner == FoldCase(alias_);
    return ours ? FindColumn(table_, e.name) : -1;
}

void ExpressionWriter::BindName(Expr& e, Inputs& inputs, bool quotedColumns) const {
    const std::ptrdiff_t column = e.quoted && !quotedColumns ? -1 : FindNamed(e);
    if (column >= 0) {
        e.slot = inputs.Slot(WriteColumn(static_cast<std::size_t>(column)));
        return;
    }
    if (e.quoted) {
        e = LiteralOf(Value::OfText(e.name), e.at);
        return;
    }
    if (!table_.rules->truthWords || !BindTruthWord(e))
        NeedColumn(table_, e.owner.empty() ? e.name : e.owner + "." + e.name);
}

void ExpressionWriter::Bind(Expr& e, Inputs& inputs, bool quotedColumns, bool aggregates) {
    BindNames(e, inputs, quotedColumns, aggregates);
    if (table_.rules->settle != nullptr) table_.rules->settle(e, inputs.types);
}

void ExpressionWriter::BindNames(Expr& e, Inputs& inputs, bool quotedColumns, bool aggregates) {
    if (e.kind == ExprKind::Column) return BindName(e, inputs, quotedColumns);
    if (aggregates && IsAggregate(e)) {
        Expr stand;
        stand.kind = ExprKind::Column;
        stand.at = e.at;
        stand.slot = inputs.Slot(WriteAggregate(e));
        e = std::move(stand);
        return;
    }
    if (IsAggregate(e))
        throw Error(ErrorKind::Syntax, e.name, "Cannot have aggregate function in this place of the statement.");
    BindCalls(e, *table_.rules);
    for (Expr& operand : e.operands) BindNames(operand, inputs, quotedColumns, aggregates);
}

std::string ExpressionWriter::WriteProgram(const char* function, Expr expression, Inputs inputs,
                                           const ShapeColumn* target) {
    auto program = std::make_unique<ExpressionProgram>();
    program->rules = table_.rules;
    program->expression = std::move(expression);
    program->inputs.resize(inputs.codecs.size());
    program->codecs = std::move(inputs.codecs);
    program->markers = into_.markers;
    if (target != nullptr) program->resultType = target->type.type, program->resultAffinity = target->affinity;
    into_.programs.push_back({++into_.parameterCount, std::move(program)});
    std::string sql = std::string(function) + "(?" + std::to_string(into_.parameterCount);
    for (const std::string& input : inputs.sql) sql += "," + input;
    return sql + ")";
}

WrittenExpression ExpressionWriter::WriteAggregate(const Expr& call) {
    const auto computed = [&](DeclaredType type) { return ColumnCodec(type, Affinity::Blob, "a computed column"); };
    if (call.kind == ExprKind::CountAll) return {"count(*)", PlainType(adInteger), computed(PlainType(adInteger))};
    if (call.operands.size() != 1)
        throw Error(ErrorKind::Syntax, call.name,
                    "Wrong number of arguments used with function '" + call.name + "' in query expression.");
    Inputs inputs;
    Expr operand = call.operands[0];
    Bind(operand, inputs, false, false);
    const DeclaredType type = TypeOfExpression(operand, inputs.types);
    const std::string name = AsciiLower(call.name);
    if (name == "count") {
        const std::string sql =
            "count(" + WriteProgram("varnel_value", std::move(operand), std::move(inputs), nullptr) + ")";
        return {sql, PlainType(adInteger), computed(PlainType(adInteger))};
    }
    const std::string function = "varnel_" + name;
    const DeclaredType result = name == "avg" ? PlainType(adDouble) : (name == "sum" ? TypeOfSum(type) : type);
    return {WriteProgram(function.c_str(), std::move(operand), std::move(inputs), nullptr), result, computed(result)};
}

WrittenExpression ExpressionWriter::Write(const Expr& expression) {
    if (IsAggregate(expression)) return WriteAggregate(expression);
    if (expression.kind == ExprKind::Column) {
        const std::ptrdiff_t column = FindNamed(expression);
        if (column >= 0) return WriteColumn(static_cast<std::size_t>(column));
    }
    Inputs inputs;
    Expr bound = expression;
    Bind(bound, inputs, true, true);
    const DeclaredType type = TypeOfExpression(bound, inputs.types);
    ColumnCodec codec(type, Affinity::Blob, "a computed column");
    return {WriteProgram("varnel_value", std::move(bound), std::move(inputs), nullptr), type, std::move(codec)};
}

std::string ExpressionWriter::SortKey(const WrittenExpression& written) const {
    const DataTypeEnum type = written.type.type;
    const bool text = type == adVarWChar || type == adWChar || type == adLongVarWChar || type == adVariant;
    return text && table_.rules->foldsCase ? "varnel_fold(" + written.sql + ")" : written.sql;
}

std::string ExpressionWriter::WriteSortKey(const Expr& expression) {
    return SortKey(Write(expression));
}

std::string ExpressionWriter::WriteForColumn(const Expr& expression, const ShapeColumn& column) {
    Inputs inputs;
    Expr bound = expression;
    Bind(bound, inputs, false, false);
    return WriteProgram("varnel_value", std::move(bound), std::move(inputs), &column);
}

void ExpressionWriter::WriteIndexable(const Expr& e, std::string& sql) const {
    if (e.kind != ExprKind::Binary) return;
    if (e.op == Operator::And) {
        for (const Expr& operand : e.operands) WriteIndexable(operand, sql);
        return;
    }
    if (e.op != Operator::Equal) return;
    for (const std::size_t side : {0u, 1u}) {
        const Expr& name = e.operands[side];
        const Expr& number = e.operands[1 - side];
        if (name.kind != ExprKind::Column || name.quoted || number.kind != ExprKind::Literal) continue;
        const std::ptrdiff_t column = FindNamed(name);
        if (column < 0 || number.literal.Kind() != ValueKind::Integer) continue;
        const ShapeColumn& shape = table_.columns[static_cast<std::size_t>(column)];
        if (IsWholeColumn(shape))
            sql += QuotedName(shape.name) + "=" + std::to_string(number.literal.AsInteger()) + " AND ";
    }
}

std::string ExpressionWriter::WriteCondition(const Expr& expression, bool aggregates) {
    std::string sql;
    if (!aggregates) WriteIndexable(expression, sql);
    Inputs inputs;
    Expr bound = expression;
    Bind(bound, inputs, false, aggregates);
    return sql + WriteProgram("varnel_value", std::move(bound), std::move(inputs), nullptr);
}

}  // namespace varnel::sql
