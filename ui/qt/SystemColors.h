// Colours as forms store them: 0x00BBGGRR, a palette colour, or a system colour by number (0x80000000 and the number).
#pragma once

#include <cstdint>

namespace varnel::window {

using OleColor = std::int32_t;

inline constexpr OleColor kButtonFaceColor = static_cast<OleColor>(0x8000000FU);
inline constexpr OleColor kGrayTextColor = static_cast<OleColor>(0x80000011U);
inline constexpr OleColor kWhite = 0x00FFFFFF;

/// Puts the RGB value (0x00BBGGRR) that color stands for into rgb; a system colour is the desktop's at this moment.
/// Returns false, rgb untouched, for a number that names no system colour and for a form of colour that does not exist.
bool OleTranslateColor(OleColor color, OleColor& rgb);

}  // namespace varnel::window
