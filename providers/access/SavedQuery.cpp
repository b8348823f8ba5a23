#include "providers/access/SavedQuery.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Error.h"

namespace varnel::access {
namespace {

enum Attribute : std::int64_t {
    kKind = 1,
    kParameter = 2,
    kOptions = 3,
    kOtherDatabase = 4,
    kSource = 5,
    kOutput = 6,
    kJoin = 7,
    kWhere = 8,
    kGroup = 9,
    kHaving = 10,
    kOrder = 11
};
enum Option : std::int64_t { kAllColumns = 1, kDistinct = 2, kDistinctRow = 8, kTop = 0x10, kPercent = 0x20 };

constexpr const char* kKindNames[] = {"select", "select",   "make-table",      "append",       "update",
                                      "delete", "crosstab", "data definition", "pass-through", "union"};

std::string Bracketed(const std::string& name) {
    return "[" + name + "]";
}

std::string Joined(const std::vector<std::string>& items) {
    std::string all;
    for (const std::string& item : items) all += (all.empty() ? "" : ", ") + item;
    return all;
}

/// The statement, clause by clause.
class QueryWriter {
public:
    QueryWriter(const std::string& name, const std::vector<QueryPart>& parts) : name_(name), parts_(parts) {}

    std::string Write() const {
        RequireOneSource();
        return "SELECT " + Options() + Columns() + " FROM " + Source() + Condition() + Order();
    }

private:
    std::vector<const QueryPart*> Of(std::int64_t attribute) const {
        std::vector<const QueryPart*> found;
        for (const QueryPart& part : parts_) {
            if (part.attribute == attribute) found.push_back(&part);
        }
        return found;
    }
    std::int64_t Flags() const {
        std::int64_t flags = 0;
        for (const QueryPart* part : Of(kOptions)) flags |= part->flag;
        return flags;
    }
    [[noreturn]] void Refuse(const std::string& kind) const {
        throw Error(ErrorKind::NotSupported, name_,
                    "The query '" + name_ + "' is of kind " + kind + " and cannot be read.");
    }

    void RequireOneSource() const;
    std::string Options() const;
    std::string Columns() const;
    std::string Source() const;
    std::string Condition() const;
    std::string Order() const;

    const std::string& name_;
    const std::vector<QueryPart>& parts_;
};

void QueryWriter::RequireOneSource() const {
    for (const QueryPart* part : Of(kKind)) {
        const bool known = part->flag >= 0 && part->flag < static_cast<std::int64_t>(std::size(kKindNames));
        if (!known) Refuse(std::to_string(part->flag));
        if (part->flag > 1) Refuse(kKindNames[part->flag]);
    }
    if (!Of(kParameter).empty()) Refuse("select with parameters");
    if (!Of(kGroup).empty() || !Of(kHaving).empty()) Refuse("select with groups");
    const auto sources = Of(kSource);
    if (!Of(kJoin).empty() || sources.size() > 1) Refuse("select over several tables");
    if (sources.empty()) Refuse("select without a table");
    const bool isForeign = std::any_of(parts_.begin(), parts_.end(), [](const QueryPart& part) {
        return part.attribute == kOtherDatabase && !part.name1.empty();
    });
    if (isForeign) Refuse("select over another database");
    if (sources[0]->name1.empty() || !sources[0]->expression.empty()) Refuse("select over another select");
    if ((Flags() & kPercent) != 0) Refuse("select of a percentage of the rows");
}

std::string QueryWriter::Options() const {
    const std::int64_t flags = Flags();
    std::string text;
    if ((flags & kDistinct) != 0) text += "DISTINCT ";
    if ((flags & kTop) == 0) return text;
    for (const QueryPart* part : Of(kOptions)) {
        if ((part->flag & kTop) != 0) text += "TOP " + part->name1 + " ";
    }
    return text;
}

/// Without columns, and with the option, all of the source's come; then the others behind them.
std::string QueryWriter::Columns() const {
    std::vector<std::string> items;
    if ((Flags() & kAllColumns) != 0 || Of(kOutput).empty()) items.emplace_back("*");
    for (const QueryPart* part : Of(kOutput)) {
        const std::string alias = part->name1.empty() ? "" : " AS " + Bracketed(part->name1);
        items.push_back(part->expression + alias);
    }
    return Joined(items);
}

std::string QueryWriter::Source() const {
    const QueryPart& source = *Of(kSource)[0];
    return Bracketed(source.name1) + (source.name2.empty() ? "" : " AS " + Bracketed(source.name2));
}

std::string QueryWriter::Condition() const {
    const auto conditions = Of(kWhere);
    if (conditions.empty()) return "";
    if (conditions.size() > 1) Refuse("select with several conditions");
    return " WHERE " + conditions[0]->expression;
}

std::string QueryWriter::Order() const {
    std::vector<std::string> items;
    for (const QueryPart* part : Of(kOrder))
        items.push_back(part->expression + (part->name1 == "D" || part->name1 == "d" ? " DESC" : ""));
    return items.empty() ? "" : " ORDER BY " + Joined(items);
}

std::string TextOf(const Value& value) {
    return value.Kind() == ValueKind::Text ? std::string(value.AsText()) : std::string();
}
std::int64_t IntegerOf(const Value& value) {
    return value.Kind() == ValueKind::Integer ? value.AsInteger() : 0;
}
std::string BytesOf(const Value& value) {
    if (value.Kind() != ValueKind::Bytes) return "";
    return {value.AsBytes().begin(), value.AsBytes().end()};
}

}  // namespace

std::string QueryText(const std::string& name, std::vector<QueryPart> parts) {
    std::stable_sort(parts.begin(), parts.end(),
                     [](const QueryPart& a, const QueryPart& b) { return a.order < b.order; });
    return QueryWriter(name, parts).Write();
}

std::vector<QueryPart> ReadQueryParts(Schema& schema, const CatalogEntry& query) {
    constexpr std::array<std::string_view, 7> kColumns = {"ObjectId", "Attribute",  "Flag", "Name1",
                                                          "Name2",    "Expression", "Order"};
    const auto hold = schema.File()->HoldForReading();
    const auto rows = schema.Rows(schema.DefinitionOf("MSysQueries"), kColumns);
    std::vector<QueryPart> parts;
    std::array<Value, kColumns.size()> row;
    while (rows->Next(row)) {
        if (row[0].Kind() == ValueKind::Integer && row[0].AsInteger() != query.id) continue;
        for (const Value& value : row) {
            if (value.Kind() == ValueKind::Failure)
                throw Error(ErrorKind::Corrupt, query.name, std::string(value.FailureText()));
        }
        parts.push_back(
            {IntegerOf(row[1]), IntegerOf(row[2]), TextOf(row[3]), TextOf(row[4]), TextOf(row[5]), BytesOf(row[6])});
    }
    return parts;
}

}  // namespace varnel::access
