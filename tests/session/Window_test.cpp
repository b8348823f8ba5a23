// The real program with its window on a display, and a person's hands on the window.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "tests/session/SlowSession.h"
#include "tests/support/XServer.h"

namespace varnel {
namespace {

constexpr const char* kTitle = "Varnel Runtime:Running Session :1";
constexpr int kMany = 20'000, kFew = 1'500;  // rows: many are never finished before somebody has clicked

const Way kRowTransfer{"RowTransfer", "ACCESS"};

class WindowTest : public SlowSessionTest {
protected:
    void SetUp() override {
        if (!XServer::Available()) GTEST_SKIP() << "Xvfb or xdotool is not installed";
        if (!std::filesystem::exists(VARNEL_WINDOW_MODULE)) GTEST_SKIP() << "the window was not built";
        display_ = std::make_unique<XServer>();
        setenv("DISPLAY", display_->Display().c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
    }
    /// Starts session 1 and waits until its window is there and rows are loaded.
    std::unique_ptr<RunningProgram> StartInWindow() {
        auto program = StartShown();
        EXPECT_TRUE(program->WaitUntil([this] { return IsLoading(); })) << Content("output.txt");
        window_ = display_->WindowTitled(kTitle);
        EXPECT_NE(window_, "") << Content("output.txt");
        return program;
    }
    void ClickFinish() const { display_->ClickFromCorner(window_, 65, 28); }
    void ClickCancel() const { display_->ClickFromCorner(window_, 188, 28); }
    /// Waits for the question and answers it by a key: alt+y or alt+n.
    void Answer(const std::string& key) const {
        const std::string question = display_->WindowTitled("Cancel Loading");
        ASSERT_NE(question, "") << "nothing was asked";
        display_->Type(question, key);
        EXPECT_TRUE(Eventually([&] { return !display_->HasWindow("Cancel Loading"); }));
    }
    /// The run goes on: rows come in.
    bool MoreRowsCome() {
        const auto before = std::filesystem::file_size(Path("target.db"));
        return Eventually([&] { return std::filesystem::file_size(Path("target.db")) > before || IsOver(); });
    }

    std::unique_ptr<XServer> display_;
    std::string window_;
};

class WindowCancelTest : public WindowTest, public testing::WithParamInterface<Way> {};

TEST_P(WindowCancelTest, AYesStopsTheRunAndEndsTheProgram) {
    Prepare(GetParam(), kMany);
    const auto program = StartInWindow();
    ClickCancel();
    Answer("alt+y");
    EXPECT_EQ(End(*program), 3) << output_;
    ExpectCancelledInCopy(kMany);
    EXPECT_FALSE(display_->HasWindow("Varnel"));
}

INSTANTIATE_TEST_SUITE_P(Ways, WindowCancelTest,
                         testing::Values(kRowTransfer, Way{"MultiRowTransfer", "MySQL"}, Way{"TextExport", "TEXT"}),
                         [](const auto& way) { return std::string(way.param.name); });

TEST_F(WindowTest, ANoLoadsOnAndTheQuestionCanBeAskedAgain) {
    Prepare(kRowTransfer, kMany);
    const auto program = StartInWindow();
    ClickCancel();
    Answer("alt+n");
    EXPECT_TRUE(display_->HasWindow(kTitle));
    EXPECT_FALSE(IsOver());
    ClickCancel();
    Answer("alt+y");
    EXPECT_EQ(End(*program), 3);
    ExpectCancelledInCopy(kMany);
}

TEST_F(WindowTest, ANoAloneChangesNothing) {
    Prepare(kRowTransfer, kFew);
    const auto program = StartInWindow();
    ClickCancel();
    Answer("Return");  // No is preselected
    ASSERT_TRUE(Eventually([this] { return IsOver(); }, 120));
    ClickFinish();
    EXPECT_EQ(End(*program), 0);
    ExpectWhole(kFew);
}

/// The question is asked while the second table is prepared; the run waits for its answer at that table's first yield.
TEST_F(WindowTest, ACancelBetweenTablesStopsTheNextOneAtItsStart) {
    Prepare({"", "MySQL"}, 300);
    repository_.Execute("update vrtabs set LoadOption='DELETE' where DestTableName='never'");
    target_->Run({"insert into never values (1, 'old')", "lock tables never write, `copy` write"});
    const auto program = StartShown();
    // "copy" is held up as well, so that the window can be found at leisure; then only "never" is.
    window_ = display_->WindowTitled(kTitle);
    target_->Run({"unlock tables", "lock tables never write"});
    ASSERT_TRUE(Eventually([this] { return LogHas("About to delete"); })) << Content("run.log");
    ClickCancel();
    ASSERT_NE(display_->WindowTitled("Cancel Loading"), "") << "a run that is held up holds up its window";
    target_->Run({"unlock tables"});
    Answer("alt+y");
    EXPECT_EQ(End(*program), 3) << log_;
    EXPECT_EQ(InLog(" 100 Rows Loaded"), 1) << log_;
    EXPECT_EQ(Outcome(), "recorded, no error");
    EXPECT_TRUE(LogIsClosed());
}

TEST_F(WindowTest, FinishDuringARunClosesTheWindowAndTheRunGoesOn) {
    Prepare(kRowTransfer, kFew);
    const auto program = StartInWindow();
    ClickFinish();
    ASSERT_TRUE(Eventually([this] { return !display_->HasWindow("Varnel"); }));
    EXPECT_FALSE(IsOver()) << "the run was over before the window was closed";
    EXPECT_EQ(End(*program), 0);
    ExpectWhole(kFew);
}

TEST_F(WindowTest, TheWindowStaysAfterTheRunAndNothingChangesItsStatus) {
    struct Case {
        const char* name;
        std::function<void(const RunningProgram&)> end;
    };
    const Case cases[] = {
        {"finish", [this](const RunningProgram&) { ClickFinish(); }},
        {"cancel", [this](const RunningProgram&) { ClickCancel(); }},
        {"keys", [this](const RunningProgram&) { display_->Type(window_, "Tab space"); }},
        {"signal", [](const RunningProgram& program) { program.Signal(SIGTERM); }},
        {"display", [this](const RunningProgram&) { display_->Kill(); }},
    };
    Prepare(kRowTransfer, 10);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove(Path("run.log"));
        target_->Run({"delete from `copy`", "delete from never"});
        const auto program = StartShown();
        ASSERT_TRUE(Eventually([this] { return Outcome() == "recorded, no error" && IsOver(); }));
        window_ = display_->WindowTitled(kTitle);
        ASSERT_NE(window_, "");
        EXPECT_FALSE(Eventually([&] { return program->HasEnded(); }, 1)) << "the window did not stay";
        c.end(*program);
        EXPECT_EQ(End(*program), 0) << output_;
        ExpectWhole(10);
        repository_.Execute("update sessions set LastRunDate=null, LastRunTime=null");
    }
}

TEST_F(WindowTest, ARunOutlivesItsDisplay) {
    Prepare(kRowTransfer, kFew);
    const auto program = StartInWindow();
    display_->Kill();
    EXPECT_EQ(End(*program), 0) << output_;
    ExpectWhole(kFew);
}

TEST_F(WindowTest, ASignalDuringTheQuestionWithdrawsItAndCancels) {
    Prepare(kRowTransfer, kMany);
    const auto program = StartInWindow();
    ClickCancel();
    ASSERT_NE(display_->WindowTitled("Cancel Loading"), "");
    program->Signal(SIGTERM);
    EXPECT_EQ(End(*program), 3) << output_;
    ExpectCancelledInCopy(kMany);
}

TEST_F(WindowTest, AnIncompleteSessionIsNamedInTheWindowAllTheSame) {
    session_.tables.clear();
    repository_.Add(session_);
    const auto program = StartShown();
    window_ = display_->WindowTitled(kTitle);
    EXPECT_NE(window_, "");
    ClickFinish();
    EXPECT_EQ(End(*program), 0);
    EXPECT_EQ(log_, "");
}

/// Of a process and of the one that it started, if any.
std::string LoadedLibraries(pid_t process, pid_t& child) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::istringstream(ReadBytes(folder + "/task/" + std::to_string(process) + "/children")) >> child;
    return ReadBytes(folder + "/maps");
}

/// A toolkit that fails takes its process along, which must not be that of the run.
TEST_F(WindowTest, TheToolkitIsLoadedForShowoutputAndBesideTheRun) {
    Prepare(kRowTransfer, kMany);
    for (const bool shown : {false, true}) {
        std::filesystem::remove(Path("run.log"));
        const auto program = shown ? StartInWindow() : Start();
        ASSERT_TRUE(program->WaitUntil([this] { return IsLoading(); }));
        pid_t window = 0, none = 0;
        const std::string ofTheRun = LoadedLibraries(program->Id(), window);
        EXPECT_EQ(window != 0, shown);
        const std::string ofTheWindow = shown ? LoadedLibraries(window, none) : "";
        for (const char* library : {"libQt6Widgets", "libxcb", "varnel-window.so"}) {
            EXPECT_EQ(ofTheRun.find(library), std::string::npos) << library;
            EXPECT_EQ(ofTheWindow.find(library) != std::string::npos, shown) << library;
        }
    }
}

TEST_F(WindowTest, AWindowDoesNotOutliveItsRun) {
    Prepare(kRowTransfer, kMany);
    const auto program = StartInWindow();
    program->Signal(SIGKILL);
    End(*program);
    EXPECT_TRUE(Eventually([this] { return !display_->HasWindow("Varnel"); }));
}

}  // namespace
}  // namespace varnel
