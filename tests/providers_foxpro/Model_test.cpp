// Random changes of a table beside the same changes of a list in memory; the process is ended, or the disk fills, at
// any moment.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <map>
#include <random>

#include "platform/Error.h"
#include "providers/foxpro/FoxProDatabase.h"
#include "providers/foxpro/Verify.h"
#include "tests/providers_foxpro/FoxProTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kColumns = 5;

void MakeModelTable(const std::string& folder) {
    FoxProDatabase(folder).CreateTable("t", {{Column("k", "I"), Column("c", "C", {30}), Column("v", "V", {8}),
                                              Column("n", "N", {9, 2}), Column("m", "M")}});
}

/// One table and what it should hold: live rows by record number.
class Model {
public:
    Model(const std::string& folder, unsigned seed) : table_(FoxProDatabase(folder).OpenTable("t")), random_(seed) {}

    /// One change, or a commit; calls committed after each commit.
    template <class Committed>
    void Step(Committed&& committed) {
        const int choice = Below(100);
        if (choice < 62) {
            AppendRow();
        } else if (choice < 78) {
            UpdateRow();
        } else if (choice < 90) {
            DeleteRow();
        } else if (choice < 91) {
            table_->DeleteAll();
            rows_.clear();
            records_ = 0;
        } else {
            table_->Commit();
            committed();
        }
    }

    void Commit() { table_->Commit(); }
    Lines Rows() const {
        Lines lines;
        for (const auto& row : rows_) lines.push_back(LineOf(row.second));
        return lines;
    }
    Lines TableRowsNow() { return RowsOf(*table_); }

private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    Value RandomValue(std::size_t column) {
        if (Below(8) == 0) return Value();
        switch (column) {
            case 0:
                return Value::OfInteger(Below(1'000'000) - 500'000);
            case 3:
                return Value::OfCurrency(std::int64_t{Below(1'000'000)} * 100);
            default:
                return Value::OfText(RandomText(column == 1 ? 30 : column == 2 ? 8 : Below(40) == 0 ? 90'000 : 300));
        }
    }

    std::string RandomText(int longest) {
        std::string text(static_cast<std::size_t>(Below(longest + 1)), 'x');
        for (char& c : text) c = static_cast<char>('a' + Below(26));
        return text;
    }

    void AppendRow() {
        std::vector<Value> row(kColumns);
        for (std::size_t k = 0; k < kColumns; ++k) row[k] = RandomValue(k);
        Add(*table_, row);
        rows_[++records_] = std::move(row);
    }

    /// A live record; 0 when there is none.
    std::int64_t AnyRow() {
        if (rows_.empty()) return 0;
        auto row = rows_.lower_bound(Below(static_cast<int>(records_)) + 1);
        return row == rows_.end() ? rows_.begin()->first : row->first;
    }

    void UpdateRow() {
        const std::int64_t number = AnyRow();
        if (number == 0) return;
        std::vector<Value> row = rows_[number];
        std::vector<bool> assigned(kColumns);
        for (std::size_t k = 0; k < kColumns; ++k) {
            assigned[k] = Below(2) == 0;
            if (assigned[k]) row[k] = RandomValue(k);
        }
        table_->Update(number, row, assigned);
        rows_[number] = std::move(row);
    }

    void DeleteRow() {
        const std::int64_t number = AnyRow();
        if (number == 0) return;
        table_->Delete(number);
        rows_.erase(number);
    }

    std::unique_ptr<TableFile> table_;
    std::minstd_rand random_;
    std::map<std::int64_t, std::vector<Value>> rows_;
    std::int64_t records_ = 0;
};

constexpr int kSteps = 400, kKilledSteps = 200;

TEST(FoxProModel, RandomChangesAreSeenAtOnceAndStay) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        const TempFolder folder;
        MakeModelTable(folder.Path());
        Lines expected;
        {
            Model model(folder.Path(), seed);
            for (int step = 1; step <= kSteps; ++step) {
                model.Step([] {});
                if (step % 40 != 0) continue;
                ASSERT_EQ(Difference(model.TableRowsNow(), model.Rows()), "") << seed << " " << step;
            }
            model.Commit();
            expected = model.Rows();
        }
        ASSERT_EQ(Difference(RowsOfFile(folder.File("t.dbf")), expected), "") << seed;
        ASSERT_EQ(VerifyTable(folder.File("t.dbf")), Lines{}) << seed;
    }
}

TEST(FoxProModel, AKilledProcessLeavesACommitPoint) {
    for (unsigned seed = 11; seed <= 12; ++seed) {
        std::vector<Lines> points(1);  // the rows at each commit point
        {
            const TempFolder folder;
            MakeModelTable(folder.Path());
            Model model(folder.Path(), seed);
            for (int step = 0; step < kKilledSteps; ++step) model.Step([&] { points.push_back(model.Rows()); });
        }
        bool finished = false;
        for (int moment = 1; !finished; moment += moment < 20 ? 1 : 11) {
            const TempFolder folder;
            MakeModelTable(folder.Path());
            const ChildEnd child = InChild([&](const auto& tell) {
                EndAtMoment(moment);
                Model model(folder.Path(), seed);
                for (int step = 0; step < kKilledSteps; ++step) model.Step(tell);
            });
            finished = child.status == 0;
            const std::size_t commits = child.told;
            ASSERT_LT(commits, points.size());
            const Lines rows = RowsOfFile(folder.File("t.dbf"));
            const bool isNext = commits + 1 < points.size() && rows == points[commits + 1];
            ASSERT_TRUE(rows == points[commits] || isNext)
                << "seed " << seed << ", moment " << moment << ": " << Difference(rows, points[commits]);
        }
    }
}

TEST(FoxProModel, AFullDiskLosesNoAcceptedRow) {
    signal(SIGXFSZ, SIG_IGN);
    const TempFolder folder;
    MakeModelTable(folder.Path());
    const auto table = FoxProDatabase(folder.Path()).OpenTable("t");
    Lines accepted;
    int refused = 0;
    struct rlimit old {};
    getrlimit(RLIMIT_FSIZE, &old);
    const struct rlimit small { 600'000, old.rlim_max };
    setrlimit(RLIMIT_FSIZE, &small);
    for (int k = 0; k < 20'000; ++k) {
        const std::string text = "row " + std::to_string(k);
        const std::string words = ErrorOf([&] {
            Add(*table, {Value::OfInteger(k), Value::OfText(text), Value(), Value(), Value::OfText(text)});
        });
        if (words.empty()) accepted.push_back(std::to_string(k) + "|" + text + "|||" + text);
        if (!words.empty()) ++refused;
        if (k % 1000 == 999) ErrorOf([&] { table->Commit(); });
    }
    EXPECT_NE(ErrorOf([&] { table->Commit(); }), "");
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_GT(refused, 1000);
    EXPECT_GT(accepted.size(), 1000u);
    table->Commit();
    EXPECT_EQ(Difference(RowsOf(*table), accepted), "");
    EXPECT_EQ(Difference(RowsOfFile(folder.File("t.dbf")), accepted), "");
}

}  // namespace
}  // namespace varnel::foxpro
