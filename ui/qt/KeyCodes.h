// Keys, mouse buttons and shift states as the control's events number them.
#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <cstdint>

namespace varnel::window {

inline constexpr std::int16_t kKeyEnter = 13, kKeySpace = 32;

/// 13 for Enter, 32 for Space, capital letters and digits by their character, the usual numbers for keys without a
/// character (37 to 40 for arrows, 112 on for F1 …); 0 for any other key.
std::int16_t KeyCodeOf(const QKeyEvent& event);
/// The character that the key typed; 0 for none.
std::int16_t KeyAsciiOf(const QKeyEvent& event);
/// 1 Shift, 2 Ctrl, 4 Alt, added up.
std::int16_t ShiftOf(Qt::KeyboardModifiers modifiers);
/// 1 left, 2 right, 4 middle, added up; 0 for others.
std::int16_t ButtonsOf(Qt::MouseButtons buttons);

}  // namespace varnel::window
