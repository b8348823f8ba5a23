// The process ends, or the disk is full, at any moment while rows are written: what is found next is one commit point.
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "tests/providers_access/WriteTest.h"
#include "tests/support/ChildProcess.h"

namespace varnel::access {
namespace {

constexpr int kBatches = 4;
constexpr std::size_t kManyPages = 9'000'000;  // bytes; more than may wait in memory for the commit point

/// One commit's worth of changes; the same every time.
void ChangeBatch(TableFile& table, int batch) {
    std::vector<RowId> ids;
    for (const auto rows = table.Rows({}); rows->Next({});) ids.push_back(rows->Current());
    for (std::size_t k = 0; k < ids.size(); ++k) {
        if (k % 7 == 0) Set(table, ids[k], {{2, Txt(std::string(150 + k % 100, 'u'))}});
        if (k % 11 == 3) table.Delete(ids[k]);
    }
    for (int k = 0; k < 30; ++k) {
        const std::size_t size = batch == 2 && k == 15 ? kManyPages : static_cast<std::size_t>(k * k * 7);
        Add(table, {Value(), Int(batch), Txt(std::string(static_cast<std::size_t>(5 * k), 'x')),
                    Value::OfBytes(std::string(size, 'o'))});
    }
}

/// Each row's cells; of long ones their length.
std::string Brief(TableFile& table) {
    std::string text;
    for (const auto& row : ReadColumns(table, {"Id", "Batch", "Name", "Picture"}))
        text += std::to_string(row[0].AsInteger()) + "," + std::to_string(row[1].AsInteger()) + "," +
                std::to_string(row[2].AsText().size()) + "," + std::to_string(row[3].AsBytes().size()) + "\n";
    return text;
}

class KilledTest : public WriteTest {
protected:
    KilledTest() {
        Make("t", "Id COUNTER PRIMARY KEY, Batch LONG, Name TEXT(255), Picture OLEOBJECT");
        database_.reset(), file_.reset();
        std::filesystem::copy_file(path_, start_);
    }
    void StartAnew() {
        database_.reset(), file_.reset();
        std::filesystem::copy_file(start_, path_, std::filesystem::copy_options::overwrite_existing);
    }
    /// Writes all batches, commits after each, and calls committed.
    void WriteAll(const std::function<void(TableFile&)>& committed) {
        Reopen();
        const auto table = database_->OpenTable("t");
        for (int batch = 1; batch <= kBatches; ++batch) {
            ChangeBatch(*table, batch);
            table->Commit();
            committed(*table);
        }
    }
    /// What the file holds is that commit point, or the one after it.
    void ExpectPoint(const std::vector<std::string>& points, std::size_t acknowledged) {
        Reopen();
        const std::string found = Brief(*database_->OpenTable("t"));
        const bool next = acknowledged + 1 < points.size() && found == points[acknowledged + 1];
        EXPECT_TRUE(next || found == points[acknowledged]) << found;
        Verify();
    }

    std::string start_ = folder_.File("start.mdb");
};

TEST_F(KilledTest, TheFileHoldsExactlyOneCommitPoint) {
    std::vector<std::string> points = {""};
    int moments = 0;
    WatchJournaledFiles([&](JournaledFiles::Moment) { ++moments; });
    WriteAll([&](TableFile& table) { points.push_back(Brief(table)); });
    WatchJournaledFiles({});
    ASSERT_GT(moments, 50);
    for (int end = 1; end < moments && !HasFailure(); end += std::max(1, moments / 25)) {
        SCOPED_TRACE("ended at moment " + std::to_string(end) + " of " + std::to_string(moments));
        StartAnew();
        const ChildEnd child = InChild([&](const auto& tell) {
            EndAtMoment(end);
            WriteAll([&](TableFile&) { tell(); });
        });
        EXPECT_EQ(child.status, 7);
        ExpectPoint(points, child.told);
    }
}

TEST_F(KilledTest, AFullDiskCostsNothingThatWasCommitted) {
    std::vector<std::string> points = {""};
    WriteAll([&](TableFile& table) { points.push_back(Brief(table)); });
    for (const bool roomLater : {false, true}) {
        SCOPED_TRACE(roomLater ? "with room later" : "given up");
        StartAnew();
        const ChildEnd child = InChild([&](const auto&) {
            std::signal(SIGXFSZ, SIG_IGN);
            Reopen();
            const auto table = database_->OpenTable("t");
            ChangeBatch(*table, 1);
            table->Commit();
            rlimit limit{};
            getrlimit(RLIMIT_FSIZE, &limit);
            const rlimit small{std::filesystem::file_size(path_) + 300'000, limit.rlim_max};
            setrlimit(RLIMIT_FSIZE, &small);
            const std::string refusal = ErrorOf([&] { ChangeBatch(*table, 2), table->Commit(); });
            if (refusal.find("Disk full") == std::string::npos) std::_Exit(3);
            setrlimit(RLIMIT_FSIZE, &limit);
            if (!roomLater) std::_Exit(0);
            table->Commit();
            folder_.Write("told.txt", Brief(*table));
        });
        EXPECT_EQ(child.status, 0);
        Reopen();
        const std::string found = Brief(*database_->OpenTable("t"));
        EXPECT_EQ(found, roomLater ? ReadBytes(folder_.File("told.txt")) : points[1]);
        Verify();
    }
}

}  // namespace
}  // namespace varnel::access
