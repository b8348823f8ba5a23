// The progress window itself: its controls under their names, and what its two buttons do.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QWidget>
#include <functional>

#include "ui/qt/PelrinButton.h"
#include "ui/qt/Picture.h"

namespace varnel::window {

class Form14 : public QWidget {
public:
    /// cancelRequested: set when a cancel is confirmed. signalDescriptor: when it can be read, an open question is
    /// withdrawn as if it had been answered with No; -1 for none.
    Form14(bool* cancelRequested, int signalDescriptor);

    /// From now on Cancel closes the window and asks nothing.
    void EndOfRun() { runIsOver_ = true; }
    /// Adds text to LogTxt behind its last character; only LF ends a line.
    void AppendToLog(const QString& text);
    /// The last line of LogTxt comes into view.
    void ShowEndOfLog();

    /// Called once, when the window was closed in whatever way.
    std::function<void()> closed;
    /// Called with true when a question is opened, and with false when it is answered and the answer noted.
    std::function<void(bool)> asking;

    Picture Image2{this};
    QFrame Line1{this};
    QLabel Label1{"Now Loading Data from ", this};
    QLabel SrcDestLabel{"Src DB and Target DB", this};
    QPlainTextEdit LogTxt{this};
    QLabel Label2{this};
    QProgressBar RowPro{this};
    PelrinButton CnclButton{this};
    PelrinButton FinishButt{this};

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void NameControls();
    void SetUpTitle();
    void SetUpLog();
    void SetUpButtons();
    void LayOut();
    void CancelClick();
    bool ConfirmsCancel();

    QWidget title_{this};
    QLabel Label4{"Varnel Runtime", &title_};  // the shadow of Label3, which lies over it
    QLabel Label3{"Varnel Runtime", &title_};
    bool* cancelRequested_;
    int signalDescriptor_;
    bool runIsOver_ = false;
};

}  // namespace varnel::window
