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
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

constexpr MatrixKind kKinds[] = {{"Access", "ACCESS", ""},       {"FoxProDir", "FOXPRO", "DIR"},
                                 {"FoxProDbc", "FOXPRO", "DBC"}, {"Oracle", "ORACLE", ""},
                                 {"MySql", "MySQL", ""},         {"SqlServer", "MSSQL", ""},
                                 {"Text", "TEXT", ""},           {"TextPoll", "TEXTPOLL", ""}};
constexpr std::size_t kTargets = 7;  // no session writes into a polled folder

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

class MatrixTest : public SessionTest, public testing::WithParamInterface<std::tuple<MatrixKind, MatrixKind>> {
protected:
    MatrixTest()
        : world_{folder_.Path(), &Server(), SqlServer().ConnectionString()},
          from_(std::get<0>(GetParam()), "from", world_),
          into_(std::get<1>(GetParam()), "into", world_) {
        Names();
        secrets_.emplace_back(TdsServer::kPassword);
        from_.BeSource(session_);
        into_.BeTarget(session_);
    }
    static TdsServer& SqlServer() {
        static TdsServer server;
        return server;
    }
    static void Names() {
        static OdbcNames names;
        static const bool added = (names.AddMariaDb("oracle", Server(), "shop", "ORACLE"), true);
        static_cast<void>(added);
    }

    /// Makes the source's table, runs the session and compares.
    void Carry(bool withLongColumns) {
        columns_ = MatrixColumns(session_.sourceKind, withLongColumns);
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
                const Cell held = HeldCell(session_.sourceKind, columns_[k], rows_[Index(row)][k]);
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
        for (std::size_t k = 0; k < columns_.size(); ++k)
            expected += (k == 0 ? "" : ",") + std::string(columns_[k].name);
        expected += "\r\n";
        for (const auto& row : source_) {
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                std::string cell, encoded;
                if (!row[k].IsNull()) AppendTextCell(cell, row[k]);
                const bool refused = !ErrorOf([&] { page.Encode(encoded, cell); }).empty();
                failures += refused;
                if (refused) found_.insert(RowLabel(columns_, Index(row)));
                expected += (k == 0 ? "" : ",") + encoded;
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
    static void AppendTextCell(std::string& cell, const Value& value) {
        if (value.Kind() != ValueKind::Text) return AppendDefaultText(cell, value);
        const std::string_view text = value.AsText();
        const std::size_t begin = text.find_first_not_of(' '), end = text.find_last_not_of(' ');
        cell += '"';
        if (begin != std::string_view::npos) cell += text.substr(begin, end - begin + 1);
        cell += '"';
    }

    MatrixWorld world_;
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

/// After all pairs: the page that tells of them is the one in the documents.
class PageCheck : public testing::Environment {
public:
    void TearDown() override {
        if (NotedTrips() < 2 * std::size(kKinds) * kTargets) return;  // only some were run
        const std::string path = VARNEL_FIDELITY, page = FidelityPage();
        const char* update = std::getenv("UPDATE_FIDELITY");
        if (update != nullptr && std::string_view(update) == "1") WriteBytes(path, page);
        EXPECT_EQ(ReadBytes(path), page) << "UPDATE_FIDELITY=1 writes the page anew";
    }
};
testing::Environment* const kPageCheck = testing::AddGlobalTestEnvironment(new PageCheck);  // gtest deletes it

INSTANTIATE_TEST_SUITE_P(Pairs, MatrixTest,
                         testing::Combine(testing::ValuesIn(kKinds), testing::ValuesIn(kKinds, kKinds + kTargets)),
                         [](const auto& pair) {
                             return std::string(std::get<0>(pair.param).label) + "Into" + std::get<1>(pair.param).label;
                         });

}  // namespace
}  // namespace varnel
