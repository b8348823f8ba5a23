#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "providers/sql/ExpressionWriter.h"
#include "providers/sql/SqliteCatalog.h"
#include "providers/sql/StatementWriter.h"

namespace varnel::sql {
namespace {

class SelectWriter {
public:
    SelectWriter(const TableShape& table, const SelectStatement& select, SqliteStatement& into)
        : select_(select), made_(into), table_(table), expressions_(table_, select.tableAlias, made_) {}

    std::string Write(const std::string& from) {
        WriteItems();
        std::string sql = "SELECT " + ItemList() + " FROM " + QuotedName(from);
        if (select_.where) sql += " WHERE " + expressions_.WriteCondition(*select_.where, false);
        sql += Grouping() + Ordering();
        if (select_.top) sql += " LIMIT " + std::to_string(*select_.top);
        return sql;
    }

private:
    void WriteItems() {
        if (select_.everything)
            for (std::size_t i = 0; i < table_.columns.size(); ++i)
                Add(expressions_.WriteColumn(i), table_.columns[i].name);
        for (const SelectItem& item : select_.items) Add(expressions_.Write(item.expression), NameOf(item));
    }

    void Add(WrittenExpression written, std::string name) {
        const std::ptrdiff_t column = FindColumn(table_, name);
        const bool nullable = column < 0 || !table_.columns[static_cast<std::size_t>(column)].notNull;
        made_.columns.push_back(DescribeColumn(std::move(name), written.type, nullable));
        made_.codecs.push_back(written.codec);
        items_.push_back(std::move(written));
    }

    /// A column keeps the table's spelling; what has no name gets one.
    std::string NameOf(const SelectItem& item) {
        if (!item.alias.empty()) return item.alias;
        const std::ptrdiff_t column =
            item.expression.kind == ExprKind::Column ? FindColumn(table_, item.expression.name) : -1;
        if (column >= 0) return table_.columns[static_cast<std::size_t>(column)].name;
        return "Expr" + std::to_string(1000 + unnamed_++);
    }

    std::string ItemList() const {
        std::string list;
        for (const WrittenExpression& item : items_) list += (list.empty() ? "" : ",") + item.sql;
        return list;
    }

    /// DISTINCT groups by all columns, so that texts that differ only in case are one.
    std::string Grouping() {
        std::string keys;
        const auto add = [&](const std::string& key) { keys += (keys.empty() ? " GROUP BY " : ",") + key; };
        for (const Expr& expression : select_.groupBy) add(expressions_.WriteSortKey(Resolved(expression)));
        if (select_.distinct && select_.groupBy.empty() && !HasAggregates())
            for (const WrittenExpression& item : items_) add(expressions_.SortKey(item));
        if (select_.having) keys += " HAVING " + expressions_.WriteCondition(*select_.having, true);
        return keys;
    }

    bool HasAggregates() const {
        for (const SelectItem& item : select_.items)
            if (HasAggregate(item.expression)) return true;
        return false;
    }

    std::string Ordering() {
        std::string keys;
        const auto add = [&](const std::string& key) { keys += (keys.empty() ? " ORDER BY " : ",") + key; };
        for (const OrderItem& item : select_.orderBy) add(OrderKey(item.expression) + (item.descending ? " DESC" : ""));
        // Chosen rows come in the key's order where the table has a key; whole tables as they are stored.
        const bool chosen = select_.where && select_.groupBy.empty() && !select_.distinct && !HasAggregates();
        if (keys.empty() && chosen)
            for (const std::string& column : table_.sortKey) add(QuotedName(column));
        return keys;
    }

    /// A whole number is the position of a column, a name may be one's alias.
    std::string OrderKey(const Expr& expression) {
        if (expression.kind == ExprKind::Literal && expression.literal.Kind() == ValueKind::Integer) {
            const std::int64_t position = expression.literal.AsInteger();
            if (position < 1 || position > static_cast<std::int64_t>(items_.size()))
                throw Error(ErrorKind::Syntax, table_.name,
                            "Syntax error in ORDER BY clause: there is no such column.");
            return expressions_.SortKey(items_[static_cast<std::size_t>(position - 1)]);
        }
        return expressions_.WriteSortKey(Resolved(expression));
    }

    /// The expression behind an alias.
    const Expr& Resolved(const Expr& expression) const {
        if (expression.kind != ExprKind::Column || !expression.owner.empty()) return expression;
        for (const SelectItem& item : select_.items)
            if (!item.alias.empty() && FoldCase(item.alias) == FoldCase(expression.name)) return item.expression;
        return expression;
    }

    const SelectStatement& select_;
    SqliteStatement& made_;
    const TableShape& table_;
    ExpressionWriter expressions_;
    std::vector<WrittenExpression> items_;
    int unnamed_ = 0;
};

}  // namespace

std::string WriteSelectText(const TableShape& table, const SelectStatement& select, const std::string& from,
                            SqliteStatement& into) {
    return SelectWriter(table, select, into).Write(from);
}

SqliteStatement WriteSelect(SqliteFile& file, const SelectStatement& select, std::size_t markers) {
    SqliteStatement made;
    made.markers = std::make_shared<std::vector<Value>>(markers);
    const TableShape table = ReadShape(file, select.table);
    made.tracked = file.Prepare(WriteSelectText(table, select, table.name, made));
    return made;
}

}  // namespace varnel::sql
