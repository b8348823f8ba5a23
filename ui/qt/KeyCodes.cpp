#include "ui/qt/KeyCodes.h"

#include <array>

namespace varnel::window {

namespace {

struct NamedKey {
    int key;
    std::int16_t code;
};

constexpr std::array<NamedKey, 22> kNamedKeys = {{
    {Qt::Key_Return, kKeyEnter}, {Qt::Key_Enter, kKeyEnter}, {Qt::Key_Space, kKeySpace},
    {Qt::Key_Backspace, 8},      {Qt::Key_Tab, 9},           {Qt::Key_Backtab, 9},
    {Qt::Key_Shift, 16},         {Qt::Key_Control, 17},      {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},         {Qt::Key_CapsLock, 20},     {Qt::Key_Escape, 27},
    {Qt::Key_PageUp, 33},        {Qt::Key_PageDown, 34},     {Qt::Key_End, 35},
    {Qt::Key_Home, 36},          {Qt::Key_Left, 37},         {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},         {Qt::Key_Down, 40},         {Qt::Key_Insert, 45},
    {Qt::Key_Delete, 46},
}};

bool Between(int key, int first, int last) {
    return key >= first && key <= last;
}

}  // namespace

std::int16_t KeyCodeOf(const QKeyEvent& event) {
    constexpr int kFirstFunctionKey = 112;
    const int key = event.key();
    for (const NamedKey& named : kNamedKeys) {
        if (named.key == key) return named.code;
    }
    if (Between(key, Qt::Key_0, Qt::Key_9) || Between(key, Qt::Key_A, Qt::Key_Z)) return static_cast<std::int16_t>(key);
    if (Between(key, Qt::Key_F1, Qt::Key_F16)) return static_cast<std::int16_t>(kFirstFunctionKey + key - Qt::Key_F1);
    return 0;
}

std::int16_t KeyAsciiOf(const QKeyEvent& event) {
    return event.text().isEmpty() ? std::int16_t{0} : static_cast<std::int16_t>(event.text().front().unicode());
}

std::int16_t ShiftOf(Qt::KeyboardModifiers modifiers) {
    return static_cast<std::int16_t>((modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
                                     (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
                                     (modifiers.testFlag(Qt::AltModifier) ? 4 : 0));
}

std::int16_t ButtonsOf(Qt::MouseButtons buttons) {
    return static_cast<std::int16_t>((buttons.testFlag(Qt::LeftButton) ? 1 : 0) |
                                     (buttons.testFlag(Qt::RightButton) ? 2 : 0) |
                                     (buttons.testFlag(Qt::MiddleButton) ? 4 : 0));
}

}  // namespace varnel::window
