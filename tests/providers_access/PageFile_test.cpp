#include "providers/access/PageFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "providers/access/BlankDatabase.h"
#include "tests/providers_access/SampleFiles.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::access {
namespace {

namespace fs = std::filesystem;

class PageFileTest : public testing::Test {
protected:
    void SetUp() override {
        CreateBlankDatabase(path_);
        std::string bytes = ReadBytes(path_).substr(0, 4096);
        for (int page = 1; page < kPages; ++page) bytes.append(4096, static_cast<char>('A' + page % 26));
        WriteBytes(path_, bytes);
        file_ = OpenPageFile(path_, false);
    }
    void Fill(PageNumber page, char letter) {
        const auto bytes = file_->Change(page);
        std::fill(bytes.begin(), bytes.end(), letter);
    }
    void FillInStep(PageNumber page, char letter) {
        Step step(*file_);
        Fill(page, letter);
        step.Keep();
    }
    /// What every byte of the page is; '?' when they differ.
    static char Letter(const PagePin& pin) {
        return std::all_of(pin.get(), pin.get() + 4096, [&](std::uint8_t byte) { return byte == pin[0]; })
                   ? static_cast<char>(pin[0])
                   : '?';
    }
    char At(PageNumber page) { return Letter(file_->Read(page)); }
    char OnDisk(PageNumber page) { return ReadBytes(path_)[page * 4096]; }

    static constexpr int kPages = 100;
    TempFolder folder_;
    std::string path_ = folder_.File("x.mdb");
    std::shared_ptr<PageFile> file_;
};

TEST_F(PageFileTest, NamesWhatIsNotThere) {
    const auto hold = file_->HoldForReading();
    EXPECT_EQ(ErrorOf([&] { file_->Read(100); }), "'" + path_ + "' has no page 100; it ends before page 100");
    EXPECT_EQ(ErrorOf([&] { file_->Change(1); }), "'" + path_ + "' is changed outside a step");
    const PagePin pin = file_->Read(5);
    EXPECT_EQ(ErrorOf([&] { file_->View(pin, 5).U16(4095); }), path_ + ", page 5: no 2 bytes at offset 4095 of 4096");
}

TEST_F(PageFileTest, KeepsOrUndoesAStepWhole) {
    const auto hold = file_->HoldForWriting();
    const PagePin before = file_->Read(3);
    FillInStep(3, 'x');
    {
        Step step(*file_);
        const auto bytes = file_->Change(3);
        const PagePin within = file_->Read(3);
        bytes[0] = 'y';
        EXPECT_EQ(file_->Change(3).data(), bytes.data()) << "stays at its place until the step ends";
        EXPECT_EQ(Letter(within), 'x');
        EXPECT_EQ(At(3), '?');
        Fill(4, 'z');
        EXPECT_EQ(file_->Append(), 100u);
        Fill(100, 'n');
        EXPECT_EQ(At(100), 'n');
    }
    EXPECT_EQ(At(3), 'x');
    EXPECT_EQ(At(4), 'E');
    EXPECT_EQ(Letter(before), 'D');
    EXPECT_EQ(file_->PageCount(), 100u);
    file_->Commit();
    EXPECT_EQ(OnDisk(3), 'x');
    EXPECT_EQ(OnDisk(4), 'E');
}

TEST_F(PageFileTest, LosesWhatWasNotCommittedAtTheEndOfTheHold) {
    auto reading = file_->HoldForReading();
    auto writing = file_->HoldForWriting();
    FillInStep(3, 'x');
    file_->Commit();
    FillInStep(3, 'y');
    Step(*file_).Keep();
    const std::uint64_t generation = file_->Generation();
    writing.reset();
    EXPECT_GT(file_->Generation(), generation);
    EXPECT_EQ(At(3), 'x');
    writing = file_->HoldForWriting();
    FillInStep(3, 'z');
    file_->Rollback();
    EXPECT_EQ(At(3), 'x');
    EXPECT_EQ(OnDisk(3), 'x');
}

/// More changed pages than are kept in memory: they are written under the journal, and still taken back.
TEST_F(PageFileTest, WritesEarlyWhenMuchIsChanged) {
    const std::string before = ReadBytes(path_);
    auto hold = file_->HoldForWriting();
    const auto changeAll = [&] {
        for (PageNumber page = 1; page < 100; ++page) FillInStep(page, 'x');
        for (PageNumber page = 100; page < 4'500; ++page) {
            Step step(*file_);
            ASSERT_EQ(file_->Append(), page);
            Fill(page, static_cast<char>('a' + page % 7));
            step.Keep();
        }
    };
    changeAll();
    EXPECT_GT(fs::file_size(path_), before.size());
    EXPECT_EQ(At(1), 'x');
    EXPECT_EQ(At(4'000), static_cast<char>('a' + 4'000 % 7));
    PageSet pages;
    for (const PageNumber page : {2u, 4'499u}) pages.Add(page);
    const auto frozen = file_->Freeze(pages);
    file_->Rollback();
    EXPECT_EQ(ReadBytes(path_), before);
    EXPECT_EQ(file_->PageCount(), 100u);
    EXPECT_EQ(At(1), 'B');
    EXPECT_EQ(Letter(frozen->Read(4'499)), static_cast<char>('a' + 4'499 % 7)) << "still in memory";
    EXPECT_THAT(ErrorOf([&] { frozen->Read(2); }), testing::HasSubstr("were taken back"));
    changeAll();
    file_->Commit();
    hold.reset();
    const std::string after = ReadBytes(path_);
    ASSERT_EQ(after.size(), 4'500u * 4096);
    EXPECT_EQ(after[99 * 4096 + 4095], 'x');
    EXPECT_EQ(after[4'499 * 4096], static_cast<char>('a' + 4'499 % 7));
}

TEST_F(PageFileTest, SeesWhatOthersWroteBetweenItsHolds) {
    auto hold = file_->HoldForReading();
    EXPECT_EQ(At(3), 'D');
    const std::uint64_t generation = file_->Generation();
    hold.reset();
    std::string bytes = ReadBytes(path_);
    std::fill_n(bytes.begin() + 3 * 4096, 4096, 'o');
    WriteBytes(path_, bytes + std::string(4096, 'p') + "a rest");
    hold = file_->HoldForReading();
    EXPECT_GT(file_->Generation(), generation);
    EXPECT_EQ(At(3), 'o');
    EXPECT_EQ(file_->PageCount(), 101u);
    const auto writing = file_->HoldForWriting();
    {
        Step step(*file_);
        Fill(file_->Append(), 'n');
        step.Keep();
    }
    file_->Commit();
    EXPECT_EQ(ReadBytes(path_).size(), 102u * 4096);
    EXPECT_EQ(OnDisk(101), 'n');
}

TEST_F(PageFileTest, WritesOnlyWhatItMay) {
    for (const char* sample : {"testIndexCodesV1997.mdb", "linkerTestV2007.accdb"})
        EXPECT_THAT(ErrorOf([&] { OpenPageFile(SamplePath(sample).value(), false)->HoldForWriting(); }),
                    testing::HasSubstr("only read"));
    EXPECT_THAT(ErrorOf([&] { OpenPageFile(path_, true)->HoldForWriting(); }), testing::HasSubstr("reading only"));
    std::string encrypted = ReadBytes(path_);
    encrypted[0x3E] = static_cast<char>(encrypted[0x3E] ^ 7);
    WriteBytes(path_, encrypted);
    EXPECT_THAT(ErrorOf([&] { OpenPageFile(path_, false); }), testing::HasSubstr("is an encrypted Access file"));
}

/// Another program has the database open when a byte of the lock file is locked.
TEST_F(PageFileTest, LeavesADatabaseAloneThatAnotherProgramHasOpen) {
    std::string users(128, '\0');
    users.replace(0, 5, "PC-17").replace(32, 5, "Admin").replace(64, 5, "PC-18");
    const std::string lockFile = folder_.Write("x.ldb", users);
    const int other = open(lockFile.c_str(), O_RDWR);
    struct flock range {
        F_WRLCK, SEEK_SET, 0x10000002, 1, 0
    };
    ASSERT_EQ(fcntl(other, F_SETLK, &range), 0);
    const ChildEnd child = InChild([&](const auto& tell) {
        if (ErrorOf([&] { file_->HoldForReading(); }).empty()) tell();
        if (ErrorOf([&] { file_->HoldForWriting(); }) ==
            "'" + path_ + "' is open in another program (machine 'PC-17', user 'Admin') and is not written to")
            tell();
    });
    EXPECT_EQ(child.told, 2u);
    close(other);
    EXPECT_EQ(ErrorOf([&] { file_->HoldForWriting(); }), "") << "left behind, held by nobody";
    EXPECT_EQ(ReadBytes(lockFile), users) << "not ours to remove";
    fs::remove(lockFile);
    auto hold = file_->HoldForWriting();
    EXPECT_EQ(ReadBytes(lockFile).substr(32, 7), std::string("Varnel\0", 7));
    hold.reset();
    EXPECT_FALSE(fs::exists(lockFile));
    EXPECT_FALSE(fs::exists(path_ + "-journal"));
}

}  // namespace
}  // namespace varnel::access
