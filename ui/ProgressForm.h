// What the running session may say to the progress window, with no toolkit in it. Writers test ShowOutput first; the
// face behind Form14() is the window, the terminal, nothing at all, or a recorder in tests (OpenForm.h chooses).
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace varnel {

/// The writable sides of the window's controls, in the controls' names.
class ProgressForm {
public:
    virtual ~ProgressForm() = default;

    virtual void SetCaption(std::string_view text) = 0;
    /// SrcDestLabel's caption; the label is repainted at once.
    virtual void SetSrcDestLabel(std::string_view text) = 0;

    /// LogTxt's whole text is replaced.
    virtual void ReplaceLogTxt(std::string_view text) = 0;
    /// LogTxt's text becomes its old text followed directly by text (line breaks are the writer's).
    virtual void AppendLogTxt(std::string_view text) = 0;
    /// The caret goes to the end of LogTxt, so that the newest line is in view.
    virtual void ScrollLogTxt() = 0;
    virtual void RefreshLogTxt() = 0;

    virtual void SetLabel2(std::string_view text) = 0;
    virtual void RefreshLabel2() = 0;

    virtual void SetRowProMin(float value) = 0;
    virtual void SetRowProMax(float value) = 0;
    /// A value beyond the maximum stays at the maximum.
    virtual void SetRowProValue(float value) = 0;

    /// Lets the window repaint and handle its buttons; a confirmed cancel sets CancelRequested in here.
    virtual void DoEvents() = 0;

    /// A signal asks to cancel the run. Returns whether it is to be cancelled: a face with somebody in front of it may
    /// ask, and forgets the signal on a No; every other says yes.
    virtual bool ConfirmCancel() = 0;
    /// The run is over and its outcome recorded. Returns when the face may go: a window when it is closed or a signal
    /// ends it, every other at once. Nothing sets CancelRequested any more.
    virtual void StayUntilClosed() = 0;
};

/// The face in use; the absent one, which drops everything, until UseProgressForm was called.
ProgressForm& Form14();
/// Puts a face in place; null brings the absent one back.
void UseProgressForm(std::unique_ptr<ProgressForm> face);

/// Adds a carriage return, a line feed and text to LogTxt and scrolls to its end.
void AppendWindowLine(std::string_view text);

}  // namespace varnel
