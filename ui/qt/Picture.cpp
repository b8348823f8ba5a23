#include "ui/qt/Picture.h"

#include <QPainterPath>
#include <QPixmap>

namespace varnel::window {

namespace {

constexpr double kSide = 100;  // everything below is drawn in a square of this side

/// A drum with two rings, the sign for a store of data.
void PaintStore(QPainter& painter, double left, double top, const QColor& color) {
    constexpr double kWidth = 40, kHeight = 56, kLid = 14;
    QPainterPath body;
    body.moveTo(left, top + kLid / 2);
    body.lineTo(left, top + kHeight - kLid / 2);
    body.arcTo(left, top + kHeight - kLid, kWidth, kLid, 180, 180);
    body.lineTo(left + kWidth, top + kLid / 2);
    painter.setPen(QPen(color.darker(170), 2));
    painter.setBrush(color);
    painter.drawPath(body);
    painter.setBrush(color.lighter(135));
    painter.drawEllipse(QRectF(left, top, kWidth, kLid));
    painter.setBrush(Qt::NoBrush);
    for (const double ring : {kHeight / 3, kHeight * 2 / 3}) {
        painter.drawArc(QRectF(left, top + ring - kLid / 2, kWidth, kLid), 180 * 16, 180 * 16);
    }
}

void PaintArrow(QPainter& painter) {
    QPainterPath arrow;
    arrow.moveTo(26, 74);
    arrow.cubicTo(30, 96, 52, 98, 62, 88);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xE0, 0x8A, 0x1E), 7, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(arrow);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xE0, 0x8A, 0x1E));
    painter.drawPolygon(QPolygonF({{56, 79}, {76, 78}, {68, 97}}));
}

}  // namespace

void PaintPicture(QPainter& painter, const QRectF& square) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / kSide, square.height() / kSide);
    PaintStore(painter, 6, 8, QColor(0x4A, 0x7F, 0xB5));
    PaintStore(painter, 54, 18, QColor(0x3F, 0x9C, 0x7B));
    PaintArrow(painter);
    painter.restore();
}

QIcon PictureIcon() {
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        PaintPicture(painter, pixmap.rect());
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

void Picture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double side = std::min(width(), height());
    PaintPicture(painter, QRectF((width() - side) / 2, (height() - side) / 2, side, side));
}

}  // namespace varnel::window
