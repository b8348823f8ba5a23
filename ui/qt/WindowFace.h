// The window as the running session speaks to it: what is said is kept, and put on the screen as often as a screen can
// show it.
#pragma once

#include <QApplication>
#include <memory>
#include <string>

#include "ui/ProgressForm.h"
#include "ui/RepaintBudget.h"
#include "ui/qt/Form14.h"

namespace varnel::window {

class WindowFace : public ProgressForm {
public:
    /// Makes the window and shows it. application: made before, owned from now on; null when somebody else owns it.
    WindowFace(std::unique_ptr<QApplication> application, bool* cancelRequested, int signalDescriptor);

    void SetCaption(std::string_view text) override;
    void SetSrcDestLabel(std::string_view text) override;
    void ReplaceLogTxt(std::string_view text) override;
    void AppendLogTxt(std::string_view text) override;
    void ScrollLogTxt() override;
    void RefreshLogTxt() override;
    void SetLabel2(std::string_view text) override;
    void RefreshLabel2() override;
    void SetRowProMin(float value) override;
    void SetRowProMax(float value) override;
    void SetRowProValue(float value) override;
    void DoEvents() override;
    /// A signal is not asked about: whoever sent it may not see the window.
    bool ConfirmCancel() override { return true; }
    void StayUntilClosed() override;

    /// The window; for tests.
    Form14& Window() { return form_; }

private:
    void WaitUntilVisible();
    void PutOnScreenIfDue(RepaintBudget& budget);
    void PutOnScreen();
    void PutLogOnScreen();
    void PutBarOnScreen();

    std::unique_ptr<QApplication> application_;
    int signalDescriptor_;
    Form14 form_;
    bool open_ = true;  // after that everything said is dropped
    RepaintBudget rowRepaints_, logRepaints_, events_;
    std::string newLog_;  // not in LogTxt yet
    bool clearLog_ = false, scrollLog_ = false;
    std::string label2_;
    bool label2IsNew_ = false;
    float rowProMin_ = 0, rowProMax_ = 100, rowProValue_ = 0;
};

}  // namespace varnel::window
