#include "providers/sql/StatementParser.h"

#include <charconv>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "providers/sql/DeclaredTypes.h"

namespace varnel::sql {
ParsedStatement StatementParser::Parse() {
    ParsedStatement parsed;
    if (tokens_.TakeWord("select"))
        parsed.body = Select();
    else if (tokens_.TakeWord("insert"))
        parsed.body = Insert();
    else if (tokens_.TakeWord("update"))
        parsed.body = Update();
    else if (tokens_.TakeWord("delete"))
        parsed.body = Delete();
    else if (tokens_.TakeWord("create"))
        parsed.body = CreateTable();
    else if (tokens_.TakeWord("drop"))
        parsed.body = DropTable();
    else
        FailUnknown();
    tokens_.TakeSymbol(";");
    if (tokens_.Now().kind != TokenKind::End) tokens_.Fail();
    parsed.markers = expressions_.Markers();
    return parsed;
}

void StatementParser::FailUnknown() {
    tokens_.Fail(
        "Invalid SQL statement; expected 'DELETE', 'INSERT', 'SELECT', 'UPDATE', 'CREATE TABLE' or 'DROP TABLE'.");
}

SelectStatement StatementParser::Select() {
    SelectStatement select;
    tokens_.Enter("SELECT clause");
    select.distinct = tokens_.TakeWord("distinct") || tokens_.TakeWord("distinctrow");
    if (tokens_.AtWord("top") && tokens_.Ahead(1).kind == TokenKind::Number) {
        tokens_.Take();
        select.top = WholeNumber();
    }
    ReadItems(select);
    if (!tokens_.AtWord("from")) tokens_.Fail();
    tokens_.Take();
    tokens_.Enter("FROM clause");
    From(select);
    select.where = Where();
    ReadGrouping(select);
    ReadOrder(select);
    return select;
}

void StatementParser::From(SelectStatement& select) {
    select.table = tokens_.TakeTableName(&select.owner);
    if (tokens_.TakeWord("as") || tokens_.AtName()) select.tableAlias = tokens_.TakeName();
}

void StatementParser::ReadItems(SelectStatement& select) {
    if (tokens_.TakeSymbol("*")) {
        select.everything = true;
        return;
    }
    do {
        if (tokens_.AtWord("from")) tokens_.Fail();
        SelectItem item;
        item.expression = expressions_.Parse();
        if (tokens_.TakeWord("as")) item.alias = tokens_.TakeName();
        select.items.push_back(std::move(item));
    } while (tokens_.TakeSymbol(","));
}

void StatementParser::ReadGrouping(SelectStatement& select) {
    if (tokens_.TakeWord("group")) {
        tokens_.Enter("GROUP BY clause");
        tokens_.NeedWord("by");
        do select.groupBy.push_back(expressions_.Parse());
        while (tokens_.TakeSymbol(","));
    }
    if (!tokens_.TakeWord("having")) return;
    tokens_.Enter("HAVING clause");
    select.having = expressions_.Parse();
}

void StatementParser::ReadOrder(SelectStatement& select) {
    if (!tokens_.TakeWord("order")) return;
    tokens_.Enter("ORDER BY clause");
    tokens_.NeedWord("by");
    do {
        OrderItem item;
        item.expression = expressions_.Parse();
        item.descending = tokens_.TakeWord("desc");
        if (!item.descending) tokens_.TakeWord("asc");
        select.orderBy.push_back(std::move(item));
    } while (tokens_.TakeSymbol(","));
}

std::optional<Expr> StatementParser::Where() {
    if (!tokens_.TakeWord("where")) return std::nullopt;
    tokens_.Enter("WHERE clause");
    return expressions_.Parse();
}

InsertStatement StatementParser::Insert() {
    InsertStatement insert;
    tokens_.Enter("INSERT INTO statement");
    tokens_.NeedWord("into");
    insert.table = Table();
    if (tokens_.AtSymbol("(")) insert.columns = NameList();
    if (tokens_.AtWord("select")) tokens_.Fail("INSERT INTO … SELECT is not supported.");
    tokens_.NeedWord("values");
    do {
        tokens_.NeedSymbol("(");
        std::vector<Expr>& row = insert.rows.emplace_back();
        do row.push_back(expressions_.Parse());
        while (tokens_.TakeSymbol(","));
        tokens_.NeedSymbol(")");
    } while (tokens_.TakeSymbol(","));
    return insert;
}

UpdateStatement StatementParser::Update() {
    UpdateStatement update;
    tokens_.Enter("UPDATE statement");
    update.table = Table();
    tokens_.NeedWord("set");
    do {
        Assignment one;
        one.column = tokens_.TakeTableName();  // table.column names its last part as well
        tokens_.NeedSymbol("=");
        one.value = expressions_.Parse();
        update.assignments.push_back(std::move(one));
    } while (tokens_.TakeSymbol(","));
    update.where = Where();
    return update;
}

DeleteStatement StatementParser::Delete() {
    DeleteStatement statement;
    tokens_.Enter("DELETE statement");
    tokens_.TakeSymbol("*");
    tokens_.NeedWord("from");
    statement.table = Table();
    statement.where = Where();
    return statement;
}

DropTableStatement StatementParser::DropTable() {
    tokens_.Enter("DROP TABLE statement");
    tokens_.NeedWord("table");
    return {Table()};
}

CreateTableStatement StatementParser::CreateTable() {
    CreateTableStatement create;
    tokens_.Enter("CREATE TABLE statement");
    tokens_.NeedWord("table");
    create.table = Table();
    tokens_.NeedSymbol("(");
    do {
        if (!TableConstraint(create)) create.columns.push_back(Column());
    } while (tokens_.TakeSymbol(","));
    tokens_.NeedSymbol(")");
    if (create.columns.empty()) tokens_.Fail();
    return create;
}

/// Reads [CONSTRAINT name] PRIMARY KEY (…) or UNIQUE (…) and returns true, or returns false at a column.
bool StatementParser::TableConstraint(CreateTableStatement& create) {
    if (tokens_.AtWord("constraint")) {
        tokens_.Take();
        tokens_.TakeName();
    }
    const bool primary = tokens_.AtWord("primary") && tokens_.Is(tokens_.Ahead(1), "key");
    const bool unique = tokens_.AtWord("unique") && TokenCursor::IsSymbol(tokens_.Ahead(1), "(");
    if (!primary && !unique) return false;
    tokens_.Take();
    if (primary) tokens_.Take();
    if (primary)
        create.primaryKey = NameList();
    else
        create.unique.push_back(NameList());
    return true;
}

ColumnDefinition StatementParser::Column() {
    ColumnDefinition column;
    column.name = tokens_.TakeName();
    if (tokens_.Now().kind != TokenKind::Word) tokens_.Fail();
    column.typeWord = AsciiUpper(tokens_.Take().text);
    while (tokens_.Now().kind == TokenKind::Word && ContinuesTypeWord(column.typeWord, tokens_.Now().text))
        column.typeWord += " " + AsciiUpper(tokens_.Take().text);
    if (tokens_.TakeSymbol("(")) ReadTypeArguments(column);
    while (ColumnOption(column)) {
    }
    return column;
}

void StatementParser::ReadTypeArguments(ColumnDefinition& column) {
    do {
        if (tokens_.TakeWord("max")) continue;
        const bool negative = tokens_.TakeSymbol("-");
        const std::int64_t number = WholeNumber();
        if (number > 1'000'000'000) tokens_.Fail();
        column.typeArguments.push_back(static_cast<int>(negative ? -number : number));
    } while (tokens_.TakeSymbol(","));
    tokens_.NeedSymbol(")");
}

bool StatementParser::ColumnOption(ColumnDefinition& column) {
    if (tokens_.TakeWord("null")) return true;
    if (tokens_.TakeWord("unique")) return column.unique = true;
    if (tokens_.TakeWord("not")) {
        tokens_.NeedWord("null");
        return column.notNull = true;
    }
    if (tokens_.AtWord("constraint")) {
        tokens_.Take();
        tokens_.TakeName();
    }
    if (!tokens_.TakeWord("primary")) return false;
    tokens_.NeedWord("key");
    return column.primaryKey = true;
}

std::vector<std::string> StatementParser::NameList() {
    std::vector<std::string> names;
    tokens_.NeedSymbol("(");
    do names.push_back(tokens_.TakeName());
    while (tokens_.TakeSymbol(","));
    tokens_.NeedSymbol(")");
    return names;
}

std::int64_t StatementParser::WholeNumber() {
    const Token& token = tokens_.Now();
    std::int64_t number = 0;
    const char* end = token.text.data() + token.text.size();
    if (token.kind != TokenKind::Number) tokens_.Fail();
    const auto read = std::from_chars(token.text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) tokens_.Fail();
    tokens_.Take();
    return number;
}

ParsedStatement ParseStatement(std::string_view statement) {
    return StatementParser(statement, kJetGrammar).Parse();
}

}  // namespace varnel::sql
