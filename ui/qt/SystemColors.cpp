#include "ui/qt/SystemColors.h"

#include <QGuiApplication>
#include <QPalette>
#include <array>

namespace varnel::window {

namespace {

struct SystemColor {
    QPalette::ColorRole role;
    QPalette::ColorGroup group = QPalette::Active;
};

constexpr std::size_t kUnnamed = 25;  // the one gap among the numbers

/// By system colour number.
constexpr std::array<SystemColor, 31> kSystemColors = {{
    {QPalette::Mid},                             //  0 scroll bar
    {QPalette::Dark},                            //  1 desktop
    {QPalette::Highlight},                       //  2 active title bar
    {QPalette::Mid},                             //  3 inactive title bar
    {QPalette::Window},                          //  4 menu
    {QPalette::Base},                            //  5 window
    {QPalette::Shadow},                          //  6 window frame
    {QPalette::WindowText},                      //  7 menu text
    {QPalette::Text},                            //  8 window text
    {QPalette::HighlightedText},                 //  9 title bar text
    {QPalette::Button},                          // 10 active border
    {QPalette::Button},                          // 11 inactive border
    {QPalette::Dark},                            // 12 application workspace
    {QPalette::Highlight},                       // 13 selection
    {QPalette::HighlightedText},                 // 14 selected text
    {QPalette::Button},                          // 15 button face
    {QPalette::Dark},                            // 16 button shadow
    {QPalette::WindowText, QPalette::Disabled},  // 17 grey text
    {QPalette::ButtonText},                      // 18 button text
    {QPalette::WindowText, QPalette::Disabled},  // 19 inactive title bar text
    {QPalette::Light},                           // 20 button highlight
    {QPalette::Shadow},                          // 21 dark shadow
    {QPalette::Midlight},                        // 22 light edge
    {QPalette::ToolTipText},                     // 23 tool tip text
    {QPalette::ToolTipBase},                     // 24 tool tip
    {QPalette::NoRole},                          // 25
    {QPalette::Link},                            // 26 hot-tracked item
    {QPalette::Highlight},                       // 27 far end of the active title bar
    {QPalette::Mid},                             // 28 far end of the inactive title bar
    {QPalette::Highlight},                       // 29 selected menu item
    {QPalette::Window},                          // 30 menu bar
}};

bool TranslateSystemColor(std::uint32_t number, OleColor& rgb) {
    if (number >= kSystemColors.size() || number == kUnnamed) return false;
    const SystemColor& entry = kSystemColors[number];
    const QColor color = QGuiApplication::palette().color(entry.group, entry.role);
    rgb = color.red() | color.green() << 8 | color.blue() << 16;
    return true;
}

}  // namespace

bool OleTranslateColor(OleColor color, OleColor& rgb) {
    constexpr std::uint32_t kSystem = 0x80, kPaletteIndex = 0x01, kPaletteRgb = 0x02;
    const auto bits = static_cast<std::uint32_t>(color);
    const std::uint32_t form = bits >> 24, value = bits & 0x00FFFFFFU;
    if (form == kSystem) return TranslateSystemColor(value, rgb);
    if (form == kPaletteIndex || form > kPaletteRgb) return false;  // there is no palette to look an index up in
    rgb = static_cast<OleColor>(value);
    return true;
}

}  // namespace varnel::window
