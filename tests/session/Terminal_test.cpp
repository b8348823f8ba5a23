// The progress in a terminal: where there is no display, or no window to show on it.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <regex>

#include "tests/session/SlowSession.h"
#include "tests/support/TerminalProgram.h"

namespace varnel {
namespace {

constexpr int kMany = 20'000, kFew = 600;

const Way kRowTransfer{"RowTransfer", "ACCESS"};

class TerminalTest : public SlowSessionTest {
protected:
    TerminalTest() {
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
    }
    std::unique_ptr<TerminalProgram> StartInTerminal() {
        return std::make_unique<TerminalProgram>(Path("varnel"), std::vector<std::string>{"1", "showoutput"},
                                                 folder_.Path());
    }
    int End(TerminalProgram& program) {
        const int status = program.Wait();
        log_ = Content("run.log");
        return status;
    }
    /// Installs the program as a file of its own, far from the window's module.
    void InstallWithoutWindow() const {
        const auto file = std::filesystem::read_symlink(Path("varnel"));
        std::filesystem::copy_file(file, Path("bare"));
    }
    static std::string WithoutTimes(const std::string& text) {
        return std::regex_replace(text, std::regex("[0-9]+/[0-9]+/[0-9]+ [0-9:]+ [AP]M|[0-9]+ Sec"), "T");
    }
};

class TerminalCancelTest : public TerminalTest, public testing::WithParamInterface<Way> {};

TEST_P(TerminalCancelTest, CtrlCAsksAndAYesStopsTheRun) {
    Prepare(GetParam(), kMany);
    const auto program = StartInTerminal();
    ASSERT_TRUE(program->WaitFor(" of 20000 Rows Loaded [")) << program->Output();
    program->Type("\x03");
    ASSERT_TRUE(program->WaitFor("Are you sure to cancel Loading (y/N)? "));
    program->Type("y\n");
    EXPECT_EQ(End(*program), 3) << program->Output();
    ExpectCancelledInCopy(kMany);
}

INSTANTIATE_TEST_SUITE_P(Ways, TerminalCancelTest,
                         testing::Values(kRowTransfer, Way{"MultiRowTransfer", "MySQL"}, Way{"TextExport", "TEXT"}),
                         [](const auto& way) { return std::string(way.param.name); });

TEST_F(TerminalTest, ANoLoadsOnWithLogBarSpeedAndTimeLeft) {
    Prepare(kRowTransfer, kFew);
    const auto program = StartInTerminal();
    for (const char* answer : {"\n", "no\n"}) {
        ASSERT_TRUE(program->WaitFor(" of 600 Rows Loaded ["));
        program->Type("\x03");
        ASSERT_TRUE(program->WaitFor("Are you sure to cancel Loading (y/N)? ")) << program->Output();
        program->Type(answer);
    }
    EXPECT_EQ(End(*program), 0) << program->Output();
    ExpectWhole(kFew);
    const std::string& shown = program->Output();
    for (const char* text :
         {"Varnel Runtime:Running Session :1\r\nSource DB:ACCESS To Target DB:ACCESS\r\nStarted loading",
          "About to Insert Rows from slow to copy", " 600 Rows Loaded", " Time Elapsed :0 Hrs", " 200 Rows Loaded",
          "*******( F.I.N.I.S.H )*********\r\n"}) {
        EXPECT_NE(shown.find(text), std::string::npos) << text << "\n" << shown;
    }
    EXPECT_TRUE(std::regex_search(
        shown, std::regex("[0-9]+ of 600 Rows Loaded \\[#+\\.+\\] +[0-9]+% [0-9,]+ rows/s 0:[0-9]+ left")))
        << shown;
}

TEST_F(TerminalTest, OtherSignalsAndASecondCtrlCAreNotAskedAbout) {
    const std::function<void(TerminalProgram&)> interruptions[] = {
        [](TerminalProgram& program) { kill(program.Id(), SIGTERM); },
        [](TerminalProgram& program) {
            program.Type("\x03");
            ASSERT_TRUE(program.WaitFor("(y/N)? "));
            program.Type("\x03");
        },
    };
    Prepare(kRowTransfer, kMany);
    for (const auto& interrupt : interruptions) {
        std::filesystem::remove(Path("run.log"));
        target_->Run({"delete from `copy`"});
        const auto program = StartInTerminal();
        ASSERT_TRUE(program->WaitFor(" of 20000 Rows Loaded ["));
        interrupt(*program);
        EXPECT_EQ(End(*program), 3) << program->Output();
        ExpectCancelledInCopy(kMany);
    }
}

TEST_F(TerminalTest, WhereTheOutputIsNoTerminalThereArePlainLines) {
    Prepare(kRowTransfer, 25);
    const auto program = StartShown();
    EXPECT_EQ(SessionTest::End(*program), 0);
    EXPECT_EQ(WithoutTimes(output_).substr(output_.find('\n') + 1),
              "Varnel Runtime:Running Session :1\nSource DB:ACCESS To Target DB:ACCESS\nStarted loading at :T\n"
              "About to Insert Rows from slow to copy\n 25 Rows Loaded Time Elapsed :0 Hrs 0 Min T\n"
              "About to Insert Rows from few to never\n 200 Rows Loaded Time Elapsed :0 Hrs 0 Min T\n"
              "End Time is :T\nTotal Time Elapsed for Session:0 Hrs 0 Min T\n*******( F.I.N.I.S.H )*********\n");
    EXPECT_EQ(output_.find("varnel: no window (there is no display"), 0U) << output_;
    ExpectWhole(25);
}

TEST_F(TerminalTest, WithoutItsModuleTheProgramRunsAndShowsTheProgressHere) {
    Prepare(kRowTransfer, 25);
    InstallWithoutWindow();
    setenv("DISPLAY", ":65000", 1);
    EXPECT_EQ(RunningProgram(Path("bare"), {"1"}, folder_.Path(), Path("silent.txt")).Wait(), 0);
    EXPECT_EQ(Content("silent.txt"), "");
    const auto program = StartShown("bare");
    EXPECT_EQ(SessionTest::End(*program), 0);
    EXPECT_EQ(output_.find("varnel: no window (varnel-window.so is not installed)"), 0U) << output_;
    EXPECT_NE(output_.find("\n 25 Rows Loaded"), std::string::npos) << output_;
}

}  // namespace
}  // namespace varnel
