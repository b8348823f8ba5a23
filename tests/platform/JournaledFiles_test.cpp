#include "platform/JournaledFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <set>
#include <vector>

#include "platform/Error.h"
#include "platform/FileLock.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;
using Moment = JournaledFiles::Moment;
using Hold = std::unique_ptr<JournaledFiles::Hold>;

std::vector<std::uint8_t> Bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

void Put(JournaledFiles& files, JournaledFiles::Number number, std::uint64_t at, std::string_view text) {
    files.Write(number, at, Bytes(text));
}

std::string Get(const JournaledFiles& files, JournaledFiles::Number number) {
    std::vector<std::uint8_t> bytes(files.Size(number));
    EXPECT_EQ(files.Read(number, 0, bytes), bytes.size());
    return {bytes.begin(), bytes.end()};
}

/// Name and content of every file, journals left out.
using FolderState = std::vector<std::pair<std::string, std::string>>;

FolderState StateOf(const TempFolder& folder) {
    FolderState state;
    for (const auto& entry : fs::directory_iterator(folder.Path())) {
        const std::string name = entry.path().filename();
        if (!name.ends_with("-journal")) state.emplace_back(name, ReadBytes(entry.path()));
    }
    std::sort(state.begin(), state.end());
    return state;
}

/// Runs work in a child process; returns its exit status, -1 when it ended in another way.
int InChild(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr int kKilled = 77;

/// Ends the process before the k-th step on the disk.
void KillBefore(int k) {
    WatchJournaledFiles([left = k](Moment) mutable {
        if (left-- == 0) _exit(kKilled);
    });
}

class JournaledFilesTest : public testing::Test {
protected:
    void SetUp() override {
        first_ = folder_.Write("a.dat", std::string(10'000, 'a'));
        second_ = folder_.Write("b.dat", std::string(5'000, 'b'));
    }
    void TearDown() override {
        WatchJournaledFiles({});
        SetFileLockPatience(60'000);
    }

    TempFolder folder_;
    std::string first_, second_;
};

/// Changes of every kind over several files, with commit points between them. atCommit: called after each.
void RunScript(const TempFolder& folder, const std::function<void()>& atCommit) {
    const auto files = OpenJournaledFiles(folder.File("a.dat"), false);
    const auto b = files->Attach(folder.File("b.dat"));
    const Hold hold = files->HoldForWriting();
    const auto commit = [&] {
        files->Commit();
        atCommit();
    };
    Put(*files, 0, 4'090, "ACROSS TWO BLOCKS");
    Put(*files, 0, 10'000, std::string(6'000, 'x'));
    Put(*files, b, 4'999, "over the end");
    Put(*files, 0, 4'000, std::string(200, 'A'));
    commit();
    files->Protect(0, 0, 9'000);
    files->Protect(b, 0, 9'000);
    for (int k = 0; k < 3; ++k) Put(*files, 0, 10 * k, "first");
    files->Truncate(b, 1'000);
    Put(*files, b, 3'000, "behind a gap");
    const auto c = files->Create(folder.File("c.dat"));
    Put(*files, c, 0, "new file");
    commit();
    const auto d = files->Create(folder.File("d.dat"));
    Put(*files, d, 5, "d");
    Put(*files, c, 0, "NEW");
    files->Remove(b);
    commit();
    files->Remove(c);
    Put(*files, 0, 0, "last");
    commit();
    Put(*files, 0, 0, "not committed");
    files->Truncate(0, 3);
}

TEST_F(JournaledFilesTest, HoldsACommitPointWhereverTheProcessEnds) {
    const FolderState start = StateOf(folder_);
    std::vector<FolderState> points{start};
    std::vector<int> momentsAtPoint{0};
    int moments = 0;
    WatchJournaledFiles([&](Moment) { ++moments; });
    RunScript(folder_, [&] {
        points.push_back(StateOf(folder_));
        momentsAtPoint.push_back(moments);
    });
    WatchJournaledFiles({});
    EXPECT_EQ(StateOf(folder_), points.back()) << "what was not committed is rolled back";
    ASSERT_EQ(points.size(), 5u);
    ASSERT_GT(moments, 40);

    for (int k = 0; k < moments; ++k) {
        for (const auto& entry : fs::directory_iterator(folder_.Path())) fs::remove(entry.path());
        for (const auto& [name, content] : start) folder_.Write(name, content);
        ASSERT_EQ(InChild([&] {
                      KillBefore(k);
                      RunScript(folder_, [] {});
                  }),
                  kKilled);
        const auto files = OpenJournaledFiles(first_, k % 2 == 0);
        Hold hold = k % 2 == 0 ? files->HoldForReading() : files->HoldForWriting();
        const FolderState found = StateOf(folder_);
        const auto at = std::find(points.begin(), points.end(), found);
        ASSERT_NE(at, points.end()) << "killed before step " << k << ": a state between two commit points";
        const auto point = static_cast<std::size_t>(at - points.begin());
        EXPECT_LE(momentsAtPoint[point], k + 6) << "a commit point that was not reached";
        if (point + 1 < points.size()) {
            EXPECT_GT(momentsAtPoint[point + 1], k) << "killed before step " << k << ": a commit is lost";
        }
        hold.reset();
        EXPECT_TRUE(k % 2 == 0 || !fs::exists(first_ + "-journal"));
    }
}

TEST_F(JournaledFilesTest, PlaysBackAgainWhenThePlayBackIsCutOff) {
    ASSERT_EQ(InChild([&] {
                  const auto files = OpenJournaledFiles(first_, false);
                  const auto b = files->Attach(second_);
                  const Hold hold = files->HoldForWriting();
                  for (int k = 0; k < 2; ++k) Put(*files, k == 0 ? 0 : b, 100, std::string(9'000, 'X'));
                  files->Create(folder_.File("c.dat"));
                  _exit(kKilled);
              }),
              kKilled);
    int cuts = 0;
    const auto readers = [&](int k) {
        return InChild([&] {
            KillBefore(k);
            OpenJournaledFiles(first_, false)->HoldForReading();
        });
    };
    while (readers(cuts) == kKilled) ++cuts;
    EXPECT_GE(cuts, 6);
    EXPECT_EQ(StateOf(folder_), (FolderState{{"a.dat", std::string(10'000, 'a')}, {"b.dat", std::string(5'000, 'b')}}));
}

/// Old bytes are only overwritten when their copies are on the disk, and copies only void when the files are.
TEST_F(JournaledFilesTest, WaitsForTheDiskInTheOrderThatAPowerCutNeeds) {
    bool journalLasts = true, filesLast = true;
    int journalSyncs = 0;
    WatchJournaledFiles([&](Moment moment) {
        switch (moment) {
            case Moment::JournalWrite:
                journalLasts = false;
                break;
            case Moment::JournalSync:
                journalLasts = true;
                ++journalSyncs;
                break;
            case Moment::FileWrite:
                EXPECT_TRUE(journalLasts);
                filesLast = false;
                break;
            case Moment::FileSync:
                filesLast = true;
                break;
            case Moment::JournalReset:
            case Moment::FileRemoval:
                EXPECT_TRUE(filesLast && journalLasts);
        }
    });
    RunScript(folder_, [] {});
    const auto files = OpenJournaledFiles(first_, false);
    const Hold hold = files->HoldForWriting();
    journalSyncs = 0;
    const std::uint64_t end = files->Size(0);
    for (std::uint64_t k = 0; k < 1'000; ++k) Put(*files, 0, end + 8 * k, "appended");
    EXPECT_EQ(journalSyncs, 1) << "appended bytes need no copies";
    files->Commit();
    journalSyncs = 0;
    files->Protect(0, 0, end);
    for (std::uint64_t k = 0; k < end; ++k) Put(*files, 0, k, "z");
    EXPECT_EQ(journalSyncs, 1) << "announced together, waited for once";
}

TEST_F(JournaledFilesTest, RollsBackInTheProcess) {
    const auto files = OpenJournaledFiles(first_, false);
    const auto b = files->Attach(second_);
    const FolderState before = StateOf(folder_);
    Hold reading = files->HoldForReading();
    Hold outer = files->HoldForWriting(), inner = files->HoldForWriting();
    const std::uint64_t generation = files->Generation();
    Put(*files, 0, 5, std::string(20'000, 'X'));
    files->Truncate(b, 0);
    files->Create(folder_.File("c.dat"));
    EXPECT_EQ(files->Size(0), 20'005u);
    files->Rollback();
    EXPECT_GT(files->Generation(), generation);
    EXPECT_EQ(StateOf(folder_), before);
    EXPECT_EQ(files->Size(0), 10'000u);
    Put(*files, b, 0, "kept");
    inner.reset();
    EXPECT_TRUE(files->HeldForWriting());
    files->Commit();
    Put(*files, b, 0, "lost");
    outer.reset();
    EXPECT_FALSE(files->HeldForWriting());
    EXPECT_EQ(Get(*files, b).substr(0, 6), "keptbb");
    EXPECT_EQ(ErrorOf([&] { Put(*files, b, 0, "x"); }), "'a.dat' is not held for writing");
    EXPECT_EQ(ErrorOf([&] { OpenJournaledFiles(second_, true)->HoldForWriting(); }),
              "'" + second_ + "' was opened for reading only");
}

/// The limit on the size of a file stands for a full disk: writes fail, some of them half way.
TEST_F(JournaledFilesTest, KeepsEverythingPendingWhileTheDiskIsFull) {
    EXPECT_EQ(InChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const auto limit = [](rlim_t bytes) {
                      const rlimit value{bytes, RLIM_INFINITY};
                      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &value), 0);
                  };
                  const auto files = OpenJournaledFiles(first_, false);
                  const auto b = files->Attach(second_);
                  const Hold hold = files->HoldForWriting();
                  Put(*files, 0, 0, "one");
                  limit(12'000);  // the journal cannot take the next copy
                  const std::string full = ErrorOf([&] { Put(*files, b, 0, "two"); });
                  EXPECT_EQ(full, "Disk full: '" + first_ + "-journal'");
                  limit(RLIM_INFINITY);
                  Put(*files, b, 0, "two");
                  limit(15'000);
                  EXPECT_EQ(ErrorOf([&] { Put(*files, 0, 10'000, std::string(10'000, 'x')); }),
                            "Disk full: '" + first_ + "'");
                  EXPECT_EQ(files->Size(0), 10'000u);
                  files->Commit();  // the disk is still full
                  EXPECT_EQ(Get(*files, 0), "one" + std::string(9'997, 'a'));
                  EXPECT_EQ(fs::file_size(first_), 10'000u);
                  limit(RLIM_INFINITY);
                  Put(*files, 0, 0, "three");
                  files->Remove(b);
                  limit(4'000);  // not even the marks
                  EXPECT_NE(ErrorOf([&] { files->Commit(); }), "");
                  EXPECT_TRUE(fs::exists(second_));
                  limit(RLIM_INFINITY);
                  files->Commit();
              }),
              0);
    EXPECT_EQ(StateOf(folder_), (FolderState{{"a.dat", "three" + std::string(9'995, 'a')}}));
}

TEST_F(JournaledFilesTest, RefusesAJournalThatIsDamagedOrNotItsOwn) {
    ASSERT_EQ(InChild([&] {
                  const auto files = OpenJournaledFiles(first_, false);
                  const Hold hold = files->HoldForWriting();
                  for (std::uint64_t k = 0; k < 2; ++k) Put(*files, 0, 4'096 * k, "X");
                  _exit(kKilled);
              }),
              kKilled);
    const std::string journal = ReadBytes(first_ + "-journal");
    std::string damaged = journal;
    damaged[9'000] ^= 1;
    WriteBytes(first_ + "-journal", damaged);
    const std::string halfDone = ReadBytes(first_);
    EXPECT_THAT(ErrorOf([&] { OpenJournaledFiles(first_, false)->HoldForReading(); }),
                testing::HasSubstr("is damaged at byte"));
    EXPECT_EQ(ReadBytes(first_), halfDone) << "nothing is half restored";
    WriteBytes(first_ + "-journal", journal + "a torn end");
    OpenJournaledFiles(first_, false)->HoldForReading();
    EXPECT_EQ(ReadBytes(first_), std::string(10'000, 'a'));
    WriteBytes(first_ + "-journal", "something else");
    EXPECT_THAT(ErrorOf([&] { OpenJournaledFiles(first_, false)->HoldForWriting(); }),
                testing::HasSubstr("another program's"));
    EXPECT_EQ(ReadBytes(first_ + "-journal"), "something else");
}

TEST_F(JournaledFilesTest, TellsAReaderWhoMayNotWriteWhatToDo) {
    ASSERT_EQ(InChild([&] {
                  const auto files = OpenJournaledFiles(first_, false);
                  const Hold hold = files->HoldForWriting();
                  Put(*files, 0, 0, "X");
                  _exit(kKilled);
              }),
              kKilled);
    if (geteuid() == 0) {
        EXPECT_EQ(InChild([&] {  // the superuser may write everywhere, so another user reads
                      ASSERT_EQ(chmod(folder_.Path().c_str(), 0755), 0);
                      ASSERT_EQ(setuid(65534), 0);
                      EXPECT_THAT(ErrorOf([&] { OpenJournaledFiles(first_, false)->HoldForReading(); }),
                                  testing::HasSubstr("was left in the middle of a change"));
                  }),
                  0);
    }
    EXPECT_EQ(ReadBytes(first_)[0], 'X');
}

TEST_F(JournaledFilesTest, TakesTurnsWithOtherProcesses) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto files = OpenJournaledFiles(first_, false);
        Hold hold = files->HoldForWriting();
        Put(*files, 0, 0, "child");
        if (write(ready[1], "x", 1) != 1) _exit(1);
        usleep(400'000);
        files->Commit();
        hold.reset();
        hold = files->HoldForReading();
        usleep(300'000);
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    const auto files = OpenJournaledFiles(first_, false);
    SetFileLockPatience(100);
    const std::string busy = ErrorOf([&] { files->HoldForReading(); });
    EXPECT_THAT(busy, testing::StartsWith("'" + first_ + "' is in use; waited 0 seconds (it is being written by "));
    EXPECT_THAT(busy, testing::EndsWith(", process " + std::to_string(child) + ")"));
    SetFileLockPatience(10'000);
    Hold hold = files->HoldForReading();
    EXPECT_EQ(Get(*files, 0).substr(0, 6), "childa");
    SetFileLockPatience(50);
    EXPECT_THAT(ErrorOf([&] { files->HoldForWriting(); }), testing::HasSubstr("another process is reading it"));
    SetFileLockPatience(10'000);
    EXPECT_NO_THROW(hold = files->HoldForWriting());
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    for (const int end : ready) close(end);
}

TEST_F(JournaledFilesTest, SeesAFileThatWasReplacedWhileNobodyHeldIt) {
    const auto files = OpenJournaledFiles(first_, false);
    files->HoldForReading();
    WriteBytes(first_ + ".new", "restored");
    fs::rename(first_ + ".new", first_);
    const Hold hold = files->HoldForWriting();
    EXPECT_EQ(Get(*files, 0), "restored");
    SetFileLockPatience(10);
    EXPECT_THAT(ErrorOf([&] { OpenJournaledFiles(first_, false)->HoldForWriting(); }), testing::HasSubstr("is in use"));
}

}  // namespace
}  // namespace varnel
