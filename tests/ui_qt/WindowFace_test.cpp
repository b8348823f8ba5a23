// What a session says, and what then stands in the window.
#include "ui/qt/WindowFace.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QTest>
#include <QTextBlock>
#include <QTimer>

namespace varnel::window {
namespace {

class WindowFaceTest : public testing::Test {
protected:
    void Say(const std::string& line) {
        face_.AppendLogTxt("\r\n");
        face_.AppendLogTxt(line);
        face_.ScrollLogTxt();
    }
    /// Lets the window put its last state on the screen, as it does when the run is over, and closes it.
    void EndRun() {
        QTimer::singleShot(0, &form_, &QWidget::close);
        face_.StayUntilClosed();
    }
    static double ProcessorSeconds() {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
    }

    bool cancelRequested_ = false;
    WindowFace face_{nullptr, &cancelRequested_, -1};
    Form14& form_ = face_.Window();
};

TEST_F(WindowFaceTest, ShowsWhatIsSaid) {
    face_.SetSrcDestLabel("Source DB:ACCESS To Target DB:MySQL");
    face_.SetCaption("Varnel Runtime:Running Session :12");
    EXPECT_EQ(form_.SrcDestLabel.text(), "Source DB:ACCESS To Target DB:MySQL");
    EXPECT_EQ(form_.windowTitle(), "Varnel Runtime:Running Session :12");
    Say("gone");
    face_.RefreshLogTxt();
    face_.ReplaceLogTxt("Started loading at :11/18/2026 4:23:05 PM");
    Say("About to Insert Rows from Customers to Kunden \xE2\x82\xAC");
    Say(" 120 Rows Loaded");
    face_.AppendLogTxt(" Time Elapsed :0 Hrs 0 Min 3 Sec");
    face_.SetLabel2("120 of 5000 Rows Loaded");
    face_.SetRowProMin(1);
    face_.SetRowProMax(5000);
    face_.SetRowProValue(2500);
    face_.RefreshLabel2();
    EXPECT_EQ(form_.LogTxt.toPlainText(),
              "Started loading at :11/18/2026 4:23:05 PM\nAbout to Insert Rows from Customers to Kunden \u20AC\n"
              " 120 Rows Loaded Time Elapsed :0 Hrs 0 Min 3 Sec");
    EXPECT_EQ(form_.Label2.text(), "120 of 5000 Rows Loaded");
    EXPECT_NEAR(form_.RowPro.value(), form_.RowPro.maximum() / 2, 1);
    const int scale = static_cast<int>(form_.devicePixelRatio());
    const QPixmap picture = form_.grab();
    EXPECT_EQ(picture.size(), scale * form_.size());
    EXPECT_EQ(form_.FinishButt.size(), QSize(105, 33)) << "in pixels that do not depend on the device";
    picture.save(QString(VARNEL_PICTURES "/window%1x.png").arg(scale));
    face_.SetRowProValue(6000);
    EndRun();
    EXPECT_EQ(form_.RowPro.value(), form_.RowPro.maximum()) << "beyond the maximum it stays there";
}

TEST_F(WindowFaceTest, MergesRepaintsButShowsTheLastState) {
    constexpr int kRows = 100'000;
    struct Painted : QObject {
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } painted;
    form_.Label2.installEventFilter(&painted);
    const auto start = RepaintBudget::Clock::now();
    for (int row = 1; row <= kRows; ++row) {
        face_.SetLabel2(std::to_string(row));
        face_.RefreshLabel2();
        if (row % 10 == 0) face_.DoEvents();
    }
    const auto frames = (RepaintBudget::Clock::now() - start) / std::chrono::milliseconds(16);
    EXPECT_GT(painted.count, 1);
    EXPECT_LE(painted.count, frames + 10);
    EndRun();
    EXPECT_EQ(form_.Label2.text(), QString::number(kRows));
}

TEST_F(WindowFaceTest, AHundredThousandLinesStayQuick) {
    constexpr int kLines = 100'000;
    const double before = ProcessorSeconds();
    for (int line = 0; line < kLines; ++line) {
        Say("Error Loading Row:" + std::to_string(line));
        if (line % 10 == 0) face_.DoEvents();
    }
    const double half = ProcessorSeconds();
    for (int line = 0; line < 1000; ++line) {
        Say("another line");
        face_.RefreshLogTxt();
        face_.DoEvents();
    }
    EXPECT_LT(ProcessorSeconds() - half, (half - before) + 1) << "a longer log costs more per line";
    EXPECT_LT(ProcessorSeconds() - before, 30);
    EndRun();
    EXPECT_EQ(form_.LogTxt.blockCount(), 1 + kLines + 1000);
    EXPECT_EQ(form_.LogTxt.textCursor().block().text(), "another line") << "the caret is at the end";
}

TEST_F(WindowFaceTest, AClosedWindowTakesEverythingAndShowsNothing) {
    face_.SetLabel2("before");
    face_.RefreshLabel2();
    form_.close();
    face_.SetCaption("after");
    face_.SetSrcDestLabel("after");
    face_.ReplaceLogTxt("after");
    face_.RefreshLogTxt();
    face_.SetLabel2("after");
    face_.RefreshLabel2();
    face_.SetRowProValue(7);
    face_.DoEvents();
    EXPECT_FALSE(form_.isVisible());
    EXPECT_EQ(form_.Label2.text(), "before");
    EXPECT_EQ(form_.windowTitle(), "Varnel Runtime");
    face_.StayUntilClosed();  // returns
    EXPECT_FALSE(cancelRequested_);
}

TEST(WindowFaceSignals, ASignalClosesTheWindowThatStays) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    bool cancelRequested = false;
    WindowFace face(nullptr, &cancelRequested, ends[0]);
    ASSERT_EQ(write(ends[1], "!", 1), 1);
    face.StayUntilClosed();
    EXPECT_FALSE(face.Window().isVisible());
    EXPECT_FALSE(cancelRequested);
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
}  // namespace varnel::window
