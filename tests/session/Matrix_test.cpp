// Every kind of source into every kind of target: each value arrives, is reported, or changes as the table of rules
// for the kinds says.
#include <algorithm>
#include <map>
#include <set>

#include "ado/Ado.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
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
        const Rows rows = MatrixRows(columns_);
        for (const std::string& refused : from_.Fill("REFSRC", columns_, rows)) {
            std::cout << "source refused " << refused.substr(0, 200) << "\n";
        }
        described_ = from_.Describe("REFSRC", columns_);
        source_ = from_.Read("REFSRC", columns_);
        into_.MakeOld("REFOUT");
        TestTable table{from_.TableName("REFSRC"), into_.TableName("REFOUT"), described_};
        if (from_.Kind() == "TEXTPOLL") table.source = "*.csv";
        if (into_.IsFiles()) table.target = into_.Folder() + "/" + into_.TableName("REFOUT");
        table.sourceOwner = from_.Owner();
        table.targetOwner = into_.Owner();
        session_.tables = {table};
        CloseIdleSessions();
        const int status = Run();
        failures_ = InLog("Error Loading Row");
        EXPECT_EQ(status, failures_ > 0 ? 1 : 0) << FirstFailure() << output_;
        if (into_.IsFiles()) return CompareText();
        CompareTable();
    }

    void CompareTable() {
        const Values target = into_.Read("REFOUT", columns_);
        const auto arrived = ById(target);
        int missing = 0;
        std::string differences;
        for (const auto& [id, row] : ById(source_)) {
            const auto at = arrived.find(id);
            if (at == arrived.end()) {
                ++missing;
                continue;
            }
            for (std::size_t k = 0; k < columns_.size(); ++k) {
                const Cell expected =
                    CarriedCell(session_.sourceKind, session_.targetKind, columns_, k, CellOf((*row)[k]));
                const Cell actual = ComparedCell(columns_[k], CellOf((*at->second)[k]));
                if (expected == actual) continue;
                differences += "  " + id + " " + columns_[k].name + " " + described_[k].type + ": " + Shown(expected) +
                               " became " + Shown(actual) + "\n";
            }
        }
        EXPECT_EQ(differences, "");
        EXPECT_EQ(missing, failures_) << log_.substr(0, 6000);
        EXPECT_EQ(target.size() + static_cast<std::size_t>(missing), source_.size());
        if (missing > 0) std::cout << missing << " rows reported: " << log_.substr(0, 4000) << "\n";
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
                failures += !ErrorOf([&] { page.Encode(encoded, cell); }).empty();
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
        EXPECT_EQ(failures_, failures) << log_.substr(0, 3000);
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
    Values source_;
    int failures_ = 0;
};

TEST_P(MatrixTest, RecordByRecord) {
    Carry(true);
}

TEST_P(MatrixTest, ShortColumns) {
    Carry(false);
}

INSTANTIATE_TEST_SUITE_P(Pairs, MatrixTest,
                         testing::Combine(testing::ValuesIn(kKinds), testing::ValuesIn(kKinds, kKinds + kTargets)),
                         [](const auto& pair) {
                             return std::string(std::get<0>(pair.param).label) + "Into" + std::get<1>(pair.param).label;
                         });

}  // namespace
}  // namespace varnel
