// The button, clicked and typed at as a person does.
#include "ui/qt/PelrinButton.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTest>

#include "ui/qt/Twips.h"

namespace varnel::window {
namespace {

class PelrinButtonTest : public testing::Test {
protected:
    PelrinButtonTest() {
        container_.resize(300, 200);
        button_.setGeometry(20, 20, 120, 40);
        container_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&container_));
        container_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&container_));
        Listen();
    }
    void Listen() {
        const auto mouse = [this](const char* name) {
            return [this, name](std::int16_t& Button, std::int16_t& Shift, float& X, float& Y) {
                heard_ += std::string(name) + "(" + std::to_string(Button) + "," + std::to_string(Shift) + "," +
                          std::to_string(static_cast<int>(X)) + "," + std::to_string(static_cast<int>(Y)) + ") ";
            };
        };
        const auto key = [this](const char* name) {
            return [this, name](std::int16_t& KeyCode, std::int16_t& Shift) {
                heard_ += std::string(name) + "(" + std::to_string(KeyCode) + "," + std::to_string(Shift) + ") ";
            };
        };
        button_.events.Click = [this] { heard_ += "Click "; };
        button_.events.Resize = [this] { heard_ += "Resize "; };
        button_.events.Hide = [this] { heard_ += "Hide "; };
        button_.events.KeyPress = [this](std::int16_t& KeyAscii) {
            heard_ += "KeyPress(" + std::to_string(KeyAscii) + ") ";
        };
        button_.events.MouseDown = mouse("MouseDown");
        button_.events.MouseUp = mouse("MouseUp");
        button_.events.MouseMove = mouse("MouseMove");
        button_.events.KeyDown = key("KeyDown");
        button_.events.KeyUp = key("KeyUp");
    }
    QWidget* Part(const char* name) { return button_.findChild<QWidget*>(name); }
    std::string Heard() { return std::exchange(heard_, ""); }
    /// The colours in the middle of the top and of the bottom edge.
    std::string Border() {
        const QImage image = button_.grab().toImage();
        return (image.pixelColor(60, 0).name() + " " + image.pixelColor(60, 39).name()).toStdString();
    }
    /// How far the caption's middle is from the button's, in pixels.
    QPoint OffCentre() {
        const QRect caption = Part("Label1")->geometry();
        return QPoint(caption.left() + caption.right(), caption.top() + caption.bottom()) -
               QPoint(button_.width() - 1, button_.height() - 1);
    }

    static constexpr const char* kRaised = "#ffffff #000000";
    static constexpr const char* kPressed = "#000000 #000000";
    QWidget container_;
    PelrinButton button_{&container_};
    std::string heard_;
};

TEST_F(PelrinButtonTest, ANewOneHasTheDefaultsAndStoresNothing) {
    EXPECT_EQ(button_.Caption(), "OdrikButton");
    EXPECT_EQ(button_.BackColor(), static_cast<OleColor>(0x8000000FU));
    EXPECT_EQ(button_.ForeColor(), 0xFFFFFF);
    EXPECT_EQ(button_.Font(), container_.font());
    EXPECT_TRUE(button_.Enabled());
    PropertyBag bag;
    button_.WriteProperties(bag);
    EXPECT_TRUE(bag.Values().empty());
    const QImage image = button_.grab().toImage();
    const int face = container_.palette().color(QPalette::Button).red();
    EXPECT_EQ(image.pixelColor(60, 1).red(), face - 2 * 3) << "the line 20 units below the top";
    EXPECT_EQ(Part("Label1")->palette().color(QPalette::WindowText), QColor(Qt::white));
}

TEST_F(PelrinButtonTest, PropertiesComeBackFromTheBag) {
    QFont font("Arial", 17);
    button_.SetBackColor(0x0000C8);
    button_.SetEnabled(false);
    button_.SetCaption("Stop");
    button_.SetMousePointer(11);
    button_.SetFont(font);
    button_.SetToolTipText("tip");
    button_.SetForeColor(0x00FF00);
    EXPECT_EQ(button_.PropertiesChanged(), (std::vector<std::string>{"BackColor", "Enabled", "Caption", "MousePointer",
                                                                     "Font", "ToolTipText", "ForeColor"}));
    PropertyBag bag;
    button_.WriteProperties(bag);
    EXPECT_EQ(bag.Values().size(), 7U);
    const PelrinButton other(&container_, bag);
    EXPECT_EQ(other.BackColor(), 0x0000C8);
    EXPECT_FALSE(other.Enabled());
    EXPECT_EQ(other.Caption(), "Stop");
    EXPECT_EQ(other.MousePointer(), 11);
    EXPECT_EQ(other.cursor().shape(), Qt::WaitCursor);
    EXPECT_EQ(other.Font(), font);
    EXPECT_EQ(other.ToolTipText(), "tip");
    EXPECT_EQ(other.ForeColor(), 0x00FF00);
    EXPECT_TRUE(other.PropertiesChanged().empty());
}

TEST_F(PelrinButtonTest, BackColorRepaintsTheFace) {
    button_.SetBackColor(0x0000C8);
    const QImage image = button_.grab().toImage();
    EXPECT_EQ(image.pixelColor(60, 1).green(), 0);
    EXPECT_NEAR(image.pixelColor(60, 1).red(), 200 - 3, 3);
    EXPECT_NEAR(image.pixelColor(5, 20).red(), 200 - 3 * 20 * kTwipsPerPixel / 10, 3);
    EXPECT_EQ(PelrinButton::TranslateColor(static_cast<OleColor>(0x80000019U)), -1);
}

TEST_F(PelrinButtonTest, TheCaptionStaysCentredAndGreysWithTheButton) {
    for (const char* caption : {"", "Finish", "A rather longer caption"}) {
        button_.SetCaption(caption);
        EXPECT_LE(OffCentre().manhattanLength(), 3) << caption;
    }
    button_.SetFont(QFont("Arial", 16));
    EXPECT_LE(OffCentre().manhattanLength(), 3);
    Heard();
    button_.resize(200, 60);
    EXPECT_LE(OffCentre().manhattanLength(), 3);
    EXPECT_EQ(Heard(), "Resize ");
    button_.SetEnabled(false);
    EXPECT_FALSE(Part("Label1")->isEnabled());
    EXPECT_NE(Part("Label1")->palette().color(QPalette::Disabled, QPalette::WindowText), QColor(Qt::white));
    QTest::mouseClick(&button_, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(Heard(), "");
}

TEST_F(PelrinButtonTest, TheMousePressesAndClicks) {
    QTest::mousePress(&button_, Qt::LeftButton, Qt::ShiftModifier, {10, 4});
    EXPECT_EQ(Heard(), "MouseDown(1,1,150,60) ");
    EXPECT_EQ(Border(), kPressed);
    EXPECT_GT(OffCentre().y(), 0);
    QTest::mouseRelease(&button_, Qt::LeftButton, {}, {12, 4});
    EXPECT_EQ(Heard(), "MouseUp(1,0,180,60) Click ");
    EXPECT_EQ(Border(), kRaised);
    EXPECT_LE(OffCentre().manhattanLength(), 3);
}

TEST_F(PelrinButtonTest, TheCaptionTakesTheMouseLikeTheFace) {
    QTest::mouseClick(Part("Label1"), Qt::LeftButton, {}, {2, 3});
    EXPECT_EQ(Heard(), "MouseDown(1,0,30,45) MouseUp(1,0,30,45) Click ");
    EXPECT_TRUE(button_.hasFocus());
    QTest::mouseMove(Part("Label1"), {4, 4});
    EXPECT_NE(heard_.find("MouseMove(0,0,60,60)"), std::string::npos) << heard_;
}

TEST_F(PelrinButtonTest, OnlyALeftClickThatEndsOnTheButtonClicks) {
    QTest::mousePress(&button_, Qt::LeftButton, {}, {10, 4});
    QTest::mouseRelease(&button_, Qt::LeftButton, {}, {10, 90});
    EXPECT_EQ(Heard(), "MouseDown(1,0,150,60) MouseUp(1,0,150,1350) ");
    QTest::mouseClick(&button_, Qt::RightButton, {}, {10, 4});
    EXPECT_EQ(Heard(), "MouseDown(2,0,150,60) MouseUp(2,0,150,60) ");
}

TEST_F(PelrinButtonTest, EnterAndSpacePressAndClickOtherKeysDoNot) {
    struct Case {
        Qt::Key key;
        const char *down, *up;
        const char* border;
    };
    const Case cases[] = {
        {Qt::Key_Space, "KeyDown(32,0) KeyPress(32) ", "Click KeyUp(32,0) ", kPressed},
        {Qt::Key_Return, "KeyDown(13,0) KeyPress(13) ", "Click KeyUp(13,0) ", kPressed},
        {Qt::Key_A, "KeyDown(65,0) KeyPress(97) ", "KeyUp(65,0) ", kRaised},
        {Qt::Key_F3, "KeyDown(114,0) ", "KeyUp(114,0) ", kRaised},
        {Qt::Key_Left, "KeyDown(37,0) ", "KeyUp(37,0) ", kRaised},
    };
    button_.setFocus();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.down);
        QTest::keyPress(&button_, c.key);
        EXPECT_EQ(Heard(), c.down);
        EXPECT_EQ(Border(), c.border);
        QTest::keyRelease(&button_, c.key);
        EXPECT_EQ(Heard(), c.up);
        EXPECT_EQ(Border(), kRaised);
    }
}

TEST_F(PelrinButtonTest, AKeyThatWentDownElsewhereOrIsHeldDoesNotClick) {
    button_.setFocus();
    QTest::keyRelease(&button_, Qt::Key_Return);
    EXPECT_EQ(Heard(), "KeyUp(13,0) ");
    QTest::keyPress(&button_, Qt::Key_Space);
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, " ", true);
    QCoreApplication::sendEvent(&button_, &repeated);
    EXPECT_EQ(Heard().find("Click"), std::string::npos);
    QTest::keyRelease(&button_, Qt::Key_Space);
    EXPECT_EQ(Heard(), "Click KeyUp(32,0) ");
}

TEST_F(PelrinButtonTest, TheFocusMarkComesAndGoesWithTheFocus) {
    button_.clearFocus();
    EXPECT_FALSE(Part("Shape1")->isVisible());
    button_.setFocus();
    ASSERT_TRUE(Part("Shape1")->isVisible());
    const QRect mark = Part("Shape1")->geometry();
    EXPECT_EQ(mark, QRect(ToPixels(40), ToPixels(40), ToPixels(120 * 15 - 100), ToPixels(40 * 15 - 100)));
    button_.clearFocus();
    EXPECT_FALSE(Part("Shape1")->isVisible());
    Heard();
    button_.hide();
    EXPECT_EQ(Heard(), "Hide ");
}

}  // namespace
}  // namespace varnel::window
