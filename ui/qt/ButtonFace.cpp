#include "ui/qt/ButtonFace.h"

#include <algorithm>

namespace varnel::window {

namespace {

constexpr int kLineDistance = 10, kDarkening = 3, kBorderPixels = 2;

int Clamped(int component) {
    return std::clamp(component, 0, 255);
}

int FloorDivide(int dividend, int divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

void PaintTopAndLeft(QPainter& painter, const FaceArea& area, const QColor& color) {
    const int thick = kBorderPixels * area.unitsPerPixel;
    painter.fillRect(0, -thick / 2, area.width, thick, color);
    painter.fillRect(-thick / 2, 0, thick, area.height, color);
}

void PaintBottomAndRight(QPainter& painter, const FaceArea& area, const QColor& color) {
    const int thick = kBorderPixels * area.unitsPerPixel;
    painter.fillRect(0, area.height - thick / 2, area.width, thick, color);
    painter.fillRect(area.width - thick / 2, 0, thick, area.height, color);
}

}  // namespace

std::vector<FaceLine> FaceLines(OleColor rgb, int height) {
    FaceLine line{0, Clamped(rgb & 0xFF), Clamped(rgb >> 8 & 0xFF), Clamped(FloorDivide(rgb, 0x10000))};
    std::vector<FaceLine> lines;
    for (int step = 0; step <= height; ++step) {
        lines.push_back(line);
        line.y = std::min(line.y + kLineDistance, height);
        for (int* component : {&line.r, &line.g, &line.b}) *component = std::max(0, *component - kDarkening);
    }
    return lines;
}

void PaintGradient(QPainter& painter, const FaceArea& area, OleColor rgb) {
    for (const FaceLine& line : FaceLines(rgb, area.height)) {
        painter.fillRect(0, line.y, area.width, area.unitsPerPixel, QColor(line.r, line.g, line.b));
    }
}

void PaintRaisedBorder(QPainter& painter, const FaceArea& area) {
    PaintTopAndLeft(painter, area, Qt::white);
    PaintBottomAndRight(painter, area, Qt::black);
}

void PaintPressedBorder(QPainter& painter, const FaceArea& area) {
    PaintTopAndLeft(painter, area, Qt::black);
}

}  // namespace varnel::window
