#include "tools/check/ValueRules.h"

#include <algorithm>
#include <map>

#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "source/SourceQuery.h"
#include "tools/check/CellTrouble.h"
#include "tools/output/Progress.h"

namespace varnel::admin {
namespace {

/// The values of one column with the same trouble.
struct Tally {
    Severity severity = Severity::Fault;
    std::int64_t count = 0, firstRow = 0;
    std::string example;
};
using ColumnTallies = std::map<std::string, Tally>;

/// A value as it can stand in a line: cut, without line breaks.
std::string Excerpt(const Value& value) {
    constexpr std::size_t kShown = 40;
    if (value.IsNull()) return "Null";
    if (value.Kind() == ValueKind::Bytes) return std::to_string(value.AsBytes().size()) + " bytes";
    std::string text = DefaultText(value);
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    if (text.size() <= kShown) return "'" + text + "'";
    std::size_t end = kShown;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return "'" + text.substr(0, end) + "...'";
}

/// example: makes the text of the first value with the trouble.
template <class Example>
void Count(ColumnTallies& tallies, const Trouble& trouble, std::int64_t row, Example&& example) {
    Tally& tally = tallies[trouble.sort];
    if (tally.count++ > 0) return;
    tally.severity = trouble.severity;
    tally.firstRow = row;
    tally.example = example();
}

void JudgeCell(ColumnJudge& judge, const Field& field, std::int64_t row, ColumnTallies& tallies) {
    try {
        const Value& value = field.GetValue();
        if (const auto trouble = judge.Judge(value)) Count(tallies, *trouble, row, [&] { return Excerpt(value); });
    } catch (const Error& error) {
        Count(tallies, {Severity::Fault, "cannot be read"}, row, [&] { return std::string(error.what()); });
    }
}

void Report(const TableFacts& facts, std::size_t k, const ColumnTallies& tallies) {
    for (const auto& [sort, tally] : tallies) {
        std::string what = "'";
        what.append(facts.source[k].name).append("' ").append(sort).append(": in ").append(std::to_string(tally.count));
        what.append(tally.count == 1 ? " row" : " rows").append(", first in row ");
        what.append(std::to_string(tally.firstRow)).append(": ").append(tally.example);
        const std::string& column =
            facts.preparation == Preparation::Export ? facts.columns[k]->SCName : facts.written[k];
        if (tally.severity == Severity::Fault)
            facts.Found().Fault(column, what, "correct these values, or the target column, or filter the rows out");
        else
            facts.Found().Warning(column, what, "look at these values, or at the target column");
    }
}

}  // namespace

void CheckValues(const Side& source, const TableFacts& facts) {
    if (facts.source.empty()) return;
    const bool exported = facts.preparation == Preparation::Export;
    std::vector<std::unique_ptr<ColumnJudge>> judges;
    for (std::size_t k = 0; k < facts.source.size(); ++k) judges.push_back(JudgeOf(facts, k));
    if (std::none_of(judges.begin(), judges.end(), [](const auto& judge) { return judge != nullptr; })) return;
    std::vector<ColumnTallies> tallies(judges.size());
    std::int64_t row = 0;
    Progress progress("reading " + facts.From().TableName, "rows");
    try {
        const auto queries =
            BuildSourceQueries(facts.i, "", exported ? MySqlFrom::TableOnly : MySqlFrom::OwnerAndTable);
        Recordset rows;
        rows.Open(queries.select, source.Link(), adOpenForwardOnly, adLockReadOnly);
        for (; !rows.Eof(); rows.MoveNext()) {
            progress.Count(static_cast<std::uint64_t>(++row));
            for (std::size_t k = 0; k < judges.size(); ++k)
                if (judges[k]) JudgeCell(*judges[k], rows.Fields(k), row, tallies[k]);
        }
    } catch (const Error& error) {
        facts.Found().Fault("", "reading breaks off behind row " + std::to_string(row) + ": " + error.what(),
                            "see that the source is sound; varnel-admin verify looks at its file");
    }
    for (std::size_t k = 0; k < judges.size(); ++k) Report(facts, k, tallies[k]);
}

}  // namespace varnel::admin
