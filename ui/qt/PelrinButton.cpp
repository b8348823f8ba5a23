#include "ui/qt/PelrinButton.h"

#include <array>

#include "ui/qt/KeyCodes.h"
#include "ui/qt/Twips.h"

namespace varnel::window {

namespace {

constexpr const char* kStandardCaption = "OdrikButton";
constexpr std::int16_t kStandardPointer = 0;

/// The pointers by their stored number, the last repeated for numbers beyond.
constexpr std::array<Qt::CursorShape, 16> kPointers = {
    Qt::ArrowCursor,     Qt::ArrowCursor,   Qt::CrossCursor,     Qt::IBeamCursor,
    Qt::ArrowCursor,     Qt::SizeAllCursor, Qt::SizeBDiagCursor, Qt::SizeVerCursor,
    Qt::SizeFDiagCursor, Qt::SizeHorCursor, Qt::UpArrowCursor,   Qt::WaitCursor,
    Qt::ForbiddenCursor, Qt::BusyCursor,    Qt::WhatsThisCursor, Qt::SizeAllCursor};

QColor ColorOf(OleColor rgb) {
    return rgb < 0 ? QColor() : QColor(rgb & 0xFF, rgb >> 8 & 0xFF, rgb >> 16 & 0xFF);
}

bool Presses(std::int16_t KeyCode) {
    return KeyCode == kKeyEnter || KeyCode == kKeySpace;
}

/// Calls a listener, when there is one; it may change the arguments, the button does not look at them again.
template <class Event, class... Arguments>
void Raise(const Event& event, Arguments... arguments) {
    if (event) event(arguments...);
}

}  // namespace

PelrinButton::PelrinButton(QWidget* parent, const PropertyBag& stored) : QWidget(parent) {
    Label1.setObjectName("Label1");
    Label1.setTextFormat(Qt::PlainText);
    Label1.installEventFilter(this);
    Shape1.setObjectName("Shape1");
    Shape1.setFrameStyle(QFrame::Box | QFrame::Plain);
    Shape1.setAttribute(Qt::WA_TransparentForMouseEvents);
    Shape1.hide();
    Label1.raise();
    for (QWidget* part : {static_cast<QWidget*>(this), static_cast<QWidget*>(&Label1)}) part->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    PaintFace();
    ReadProperties(stored);
}

void PelrinButton::SetBackColor(OleColor color) {
    backColor_ = color;
    Changed("BackColor");
    PaintFace();
}

void PelrinButton::SetEnabled(bool enabled) {
    setEnabled(enabled);
    Label1.setEnabled(enabled);
    Changed("Enabled");
}

void PelrinButton::SetCaption(const std::string& caption) {
    Label1.setText(QString::fromStdString(caption));
    setAccessibleName(Label1.text());
    Changed("Caption");
    PlaceCaption();
}

void PelrinButton::SetMousePointer(std::int16_t pointer) {
    mousePointer_ = pointer;
    const bool known = pointer > 0 && static_cast<std::size_t>(pointer) < kPointers.size();
    setCursor(known ? kPointers[static_cast<std::size_t>(pointer)] : Qt::ArrowCursor);
    Changed("MousePointer");
}

void PelrinButton::SetFont(const QFont& font) {
    Label1.setFont(font);
    Changed("Font");
    PlaceCaption();
}

void PelrinButton::SetToolTipText(const std::string& text) {
    Label1.setToolTip(QString::fromStdString(text));
    Changed("ToolTipText");
}

void PelrinButton::SetForeColor(OleColor color) {
    foreColor_ = color;
    QPalette palette = Label1.palette();
    palette.setColor(QPalette::WindowText, ColorOf(TranslateColor(color)));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, ColorOf(TranslateColor(kGrayTextColor)));
    Label1.setPalette(palette);
    Shape1.setPalette(palette);
    Changed("ForeColor");
}

void PelrinButton::ReadProperties(const PropertyBag& bag) {
    const QFont ambient = parentWidget() != nullptr ? parentWidget()->font() : QFont();
    SetBackColor(bag.ReadProperty<OleColor>("BackColor", kButtonFaceColor));
    SetEnabled(bag.ReadProperty("Enabled", true));
    SetCaption(bag.ReadProperty<std::string>("Caption", kStandardCaption));
    SetMousePointer(bag.ReadProperty("MousePointer", kStandardPointer));
    SetFont(bag.ReadProperty("Font", ambient));
    SetToolTipText(bag.ReadProperty<std::string>("ToolTipText", ""));
    SetForeColor(bag.ReadProperty<OleColor>("ForeColor", kWhite));
    changed_.clear();
}

void PelrinButton::WriteProperties(PropertyBag& bag) const {
    const QFont ambient = parentWidget() != nullptr ? parentWidget()->font() : QFont();
    bag.WriteProperty<OleColor>("BackColor", BackColor(), kButtonFaceColor);
    bag.WriteProperty("Enabled", Enabled(), true);
    bag.WriteProperty<std::string>("Caption", Caption(), kStandardCaption);
    bag.WriteProperty("MousePointer", MousePointer(), kStandardPointer);
    bag.WriteProperty("Font", Font(), ambient);
    bag.WriteProperty<std::string>("ToolTipText", ToolTipText(), "");
    bag.WriteProperty<OleColor>("ForeColor", ForeColor(), kWhite);
}

OleColor PelrinButton::TranslateColor(OleColor color) {
    OleColor rgb = 0;
    return OleTranslateColor(color, rgb) ? rgb : -1;
}

QSize PelrinButton::sizeHint() const {
    constexpr int kWidth = 1575, kHeight = 495;
    return {ToPixels(kWidth), ToPixels(kHeight)};
}

FaceArea PelrinButton::Area() const {
    return {width() * kTwipsPerPixel, height() * kTwipsPerPixel, kTwipsPerPixel};
}

void PelrinButton::PaintFace() {
    update();
    PlaceCaption();
}

void PelrinButton::DrawBorder(bool pressed) {
    pressed_ = pressed;
    repaint();
}

void PelrinButton::PlaceCaption(int right, int down) {
    Label1.adjustSize();
    const double left = (ToTwips(width()) - ToTwips(Label1.width())) / 2;
    const double top = (ToTwips(height()) - ToTwips(Label1.height())) / 2;
    Label1.move(ToPixels(left + right), ToPixels(top + down));
    Label1.update();
}

void PelrinButton::PlaceFocusMark() {
    constexpr int kOffset = 40, kLess = 100;
    Shape1.setGeometry(ToPixels(kOffset), ToPixels(kOffset), ToPixels(ToTwips(width()) - kLess),
                       ToPixels(ToTwips(height()) - kLess));
}

void PelrinButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);
    const OleColor back = backColor_ < 0 ? TranslateColor(backColor_) : backColor_;
    PaintGradient(painter, Area(), back);
    PaintRaisedBorder(painter, Area());
    if (pressed_) PaintPressedBorder(painter, Area());
}

void PelrinButton::resizeEvent(QResizeEvent*) {
    Raise(events.Resize);
    PaintFace();
    PlaceFocusMark();
}

void PelrinButton::showEvent(QShowEvent*) {
    PaintFace();
}

void PelrinButton::hideEvent(QHideEvent*) {
    Raise(events.Hide);
}

void PelrinButton::focusInEvent(QFocusEvent*) {
    PlaceFocusMark();
    Shape1.show();
}

void PelrinButton::focusOutEvent(QFocusEvent*) {
    Shape1.hide();
    keyIsDown_ = false;
}

/// The caption takes the mouse like the face around it.
bool PelrinButton::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &Label1 || !isEnabled()) return QWidget::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            PressAt(*static_cast<QMouseEvent*>(event));
            setFocus(Qt::MouseFocusReason);
            return true;
        case QEvent::MouseButtonRelease:
            ReleaseAt(*static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::MouseMove:
            MoveAt(*static_cast<QMouseEvent*>(event));
            return true;
        default:
            return QWidget::eventFilter(watched, event);
    }
}

void PelrinButton::PressAt(const QMouseEvent& event) {
    constexpr int kRight = 4, kDown = 10;
    Raise(events.MouseDown, ButtonsOf(event.button()), ShiftOf(event.modifiers()), ToTwips(event.position().x()),
          ToTwips(event.position().y()));
    PlaceCaption(kRight, kDown);
    DrawBorder(true);
}

void PelrinButton::ReleaseAt(const QMouseEvent& event) {
    Raise(events.MouseUp, ButtonsOf(event.button()), ShiftOf(event.modifiers()), ToTwips(event.position().x()),
          ToTwips(event.position().y()));
    PlaceCaption();
    DrawBorder(false);
    const bool inside = rect().contains(mapFromGlobal(event.globalPosition().toPoint()));
    if (inside && event.button() == Qt::LeftButton) Raise(events.Click);
}

void PelrinButton::MoveAt(const QMouseEvent& event) {
    Raise(events.MouseMove, ButtonsOf(event.buttons()), ShiftOf(event.modifiers()), ToTwips(event.position().x()),
          ToTwips(event.position().y()));
}

void PelrinButton::keyPressEvent(QKeyEvent* event) {
    const std::int16_t code = KeyCodeOf(*event), ascii = KeyAsciiOf(*event);
    if (Presses(code)) {
        keyIsDown_ = true;
        DrawBorder(true);
    }
    Raise(events.KeyDown, code, ShiftOf(event->modifiers()));
    if (ascii != 0) Raise(events.KeyPress, ascii);
    if (!Presses(code)) QWidget::keyPressEvent(event);
}

/// A key that went down elsewhere, in a message box that it closed say, clicks nothing here; nor does one that is held.
void PelrinButton::keyReleaseEvent(QKeyEvent* event) {
    if (event->isAutoRepeat()) return;
    const std::int16_t code = KeyCodeOf(*event), shift = ShiftOf(event->modifiers());
    if (Presses(code)) {
        const bool clicked = std::exchange(keyIsDown_, false);
        DrawBorder(false);
        PlaceCaption();
        if (clicked) Raise(events.Click);
    }
    Raise(events.KeyUp, code, shift);
    QWidget::keyReleaseEvent(event);
}

}  // namespace varnel::window
