// The face of the button, painted onto an image with one unit per pixel, and the colours it is made of.
#include "ui/qt/ButtonFace.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <cmath>

namespace varnel::window {
namespace {

constexpr OleColor Rgb(int r, int g, int b) {
    return r | g << 8 | b << 16;
}

QImage Painted(const std::function<void(QPainter&, const FaceArea&)>& paint, const FaceArea& area) {
    constexpr int kAround = 10;
    QImage image(area.width + kAround, area.height + kAround, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    paint(painter, area);
    return image;
}

TEST(ButtonFace, ALineEveryTenUnitsEachDarkerByThree) {
    const QImage image =
        Painted([](QPainter& painter, const FaceArea& area) { PaintGradient(painter, area, Rgb(200, 200, 200)); },
                {60, 100, 1});
    for (int y = 0; y < 100; ++y) {
        const int grey = 200 - 3 * (y / 10);
        const QColor expected = y % 10 == 0 ? QColor(grey, grey, grey) : QColor(Qt::magenta);
        for (const int x : {0, 30, 59}) EXPECT_EQ(image.pixelColor(x, y), expected) << x << "," << y;
    }
    EXPECT_EQ(image.pixelColor(30, 100), QColor(Qt::black)) << "the lines at the height end in black";
    EXPECT_EQ(image.pixelColor(60, 50), QColor(Qt::magenta)) << "nothing is painted beside the control";
    EXPECT_EQ(image.pixelColor(30, 101), QColor(Qt::magenta));
}

TEST(ButtonFace, TheLinesAtTheHeightGoOnDarkening) {
    const auto lines = FaceLines(Rgb(200, 2, 0), 100);
    ASSERT_EQ(lines.size(), 101U);
    EXPECT_EQ(lines[0], (FaceLine{0, 200, 2, 0}));
    EXPECT_EQ(lines[1], (FaceLine{10, 197, 0, 0})) << "a component below 3 stays at 0";
    EXPECT_EQ(lines[9], (FaceLine{90, 173, 0, 0}));
    EXPECT_EQ(lines[10], (FaceLine{100, 170, 0, 0}));
    EXPECT_EQ(lines[11], (FaceLine{100, 167, 0, 0}));
    EXPECT_EQ(lines[67], (FaceLine{100, 0, 0, 0}));
}

TEST(ButtonFace, TakesColoursApart) {
    EXPECT_EQ(FaceLines(Rgb(1, 2, 3), 0).front(), (FaceLine{0, 1, 2, 3}));
    EXPECT_EQ(FaceLines(0x02040506, 0).front(), (FaceLine{0, 6, 5, 255})) << "more than a byte is left of 0x0204";
    EXPECT_EQ(FaceLines(-1, 0).front(), (FaceLine{0, 255, 255, 0})) << "a colour that could not be translated";
}

TEST(ButtonFace, BordersAreWhiteAndBlackOrAllBlack) {
    constexpr FaceArea kArea{40, 30, 1};
    const auto edges = [](const QImage& image) {
        QString colors;
        for (const QPoint at : {QPoint(20, 0), QPoint(0, 15), QPoint(20, 29), QPoint(39, 15)}) {
            colors += image.pixelColor(at).name() + " ";
        }
        return colors.toStdString();
    };
    EXPECT_EQ(edges(Painted(PaintRaisedBorder, kArea)), "#ffffff #ffffff #000000 #000000 ");
    EXPECT_EQ(edges(Painted(PaintPressedBorder, kArea)), "#000000 #000000 #ff00ff #ff00ff ");
    EXPECT_EQ(Painted(PaintRaisedBorder, kArea).pixelColor(1, 1), QColor(Qt::magenta)) << "half the line is outside";
}

TEST(OleTranslateColor, LooksSystemColoursUpAndLeavesOthers) {
    struct Case {
        std::uint32_t color;
        bool translated;
        QColor expected;
    };
    const QPalette palette = QApplication::palette();
    const Case cases[] = {
        {0x8000000F, true, palette.color(QPalette::Button)},
        {0x80000005, true, palette.color(QPalette::Base)},
        {0x80000011, true, palette.color(QPalette::Disabled, QPalette::WindowText)},
        {0x8000001E, true, palette.color(QPalette::Window)},
        {0x80000019, false, {}},
        {0x8000001F, false, {}},
        {0x80FFFFFF, false, {}},
        {0x81000001, false, {}},
        {0xFFFFFFFF, false, {}},
        {0x01000003, false, {}},
        {0x00102030, true, QColor(0x30, 0x20, 0x10)},
        {0x02102030, true, QColor(0x30, 0x20, 0x10)},
    };
    for (const Case& c : cases) {
        OleColor rgb = 0x123456;
        EXPECT_EQ(OleTranslateColor(static_cast<OleColor>(c.color), rgb), c.translated) << std::hex << c.color;
        const OleColor expected =
            c.translated ? Rgb(c.expected.red(), c.expected.green(), c.expected.blue()) : 0x123456;
        EXPECT_EQ(rgb, expected) << std::hex << c.color;
    }
}

}  // namespace
}  // namespace varnel::window
