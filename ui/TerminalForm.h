// The progress window drawn in a terminal: the running log, and below it one line with counter, bar, speed and time
// left. Where the output is no terminal, plain lines. It ends with the run and waits for nobody.
#pragma once

#include <string>

#include "ui/ProgressForm.h"
#include "ui/RepaintBudget.h"
#include "ui/StatusLine.h"

namespace varnel {

class TerminalForm : public ProgressForm {
public:
    TerminalForm();

    void SetCaption(std::string_view text) override;
    void SetSrcDestLabel(std::string_view text) override;
    void ReplaceLogTxt(std::string_view text) override;
    void AppendLogTxt(std::string_view text) override;
    void ScrollLogTxt() override {}
    void RefreshLogTxt() override { Draw(); }
    void SetLabel2(std::string_view text) override;
    void RefreshLabel2() override { DrawIfDue(rowDrawings_); }
    void SetRowProMin(float value) override;
    void SetRowProMax(float value) override;
    void SetRowProValue(float value) override;
    void DoEvents() override { DrawIfDue(rowDrawings_); }
    /// Asks for y or n when the signal was Ctrl-C and somebody sits there; anything but yes is a No.
    bool ConfirmCancel() override;
    void StayUntilClosed() override;

private:
    using Clock = RepaintBudget::Clock;

    void Draw();
    void DrawIfDue(RepaintBudget& budget);
    void TakeStatusOff(std::string& out);
    void PutStatusOn(std::string& out);
    void Write(std::string& out, std::string_view text);
    std::string Heading();

    const bool moving_;  // the cursor can be moved: the status line stays below the log
    RepaintBudget rowDrawings_, logDrawings_;
    std::string caption_, srcDestLabel_;  // written before the first log text, or at the end; then empty
    std::string pending_;                 // log text that is not written yet
    bool atLineStart_ = true;             // else the last log line is open: text may be added to it
    int openColumns_ = 0;                 // its length
    bool statusIsOn_ = false;
    bool stateIsNew_ = false;  // something was said since the last drawing
    TableProgress progress_;
    Clock::time_point tableStart_;
};

}  // namespace varnel
