// Every kind of source into every kind of target: each value arrives, is reported, or changes as the table of rules
// for the kinds says.
#include <algorithm>
#include <map>
#include <set>

#include "ado/Ado.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "tests/session/Fidelity.h"
#include "tests/session/MatrixRules.h"
#include "tests/session/MatrixSide.h"
#include "tests/session/SessionTest.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

constexpr MatrixKind kKinds[] = {{"Access", "ACCESS", ""},       {"FoxProDir", "FOXPRO", "DIR"},
                                 {"FoxProDbc", "FOXPRO", "DBC"}, {"Oracle", "ORACLE", ""},
                                 {"MySql", "MySQL", ""},         {"SqlServer", "MSSQL", ""},
                                 {"Text", "TEXT", ""},           {"TextPoll", "TEXTPOLL", ""}};
constexpr std::size_t kTargets = 7;  // no session writes into a polled folder
constexpr MatrixKind kFixed{"TextFixed", "TEXT", "FIXED"};

constexpr const char* kBatch = " (its whole batch)";

using Values = std::vector<std::vector<Value>>;

/// "005" from a row's ID; sorts as the numbers do.
std::string IdOf(const std::vector<Value>& row) {
    const std::string digits = *CellOf(row[0]);
    return std::string(3 - std::min<std::size_t>(3, digits.size()), '0') + digits;
}

std::map<std::string, const std::vector<Value>*> ById(const Values& rows) {
    std::map<std::string, const std::vector<Value>*> found;
    for (const auto& row : rows) found[IdOf(row)] = &row;
    return found;
}

std::string Shown(const Cell& cell) {
    if (!cell) return "Null";
    std::string text;
    for (const char c : cell->substr(0, 60)) text += c < ' ' && c >= 0 ? '.' : c;
    return "'" + text + "' of " + std::to_string(cell->size());
}

/// How the fixed layout writes the cells of a column.
struct FixedLayout {
    int width;
    bool right = true;       ///< blanks to the left
    bool cut = false;        ///< what is wider; else it is written whole
    bool signBlank = false;  ///< a blank where a minus would stand
    int nullWidth = 0;       ///< of a Null, where it is another
};

/// fromText: as a text source's columns are written, by the designer's type word; those that it does not know stand
/// left.
FixedLayout FixedLayoutOf(const TestColumn& column, bool fromText) {
    static const std::map<std::string, FixedLayout> kOfType{{"SmallInt", {7, true, true}},
                                                            {"Integer", {7, true, true}},
                                                            {"Double", {17, true, true}},
                                                            {"Currency", {21, true, true}},
                                                            {"Numeric", {19}},
                                                            {"VarNumeric", {40}},
                                                            {"Date", {10, false}},
                                                            {"DBDate", {10, false}},
                                                            {"DBTimeStamp", {22, false}},
                                                            {"Single", {4, true, false, true}},
                                                            {"UnsignedTinyInt", {1, true, false, true}}};
    static const std::map<std::string, FixedLayout> kOfTextSource{{"Integer", {7, true, true}},
                                                                  {"Date", {10, false}},
                                                                  {"Boolean", {2, false}},
                                                                  {"UnsignedTinyInt", {1, false, false, true}},
                                                                  {"SmallInt", {2, false, false, true}},
                                                                  {"Single", {4, false, false, true}},
                                                                  {"Double", {8, false, false, true}},
                                                                  {"Currency", {20, false, false, true, 8}}};
    const auto& layouts = fromText ? kOfTextSource : kOfType;
    const auto found = layouts.find(column.type);
    return found != layouts.end() ? found->second : FixedLayout{column.width, false};
}

class MatrixTest : public SessionTest, public testing::WithParamInterface<std::tuple<MatrixKind, MatrixKind>> {
protected:
    MatrixTest()
        : from_(std::get<0>(GetParam()), "from", folder_.Path()),
          into_(std::get<1>(GetParam()), "into", folder_.Path()) {
        from_.BeSource(session_);
        into_.BeTarget(session_);
    }

    /// Makes the source's table, runs the session and compares.
    void Carry(bool withLongColumns) {
        columns_ = MatrixColumns(session_.sourceKind, into_.Layout(), withLongColumns);
        rows_ = MatrixRows(columns_);
        const std::vector<std::string> refused = from_.Fill("REFSRC", columns_, rows_);
        described_ = from_.Describe("REFSRC", columns_);
        source_ = from_.Read("REFSRC", columns_);
        const bool longWay = std::any_of(columns_.begin(), columns_.end(), [](const auto& c) { return c.isLong; });
        trip_ = std::make_unique<MatrixTrip>(
            MatrixTrip{session_.sourceKind, session_.targetKind, longWay, columns_, described_});
        CheckSource(refused);
        into_.MakeOld("REFOUT");
        AddTable();
        CloseIdleSessions();
        const int status = Run();
        failures_ = InLog(into_.IsFiles() ? "has no place in code page" : "Error Loading Row\r\n");
        EXPECT_EQ(status, failures_ > 0 ? 1 : 0) << FirstFailure() << output_;
        into_.IsFiles() ? CompareText() : CompareTable();
        NoteFindings(std::get<1>(GetParam()).label, std::get<0>(GetParam()).label, withLongColumns, {found_, changes_});
    }

    void AddTable() {
        TestTable table{from_.TableName("REFSRC"), into_.TableName("REFOUT"), described_};
        if (from_.Kind() == "TEXTPOLL") table.source = "*.csv";
        if (into_.IsFiles()) table.target = into_.Folder() + "/" + into_.TableName("REFOUT");
        table.sourceOwner = from_.Owner();
        table.targetOwner = into_.Owner();
        for (const auto& row : source_) {
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                if (!SpoilsABatch(*trip_, k, CellOf(row[k]))) continue;
                table.where += (table.where.empty() ? "ID Not In (" : ",") + *CellOf(row[0]);
                found_.insert(RowLabel(columns_, Index(row)) + kBatch);
                break;
            }
        }
        if (!table.where.empty()) table.where += ")";
        leftOut_ = static_cast<int>(found_.size());
        session_.tables = {table};
    }
    static std::size_t Index(const std::vector<Value>& row) { return std::stoul(*CellOf(row[0])) - 1; }

    /// The source holds what was put into it.
    void CheckSource(const std::vector<std::string>& refused) const {
        ASSERT_EQ(source_.size() + refused.size(), rows_.size());
        for (const auto& row : source_) {
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                const Cell held = HeldCell(from_.Layout(), columns_[k], rows_[Index(row)][k]);
                const Cell read = ComparedCell(columns_[k], CellOf(row[k]));
                ASSERT_TRUE(held == read) << "source, row " << Index(row) + 1 << ", " << columns_[k].name << " "
                                          << described_[k].type << ": " << Shown(held) << " read " << Shown(read);
            }
        }
    }

    void CompareTable() {
        const Values target = into_.Read("REFOUT", columns_);
        const auto arrived = ById(target);
        int missing = 0;
        std::map<std::string, std::string> differences;  // of a column, the first one
        for (const auto& row : source_) {
            const auto at = arrived.find(IdOf(row));
            if (at == arrived.end()) {
                ++missing;
                const std::string label = RowLabel(columns_, Index(row));
                if (!found_.contains(label + kBatch)) found_.insert(label);
                continue;
            }
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                const Cell expected = CarriedCell(*trip_, k, CellOf(row[k]), changes_);
                const Cell actual = ComparedCell(columns_[k], CellOf((*at->second)[k]));
                if (expected == actual) continue;
                differences.try_emplace(columns_[k].name, "row " + IdOf(row) + ", " + columns_[k].name + " " +
                                                              described_[k].type + ": " + Shown(expected) + " became " +
                                                              Shown(actual) + "\n");
            }
        }
        for (const auto& [column, difference] : differences) ADD_FAILURE() << difference;
        EXPECT_EQ(missing, failures_ + leftOut_) << Failures();
        EXPECT_EQ(target.size() + static_cast<std::size_t>(missing), source_.size());
    }
    /// What the log reports, each text once, with how often.
    std::string Failures() const {
        std::map<std::string, int> texts;
        const std::string head = "Error Loading Row\r\n";
        for (std::size_t at = log_.find(head); at != std::string::npos; at = log_.find(head, at + 1)) {
            const std::size_t begin = at + head.size();
            ++texts[log_.substr(begin, std::min<std::size_t>(log_.find("\r\n", begin) - begin, 250))];
        }
        std::string all;
        for (const auto& [text, count] : texts) all += std::to_string(count) + " times " + text + "\n";
        return all.empty() ? log_.substr(0, 1000) : all;
    }

    void CompareText() {
        const CodePage page(1252);
        std::string expected;
        int failures = 0;
        for (std::size_t k = 0; k < columns_.size() && !into_.IsFixed(); ++k)
            expected += (k == 0 ? "" : ",") + std::string(columns_[k].name);
        if (!into_.IsFixed()) expected += "\r\n";
        for (const auto& row : source_) {
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                std::string encoded;
                const std::string cell = into_.IsFixed() ? FixedCell(k, row[k]) : DelimitedCell(k, row[k]);
                const bool refused = !ErrorOf([&] { page.Encode(encoded, cell); }).empty();
                failures += refused;
                if (refused) found_.insert(RowLabel(columns_, Index(row)));
                if (refused && into_.IsFixed())
                    encoded = std::string(static_cast<std::size_t>(described_[k].width), ' ');
                expected += (k == 0 || into_.IsFixed() ? "" : ",") + encoded;
            }
            expected += "\r\n";
        }
        const std::string written = ReadBytes(into_.Folder() + "/" + into_.TableName("REFOUT"));
        const auto differs = std::mismatch(expected.begin(), expected.end(), written.begin(), written.end());
        if (differs.first != expected.end() || differs.second != written.end()) {
            const auto at = static_cast<std::size_t>(differs.first - expected.begin());
            const std::size_t before = at > 80 ? at - 80 : 0;
            ADD_FAILURE() << "expected\n"
                          << expected.substr(before, 200) << "\nwritten\n"
                          << written.substr(before, 200);
        }
        EXPECT_EQ(failures_, failures) << Failures();
    }
    void NoteChange(bool changed, std::size_t k, const char* why) {
        if (changed) changes_.insert(std::string(columns_[k].name) + ": " + why);
    }
    void NoteFraction(std::size_t k, const Value& value) {
        const bool fraction = value.Kind() == ValueKind::DateTime && value.AsDateTime().micros % 1'000'000 != 0;
        NoteChange(fraction, k, "a text has no fraction of a second");
    }
    std::string DelimitedCell(std::size_t k, const Value& value) {
        if (value.IsNull()) return "";
        NoteFraction(k, value);
        std::string cell;
        AppendTextCell(cell, value);
        return cell;
    }
    std::string FixedCell(std::size_t k, const Value& value) {
        NoteFraction(k, value);
        const bool fromText = session_.sourceKind == "TEXT";
        if (described_[k].type == "Boolean" && !fromText) {
            NoteChange(value.IsNull(), k, "a Null is written False");
            return !value.IsNull() && CellOf(value) == "1" ? "True " : "False";
        }
        const FixedLayout layout = FixedLayoutOf(described_[k], fromText);
        const bool isText = value.Kind() == ValueKind::Text;
        std::string text = value.IsNull() ? "" : isText ? std::string(value.AsText()) : NumericText(value);
        if (!layout.signBlank && !isText && text.starts_with(' ')) text.erase(0, 1);
        const int stated = value.IsNull() && layout.nullWidth > 0 ? layout.nullWidth : layout.width;
        const auto width = static_cast<std::size_t>(stated);
        const std::size_t length = CharacterCount(text);
        if (layout.cut && length > width) {
            NoteChange(true, k, "a number is cut to the width of its type");
            return text.substr(0, width);
        }
        const std::string blanks(width - std::min(width, length), ' ');
        return layout.right ? blanks + text : text + blanks;
    }

    MatrixSide from_, into_;
    std::vector<MatrixColumn> columns_;
    std::vector<TestColumn> described_;
    Rows rows_;
    Values source_;
    std::unique_ptr<MatrixTrip> trip_;
    std::set<std::string> found_;    ///< the rows that were reported
    std::set<std::string> changes_;  ///< and the rules that changed something
    int failures_ = 0, leftOut_ = 0;
};

TEST_P(MatrixTest, RecordByRecord) {
    Carry(true);
}

TEST_P(MatrixTest, ShortColumns) {
    Carry(false);
}

/// Text in fixed widths takes no long columns.
class FixedTextTest : public MatrixTest {};

TEST_P(FixedTextTest, ShortColumns) {
    Carry(false);
}

/// After all pairs: the page that tells of them is the one in the documents.
class PageCheck : public testing::Environment {
public:
    void TearDown() override {
        const std::size_t all = 2 * std::size(kKinds) * kTargets + std::size(kKinds) + kTargets + 1;
        if (NotedTrips() < all) return;  // only some were run
        const std::string path = VARNEL_FIDELITY, page = FidelityPage();
        const char* update = std::getenv("UPDATE_FIDELITY");
        if (update != nullptr && std::string_view(update) == "1") WriteBytes(path, page);
        EXPECT_EQ(ReadBytes(path), page) << "UPDATE_FIDELITY=1 writes the page anew";
    }
};
testing::Environment* const kPageCheck = testing::AddGlobalTestEnvironment(new PageCheck);  // gtest deletes it

std::string PairName(const testing::TestParamInfo<std::tuple<MatrixKind, MatrixKind>>& pair) {
    return std::string(std::get<0>(pair.param).label) + "Into" + std::get<1>(pair.param).label;
}

INSTANTIATE_TEST_SUITE_P(Pairs, MatrixTest,
                         testing::Combine(testing::ValuesIn(kKinds), testing::ValuesIn(kKinds, kKinds + kTargets)),
                         PairName);
INSTANTIATE_TEST_SUITE_P(Into, FixedTextTest, testing::Combine(testing::ValuesIn(kKinds), testing::Values(kFixed)),
                         PairName);
INSTANTIATE_TEST_SUITE_P(From, FixedTextTest,
                         testing::Combine(testing::Values(kFixed), testing::ValuesIn(kKinds, kKinds + kTargets)),
                         PairName);
INSTANTIATE_TEST_SUITE_P(Both, FixedTextTest, testing::Combine(testing::Values(kFixed), testing::Values(kFixed)),
                         PairName);

}  // namespace
}  // namespace varnel
