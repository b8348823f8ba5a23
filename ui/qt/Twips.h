// The scale units of forms and controls: 1440 twips to the inch, 96 device-independent pixels to the inch.
#pragma once

#include <cmath>

namespace varnel::window {

inline constexpr int kTwipsPerPixel = 1440 / 96;

constexpr float ToTwips(double pixels) {
    return static_cast<float>(pixels * kTwipsPerPixel);
}

/// The nearest pixel, half a pixel away from zero.
inline int ToPixels(double twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

}  // namespace varnel::window
