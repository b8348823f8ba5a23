// The run's side of the link to a window in a process of its own. Whatever becomes of that process, the run goes on.
#pragma once

#include <string>

#include "platform/ProcessLink.h"
#include "ui/FormMessages.h"
#include "ui/ProgressForm.h"
#include "ui/RepaintBudget.h"

namespace varnel {

/// What is said is sent as often as a screen can show it, without ever waiting for the window to draw; only a question
/// that is open there holds the run up.
class WindowLink : public ProgressForm {
public:
    /// window: at its other end is ServeWindow.
    WindowLink(ProcessLink window, bool* cancelRequested);

    void SetCaption(std::string_view text) override { Say(FormCall::SetCaption, text); }
    void SetSrcDestLabel(std::string_view text) override { Say(FormCall::SetSrcDestLabel, text); }
    void ReplaceLogTxt(std::string_view text) override { Say(FormCall::ReplaceLogTxt, text); }
    void AppendLogTxt(std::string_view text) override { Say(FormCall::AppendLogTxt, text); }
    void ScrollLogTxt() override { Say(FormCall::ScrollLogTxt); }
    void RefreshLogTxt() override { Say(FormCall::RefreshLogTxt); }
    void SetLabel2(std::string_view text) override;
    void RefreshLabel2() override;
    void SetRowProMin(float value) override;
    void SetRowProMax(float value) override;
    void SetRowProValue(float value) override { rowProValue_ = value; }
    void DoEvents() override;
    /// A signal is not asked about: whoever sent it may not see the window.
    bool ConfirmCancel() override { return true; }
    void StayUntilClosed() override;

private:
    void Say(FormCall call, std::string_view text = {});
    void SayRows();
    void Send(Wait wait);
    bool Hear(Wait wait);
    void NoteLoss();

    ProcessLink window_;
    bool* cancelRequested_;
    bool asking_ = false;   // a question is open, and the run waits for its answer
    bool lost_ = false;     // its process is gone
    bool staying_ = false;  // the run is over
    std::string unsent_;
    std::string label2_;
    bool label2IsNew_ = false;
    float rowProValue_ = 0;
    RepaintBudget rowNews_, events_;
};

}  // namespace varnel
