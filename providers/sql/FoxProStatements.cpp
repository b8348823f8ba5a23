#include "providers/sql/FoxProStatements.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "providers/sql/FoxProRules.h"
#include "providers/sql/FoxProTypes.h"

namespace varnel::sql {

namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t from = text.find_first_not_of(kBlanks);
    return from == std::string_view::npos ? std::string_view()
                                          : text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

/// Where the words of a text end.
std::vector<std::size_t> WordEnds(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    std::vector<std::size_t> ends;
    for (std::size_t at = text.find_first_not_of(kBlanks); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
        ends.push_back(end);
        at = text.find_first_not_of(kBlanks, end);
    }
    return ends;
}

/// "database!table" names a table of the database that is open.
std::string WithoutDatabase(const std::string& name) {
    const std::size_t mark = name.rfind('!');
    const bool path = name.find_first_of("\\/:") != std::string::npos;
    return mark == std::string::npos || path ? name : name.substr(mark + 1);
}

/// The name by which a statement's columns may be qualified: the file's stem, blanks turned into underscores.
std::string AliasOf(std::string_view name) {
    const std::size_t separator = name.find_last_of("\\/:!");
    if (separator != std::string_view::npos) name.remove_prefix(separator + 1);
    if (name.size() > 4 && EqualNoCase(name.substr(name.size() - 4), ".dbf")) name.remove_suffix(4);
    std::string alias(name);
    std::replace(alias.begin(), alias.end(), ' ', '_');
    return alias;
}

class FoxProParser : public StatementParser {
public:
    explicit FoxProParser(std::string_view statement) : StatementParser(statement, kFoxProGrammar) {}

private:
    void From(SelectStatement& select) override {
        if (tokens_.Now().kind == TokenKind::TablePath) {
            select.wideTable = tokens_.Take().text;
            select.table = select.wideTable.substr(0, WordEnds(select.wideTable)[0]);
            return;
        }
        select.table = Table();
        if (tokens_.TakeWord("as") || AtAlias()) select.tableAlias = tokens_.TakeName();
        if (tokens_.AtSymbol(",") || tokens_.AtWord("join")) FailSeveral();
    }

    bool AtAlias() const {
        for (const std::string_view clause : {"where", "order", "group", "having", "union", "into", "join", "inner"})
            if (tokens_.AtWord(clause)) return false;
        return tokens_.AtName();
    }

    std::string Table() override {
        const Token& now = tokens_.Now();
        if (now.kind == TokenKind::Name && !now.text.empty()) return WithoutDatabase(tokens_.Take().text);
        if (now.kind != TokenKind::TablePath) tokens_.Fail();
        return WithoutDatabase(tokens_.Take().text);
    }

    DropTableStatement DropTable() override {
        tokens_.Enter("DROP TABLE statement");
        tokens_.NeedWord("table");
        DropTableStatement drop{Table()};
        if (!tokens_.TakeWord("recycle")) CutLastWord(drop.table, "recycle");
        return drop;
    }

    /// Takes a word off the end of a bare name, where it stands for a clause.
    static void CutLastWord(std::string& name, std::string_view word) {
        if (name.size() <= word.size() + 1) return;
        const std::size_t at = name.size() - word.size();
        if (name[at - 1] == ' ' && EqualNoCase(std::string_view(name).substr(at), word))
            name = std::string(Trimmed(std::string_view(name).substr(0, at)));
    }

    CreateTableStatement CreateTable() override {
        CreateTableStatement create;
        tokens_.Enter("CREATE TABLE statement");
        if (!tokens_.TakeWord("dbf")) tokens_.NeedWord("table");
        create.table = Table();
        if (!tokens_.AtSymbol("(")) Refuse(tokens_.Now().text);
        tokens_.NeedSymbol("(");
        do {
            RefuseTableClauses();
            create.columns.push_back(Column());
        } while (tokens_.TakeSymbol(","));
        tokens_.NeedSymbol(")");
        return create;
    }

    /// Keys and rules of the whole table name expressions and tags.
    void RefuseTableClauses() {
        for (const std::string_view clause : {"primary", "foreign", "check", "unique"}) {
            const bool field = tokens_.Ahead(1).kind == TokenKind::Word && !tokens_.Is(tokens_.Ahead(1), "key");
            if (tokens_.AtWord(clause) && !field) Refuse(tokens_.Now().text);
        }
    }

    ColumnDefinition Column() {
        ColumnDefinition column;
        // A field may be called like a keyword; nothing else can stand here.
        column.name = tokens_.Now().kind == TokenKind::Word ? tokens_.Take().text : tokens_.TakeName();
        const FoxProType type = TakeFoxProType(tokens_);
        column.typeWord = std::string(1, type.letter);
        if (type.width >= 0) column.typeArguments.push_back(type.width);
        if (type.decimals >= 0) column.typeArguments.push_back(type.decimals);
        while (ColumnOption(column)) {
        }
        const Token& now = tokens_.Now();
        if (now.kind == TokenKind::Word) Refuse(now.text);
        return column;
    }

    bool ColumnOption(ColumnDefinition& column) {
        if (tokens_.TakeWord("null")) return true;
        if (tokens_.TakeWord("autoinc")) return AutoIncrement(column), true;
        if (tokens_.TakeWord("nocptrans")) return column.typeWord += " NOCPTRANS", true;
        if (!tokens_.TakeWord("not")) return false;
        tokens_.NeedWord("null");
        return column.notNull = true;
    }

    /// AUTOINC [NEXTVALUE n [STEP s]]
    void AutoIncrement(ColumnDefinition& column) {
        if (column.typeWord != "I") tokens_.Fail("Only an integer field can be AUTOINC.");
        column.typeWord += " AUTOINC";
        int next = 1, step = 1;
        if (tokens_.TakeWord("nextvalue")) next = Number();
        if (tokens_.TakeWord("step")) step = Number();
        column.typeArguments = {next, step};
    }

    int Number() {
        const Expr expression = expressions_.Parse();
        const bool whole = expression.kind == ExprKind::Literal && expression.literal.Kind() == ValueKind::Integer;
        if (!whole || expression.literal.AsInteger() > INT32_MAX) tokens_.Fail();
        return static_cast<int>(expression.literal.AsInteger());
    }

    [[noreturn]] void Refuse(const std::string& clause) const {
        if (clause.empty()) tokens_.Fail();
        throw Error(ErrorKind::NotSupported, tokens_.Statement(),
                    "The clause '" + AsciiUpper(clause) + "' of CREATE TABLE is not supported.");
    }

    [[noreturn]] void FailSeveral() const {
        throw Error(ErrorKind::NotSupported, tokens_.Statement(),
                    "Statements over more than one table are not supported.");
    }

    [[noreturn]] void FailUnknown() override {
        tokens_.Fail("Command contains unrecognized phrase/keyword: '" + tokens_.Now().text + "'.");
    }
};

/// A second name behind the first: one word, or AS and one word.
std::optional<std::string> SecondName(std::string_view rest) {
    const std::vector<std::size_t> ends = WordEnds(rest);
    if (ends.empty()) return "";
    const std::string_view first = Trimmed(rest.substr(0, ends[0]));
    const bool as = ends.size() == 2 && EqualNoCase(first, "as");
    if (ends.size() > 1 && !as) return std::nullopt;
    const std::string_view name = as ? Trimmed(rest.substr(ends[0])) : first;
    const bool plain = name.find_first_of(".,:\\/!'\"[]()") == std::string_view::npos && !IsReservedWord(name);
    return plain ? std::optional<std::string>(name) : std::nullopt;
}

void ResolveSelect(SelectStatement& select, TableStore& store) {
    const std::string wide = std::move(select.wideTable);
    if (!wide.empty()) select.table = WithoutDatabase(wide);
    const std::vector<std::size_t> ends = WordEnds(wide);
    for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
        const std::optional<std::string> second = SecondName(std::string_view(wide).substr(ends[i]));
        const std::string name = WithoutDatabase(wide.substr(0, ends[i]));
        if (!second || !store.HasTable(name)) continue;
        select.table = name;
        select.tableAlias = *second;
        break;
    }
    if (select.tableAlias.empty()) select.tableAlias = AliasOf(select.table);
}

}  // namespace

ParsedStatement ParseFoxPro(std::string_view statement) {
    return FoxProParser(statement).Parse();
}

void ResolveFoxProTable(ParsedStatement& parsed, TableStore& store) {
    if (auto* select = std::get_if<SelectStatement>(&parsed.body)) ResolveSelect(*select, store);
}

Dialect FoxProDialect(bool ansi, bool deletedShown) {
    return {&ParseFoxPro, &FoxProRules(ansi, deletedShown), &ResolveFoxProTable};
}

}  // namespace varnel::sql
