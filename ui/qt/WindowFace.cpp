#include "ui/qt/WindowFace.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace varnel::window {

namespace {

constexpr std::chrono::milliseconds kRepaintInterval{33}, kEventsInterval{10};
constexpr int kBurst = 4;
constexpr int kLogBurst = 30;    // log lines are few: one that a long silence follows is on the screen before it begins
constexpr int kBarSteps = 2000;  // more than a screen has pixels for the bar

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// CR LF and a lone CR as LF.
QString LogText(std::string_view text) {
    QString lines = Text(text);
    lines.replace("\r\n", "\n");
    lines.replace('\r', '\n');
    return lines;
}

}  // namespace

WindowFace::WindowFace(std::unique_ptr<QApplication> application, bool* cancelRequested, int signalDescriptor)
    : application_(std::move(application)),
      signalDescriptor_(signalDescriptor),
      form_(cancelRequested, signalDescriptor),
      rowRepaints_(kRepaintInterval, kBurst),
      logRepaints_(kRepaintInterval, kLogBurst),
      events_(kEventsInterval, kBurst) {
    form_.closed = [this] { open_ = false; };
    form_.RowPro.setRange(0, kBarSteps);
    form_.show();
    WaitUntilVisible();
}

/// What is painted before the screen has the window is lost.
void WindowFace::WaitUntilVisible() {
    constexpr std::chrono::milliseconds kLimit{500};
    const auto limit = RepaintBudget::Clock::now() + kLimit;
    const auto stillWaiting = [&] { return !form_.windowHandle()->isExposed() && RepaintBudget::Clock::now() < limit; };
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } while (stillWaiting());
}

void WindowFace::SetCaption(std::string_view text) {
    if (open_) form_.setWindowTitle(Text(text));
}

void WindowFace::SetSrcDestLabel(std::string_view text) {
    if (!open_) return;
    form_.SrcDestLabel.setText(Text(text));
    form_.SrcDestLabel.repaint();
}

void WindowFace::ReplaceLogTxt(std::string_view text) {
    if (!open_) return;
    clearLog_ = true;
    newLog_ = text;
}

void WindowFace::AppendLogTxt(std::string_view text) {
    if (!open_) return;
    newLog_ += text;
    PutOnScreenIfDue(logRepaints_);
}

void WindowFace::ScrollLogTxt() {
    scrollLog_ = true;
    PutOnScreenIfDue(logRepaints_);
}

void WindowFace::RefreshLogTxt() {
    PutOnScreenIfDue(logRepaints_);
}

void WindowFace::SetLabel2(std::string_view text) {
    if (!open_) return;
    label2_ = text;
    label2IsNew_ = true;
}

void WindowFace::RefreshLabel2() {
    PutOnScreenIfDue(rowRepaints_);
}

void WindowFace::SetRowProMin(float value) {
    rowProMin_ = value;
}

void WindowFace::SetRowProMax(float value) {
    rowProMax_ = value;
    rowProValue_ = std::min(rowProValue_, rowProMax_);
}

void WindowFace::SetRowProValue(float value) {
    rowProValue_ = std::min(value, rowProMax_);
}

void WindowFace::DoEvents() {
    if (!open_ || !events_.Take()) return;
    PutOnScreenIfDue(rowRepaints_);
    QCoreApplication::processEvents();
}

void WindowFace::StayUntilClosed() {
    if (!open_) return;
    PutOnScreen();
    form_.EndOfRun();
    QEventLoop loop;
    form_.closed = [&] {
        open_ = false;
        loop.quit();
    };
    std::unique_ptr<QSocketNotifier> signal;
    if (signalDescriptor_ >= 0) {
        signal = std::make_unique<QSocketNotifier>(signalDescriptor_, QSocketNotifier::Read);
        QObject::connect(signal.get(), &QSocketNotifier::activated, &form_, &QWidget::close);
    }
    loop.exec();
}

void WindowFace::PutOnScreenIfDue(RepaintBudget& budget) {
    if (open_ && budget.Take()) PutOnScreen();
}

void WindowFace::PutOnScreen() {
    PutLogOnScreen();
    PutBarOnScreen();
    if (!std::exchange(label2IsNew_, false)) return;
    form_.Label2.setText(Text(label2_));
    form_.Label2.repaint();
}

void WindowFace::PutLogOnScreen() {
    if (!clearLog_ && newLog_.empty() && !scrollLog_) return;
    if (std::exchange(clearLog_, false)) form_.LogTxt.clear();
    form_.AppendToLog(LogText(newLog_));
    newLog_.clear();
    if (std::exchange(scrollLog_, false)) form_.ShowEndOfLog();
    form_.LogTxt.viewport()->repaint();
}

void WindowFace::PutBarOnScreen() {
    const float range = rowProMax_ - rowProMin_;
    const float share = range > 0 ? std::clamp((rowProValue_ - rowProMin_) / range, 0.0F, 1.0F) : 0.0F;
    form_.RowPro.setValue(static_cast<int>(share * kBarSteps));
    form_.RowPro.repaint();
}

}  // namespace varnel::window
