// The window's own picture: rows on their way from one store of data into another.
#pragma once

#include <QIcon>
#include <QPainter>
#include <QWidget>

namespace varnel::window {

/// Draws the picture into a square.
void PaintPicture(QPainter& painter, const QRectF& square);
/// The picture as an icon in the usual sizes.
QIcon PictureIcon();

/// A widget that shows it, sharp at every resolution.
class Picture : public QWidget {
public:
    explicit Picture(QWidget* parent = nullptr) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace varnel::window
