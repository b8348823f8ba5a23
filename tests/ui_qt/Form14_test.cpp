// The window and its two buttons, the question answered.
#include "ui/qt/Form14.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace varnel::window {
namespace {

class Form14Test : public testing::Test {
protected:
    Form14Test() {
        form_.closed = [this] { ++closings_; };
        form_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form_));
        form_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form_));
    }
    /// What is done with the question as soon as it is asked.
    void Answer(const std::function<void(QMessageBox&)>& answer) {
        QTimer::singleShot(0, &form_, [this, answer] {
            auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(question, nullptr) << "nothing was asked";
            ++questions_;
            answer(*question);
        });
    }
    void ClickCancel() { QTest::mouseClick(&form_.CnclButton, Qt::LeftButton); }

    bool cancelRequested_ = false;
    int closings_ = 0, questions_ = 0;
    Form14 form_{&cancelRequested_, -1};
};

TEST_F(Form14Test, HasItsControlsWithTheirTexts) {
    EXPECT_EQ(form_.windowTitle(), "Varnel Runtime");
    EXPECT_FALSE(form_.windowIcon().isNull());
    const std::pair<const char*, const char*> labels[] = {{"Label3", "Varnel Runtime"},
                                                          {"Label4", "Varnel Runtime"},
                                                          {"Label1", "Now Loading Data from "},
                                                          {"SrcDestLabel", "Src DB and Target DB"},
                                                          {"Label2", ""}};
    for (const auto& [name, text] : labels) {
        const auto all = form_.findChildren<QLabel*>(name);
        const bool found = std::any_of(all.begin(), all.end(), [t = text](const QLabel* l) { return l->text() == t; });
        EXPECT_TRUE(found) << name;
    }
    for (const char* name : {"Label3", "Label4"}) EXPECT_EQ(form_.findChild<QLabel*>(name)->font().family(), "Arial");
    EXPECT_EQ(form_.CnclButton.Caption(), "Cancel");
    EXPECT_EQ(form_.FinishButt.Caption(), "Finish");
    EXPECT_EQ(form_.LogTxt.toPlainText(), "");
    for (const char* name : {"Image2", "Line1", "LogTxt", "RowPro"}) {
        ASSERT_NE(form_.findChild<QWidget*>(name), nullptr) << name;
        EXPECT_TRUE(form_.findChild<QWidget*>(name)->isVisible()) << name;
    }
}

TEST_F(Form14Test, CancelAsksWithNoPreselected) {
    Answer([](QMessageBox& question) {
        EXPECT_EQ(question.windowTitle(), "Cancel Loading");
        EXPECT_EQ(question.text(), "Are you sure to cancel Loading");
        EXPECT_EQ(question.icon(), QMessageBox::NoIcon);
        EXPECT_EQ(question.buttons().size(), 2);
        EXPECT_EQ(question.defaultButton(), question.button(QMessageBox::No));
        question.grab().save(VARNEL_PICTURES "/question.png");
        QTest::mouseClick(question.button(QMessageBox::Yes), Qt::LeftButton);
    });
    ClickCancel();
    EXPECT_EQ(questions_, 1);
    EXPECT_TRUE(cancelRequested_);
    EXPECT_EQ(closings_, 1);
    EXPECT_FALSE(form_.isVisible());
}

TEST_F(Form14Test, ANoChangesNothing) {
    const std::function<void(QMessageBox&)> answers[] = {
        [](QMessageBox& q) { QTest::mouseClick(q.button(QMessageBox::No), Qt::LeftButton); },
        [](QMessageBox& q) { QTest::keyClick(&q, Qt::Key_Escape); },
        [](QMessageBox& q) { QTest::keyClick(&q, Qt::Key_Return); },
        [](QMessageBox& q) { q.close(); },
    };
    for (const auto& answer : answers) {
        Answer(answer);
        ClickCancel();
    }
    EXPECT_EQ(questions_, 4);
    EXPECT_FALSE(cancelRequested_);
    EXPECT_EQ(closings_, 0);
    EXPECT_TRUE(form_.isVisible());
}

TEST_F(Form14Test, TheKeyboardReachesEverything) {
    EXPECT_TRUE(form_.CnclButton.hasFocus());
    QTest::keyClick(&form_.CnclButton, Qt::Key_Tab);
    EXPECT_TRUE(form_.FinishButt.hasFocus());
    QTest::keyClick(&form_.FinishButt, Qt::Key_Tab);
    EXPECT_TRUE(form_.LogTxt.hasFocus());
    QTest::keyClick(&form_.LogTxt, Qt::Key_Tab);
    ASSERT_TRUE(form_.CnclButton.hasFocus());
    Answer([](QMessageBox& question) { QTest::keyClick(question.button(QMessageBox::Yes), Qt::Key_Space); });
    QTest::keyClick(&form_.CnclButton, Qt::Key_Return);
    EXPECT_TRUE(cancelRequested_);
}

TEST_F(Form14Test, FinishAndTheFrameCloseWithoutACancel) {
    QTest::mouseClick(&form_.FinishButt, Qt::LeftButton);
    EXPECT_EQ(closings_, 1);
    bool other = false;
    Form14 framed(&other, -1);
    framed.closed = [this] { ++closings_; };
    framed.show();
    framed.close();
    EXPECT_EQ(closings_, 2);
    EXPECT_FALSE(cancelRequested_ || other);
}

TEST_F(Form14Test, AfterTheRunCancelOnlyCloses) {
    form_.EndOfRun();
    ClickCancel();
    EXPECT_EQ(closings_, 1);
    EXPECT_EQ(questions_, 0);
    EXPECT_FALSE(cancelRequested_);
}

}  // namespace
}  // namespace varnel::window
