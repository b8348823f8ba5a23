// The push button of the progress window: it paints its own face, forwards mouse and keyboard to whoever listens, and
// stores its properties in a bag.
#pragma once

#include <QLabel>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ui/qt/ButtonFace.h"
#include "ui/qt/PropertyBag.h"
#include "ui/qt/SystemColors.h"

namespace varnel::window {

/// What a listener may hang itself into. Every argument is passed by reference; positions are in twips, those of a
/// mouse over the caption relative to the caption.
struct PelrinButtonEvents {
    using Mouse = std::function<void(std::int16_t& Button, std::int16_t& Shift, float& X, float& Y)>;
    using Key = std::function<void(std::int16_t& KeyCode, std::int16_t& Shift)>;

    std::function<void()> Click;
    Mouse MouseDown;
    std::function<void()> Resize;
    std::function<void()> Hide;
    Key KeyDown;
    std::function<void(std::int16_t& KeyAscii)> KeyPress;
    Key KeyUp;
    Mouse MouseMove;
    Mouse MouseUp;
};

class PelrinButton : public QWidget {
public:
    /// Paints the face in white, then reads the stored properties.
    explicit PelrinButton(QWidget* parent = nullptr, const PropertyBag& stored = {});

    OleColor BackColor() const { return backColor_; }
    void SetBackColor(OleColor color);
    bool Enabled() const { return isEnabled(); }
    void SetEnabled(bool enabled);
    std::string Caption() const { return Label1.text().toStdString(); }
    void SetCaption(const std::string& caption);
    std::int16_t MousePointer() const { return mousePointer_; }
    void SetMousePointer(std::int16_t pointer);
    QFont Font() const { return Label1.font(); }
    void SetFont(const QFont& font);
    std::string ToolTipText() const { return Label1.toolTip().toStdString(); }
    void SetToolTipText(const std::string& text);
    OleColor ForeColor() const { return foreColor_; }
    void SetForeColor(OleColor color);

    void ReadProperties(const PropertyBag& bag);
    void WriteProperties(PropertyBag& bag) const;
    /// The names under which properties were changed, in order, for the container that saves them.
    const std::vector<std::string>& PropertiesChanged() const { return changed_; }

    /// The RGB value of a colour; -1 when it cannot be translated.
    static OleColor TranslateColor(OleColor color);

    PelrinButtonEvents events;

    QSize sizeHint() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override { PressAt(*event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { PressAt(*event); }
    void mouseReleaseEvent(QMouseEvent* event) override { ReleaseAt(*event); }
    void mouseMoveEvent(QMouseEvent* event) override { MoveAt(*event); }
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void PressAt(const QMouseEvent& event);
    void ReleaseAt(const QMouseEvent& event);
    void MoveAt(const QMouseEvent& event);
    void DrawBorder(bool pressed);
    void PaintFace();
    /// right, down: twips away from the centre.
    void PlaceCaption(int right = 0, int down = 0);
    void PlaceFocusMark();
    FaceArea Area() const;
    void Changed(const char* property) { changed_.emplace_back(property); }

    QLabel Label1{this};  // the caption
    QFrame Shape1{this};  // the focus mark
    OleColor backColor_ = kWhite;
    OleColor foreColor_ = kWhite;
    std::int16_t mousePointer_ = 0;
    bool pressed_ = false;
    bool keyIsDown_ = false;  // Enter or Space went down here
    std::vector<std::string> changed_;
};

}  // namespace varnel::window
