// The two ends of the link between a run and its window, a recorder in the window's place.
#include "ui/WindowLink.h"

#include <gtest/gtest.h>

#include <thread>

#include "ui/RecordingForm.h"
#include "ui/WindowServer.h"

namespace varnel {
namespace {

class WindowLinkTest : public testing::Test {
protected:
    ~WindowLinkTest() override { CloseWindow(); }
    /// Lets the window's side run from now on; its end closes the link, as the end of its process does.
    void Serve() {
        server_ = std::thread([this] {
            ServeWindow(ends_.second, window_);
            ends_.second.Close();
        });
    }
    void CloseWindow() {
        if (server_.joinable()) server_.join();
        ends_.second.Close();
    }
    void Stay() {
        run_.StayUntilClosed();
        server_.join();
    }

    std::pair<ProcessLink, ProcessLink> ends_ = ProcessLink::Pair();
    bool cancelRequested_ = false;
    RecordingForm window_;
    WindowLink run_{std::move(ends_.first), &cancelRequested_};
    std::thread server_;
};

TEST_F(WindowLinkTest, WhatIsSaidArrivesInOrder) {
    run_.SetCaption("Varnel Runtime:Running Session :12");
    run_.SetSrcDestLabel("Source DB:ACCESS Target DB:MySQL");
    run_.AppendLogTxt("gone");
    run_.ReplaceLogTxt("Started");
    run_.AppendLogTxt(std::string("\r\n\0and more", 11));
    run_.ScrollLogTxt();
    run_.RefreshLogTxt();
    run_.SetRowProMin(1);
    run_.SetRowProMax(5000);
    run_.SetRowProValue(6000);
    run_.SetLabel2("6000 of 5000 Rows Loaded");
    run_.RefreshLabel2();
    Serve();
    Stay();
    EXPECT_EQ(window_.caption, "Varnel Runtime:Running Session :12");
    EXPECT_EQ(window_.srcDestLabel, "Source DB:ACCESS Target DB:MySQL");
    EXPECT_EQ(window_.logTxt, std::string("Started\r\n\0and more", 18));
    EXPECT_EQ(window_.scrolls, 1);
    EXPECT_EQ(window_.logTxtRefreshes, 1);
    EXPECT_EQ(window_.rowProMin, 1);
    EXPECT_EQ(window_.rowProMax, 5000);
    EXPECT_EQ(window_.rowPro, std::vector<float>{5000});
    EXPECT_EQ(window_.label2, std::vector<std::string>{"6000 of 5000 Rows Loaded"});
}

TEST_F(WindowLinkTest, RowsAreMergedAndTheLastStateIsShown) {
    Serve();
    constexpr int kRows = 100'000;
    for (int row = 1; row <= kRows; ++row) {
        run_.SetRowProValue(static_cast<float>(row % 100));
        run_.SetLabel2(std::to_string(row));
        run_.RefreshLabel2();
        if (row % 10 == 0) run_.DoEvents();
    }
    Stay();
    EXPECT_LT(window_.label2.size(), 1000U);
    EXPECT_EQ(window_.label2.back(), std::to_string(kRows));
    EXPECT_GT(window_.events, 0);
}

TEST_F(WindowLinkTest, ALogLongerThanTheSocketHoldsWaitsAndIsWhole) {
    const std::string line(1000, 'x');
    for (int k = 0; k < 800; ++k) {
        run_.AppendLogTxt(line);
        run_.ScrollLogTxt();  // nobody listens, and the run goes on
    }
    Serve();
    Stay();
    EXPECT_EQ(window_.logTxt.size(), 800'000U);
    EXPECT_EQ(window_.scrolls, 800);
}

TEST_F(WindowLinkTest, WhatIsSaidBeforeALongSilenceIsNotHeldBack) {
    run_.AppendLogTxt("About to create the table");
    char heard[64];
    const std::size_t count = ends_.second.Receive(heard, sizeof heard, Wait::No);
    EXPECT_TRUE(std::string_view(heard, count).ends_with("About to create the table"));
}

TEST_F(WindowLinkTest, TheRunWaitsWhileAQuestionIsOpenAndHearsTheAnswer) {
    TellRun(ends_.second, WindowWord::Asking);
    std::thread person([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(cancelRequested_);
        TellRun(ends_.second, WindowWord::Answered);
    });
    const auto start = RepaintBudget::Clock::now();
    run_.DoEvents();
    EXPECT_GE(RepaintBudget::Clock::now() - start, std::chrono::milliseconds(40));
    person.join();
    EXPECT_FALSE(cancelRequested_) << "the answer was No";
    TellRun(ends_.second, WindowWord::Asking);
    TellRun(ends_.second, WindowWord::Cancelled);
    run_.DoEvents();
    EXPECT_TRUE(cancelRequested_);
}

TEST_F(WindowLinkTest, ARunGoesOnWithoutItsWindow) {
    TellRun(ends_.second, WindowWord::Asking);
    CloseWindow();
    run_.DoEvents();
    for (int k = 0; k < 10; ++k) {
        run_.SetCaption("anybody?");
        run_.SetLabel2("row");
        run_.RefreshLabel2();
        run_.DoEvents();
    }
    run_.StayUntilClosed();
    EXPECT_FALSE(cancelRequested_);
}

TEST_F(WindowLinkTest, NothingCancelsARunThatIsOver) {
    TellRun(ends_.second, WindowWord::Asking);
    TellRun(ends_.second, WindowWord::Cancelled);
    Serve();
    Stay();
    EXPECT_FALSE(cancelRequested_);
}

}  // namespace
}  // namespace varnel
