// The face of the button: its lines as arithmetic, and their drawing. Lengths are in the control's units.
#pragma once

#include <QPainter>
#include <vector>

#include "ui/qt/SystemColors.h"

namespace varnel::window {

struct FaceLine {
    int y;
    int r, g, b;  ///< 0 to 255
    bool operator==(const FaceLine&) const = default;
};

/// The horizontal lines of a face of this height, in drawing order: one for every step from 0 to height, ten units
/// further down each until the height is reached, darker by 3 in each component down to 0. rgb: see OleColor, no system
/// colour; -1 counts as any other number.
std::vector<FaceLine> FaceLines(OleColor rgb, int height);

/// Where a face is drawn: its size, and how many of its units make one pixel of the screen before any scaling for
/// finely resolved ones. The painter is scaled so that one of its units is one of the face.
struct FaceArea {
    int width, height;
    int unitsPerPixel;
};

/// Draws FaceLines, each one pixel thick from its y downward.
void PaintGradient(QPainter& painter, const FaceArea& area, OleColor rgb);
/// Lines two pixels thick, centred on the edges: top and left in white, then bottom and right in black.
void PaintRaisedBorder(QPainter& painter, const FaceArea& area);
/// Top and left in black; the rest stays.
void PaintPressedBorder(QPainter& painter, const FaceArea& area);

}  // namespace varnel::window
