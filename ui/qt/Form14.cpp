#include "ui/qt/Form14.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QSocketNotifier>
#include <QTextCursor>
#include <QVBoxLayout>

#include "ui/CancelQuestion.h"
#include "ui/qt/Twips.h"

namespace varnel::window {

namespace {

constexpr int kFormWidth = 9000, kFormHeight = 6600, kMargin = 180;  // twips
constexpr OleColor kButtonColor = 0x00F0C8A0;                        // a light blue

PropertyBag ButtonProperties(const char* caption, const char* toolTip) {
    PropertyBag bag;
    bag.WriteProperty<std::string>("Caption", caption, "");
    bag.WriteProperty<OleColor>("BackColor", kButtonColor, kButtonFaceColor);
    bag.WriteProperty<std::string>("ToolTipText", toolTip, "");
    return bag;
}

}  // namespace

Form14::Form14(bool* cancelRequested, int signalDescriptor)
    : cancelRequested_(cancelRequested), signalDescriptor_(signalDescriptor) {
    setWindowTitle("Varnel Runtime");
    setWindowIcon(PictureIcon());
    NameControls();
    SetUpTitle();
    SetUpLog();
    SetUpButtons();
    LayOut();
}

void Form14::NameControls() {
    setObjectName("Form14");
    Image2.setObjectName("Image2");
    Line1.setObjectName("Line1");
    Label1.setObjectName("Label1");
    SrcDestLabel.setObjectName("SrcDestLabel");
    LogTxt.setObjectName("LogTxt");
    Label2.setObjectName("Label2");
    Label3.setObjectName("Label3");
    Label4.setObjectName("Label4");
    RowPro.setObjectName("RowPro");
    CnclButton.setObjectName("CnclButton");
    FinishButt.setObjectName("FinishButt");
    LogTxt.setAccessibleName("Log");
    RowPro.setAccessibleName("Rows loaded");
}

void Form14::SetUpTitle() {
    constexpr int kPoints = 20, kShadow = 30;
    QFont font("Arial", kPoints);
    font.setBold(true);
    for (QLabel* label : {&Label3, &Label4}) {
        label->setFont(font);
        label->adjustSize();
    }
    Label4.move(ToPixels(kShadow), ToPixels(kShadow));
    Label4.setForegroundRole(QPalette::Mid);
    title_.setFixedSize(Label3.size() + QSize(ToPixels(kShadow), ToPixels(kShadow)));
    Image2.setFixedSize(title_.height() * 3 / 2, title_.height() * 3 / 2);
    Line1.setFrameStyle(QFrame::HLine | QFrame::Sunken);
}

void Form14::SetUpLog() {
    LogTxt.setReadOnly(true);
    LogTxt.setUndoRedoEnabled(false);
    LogTxt.setTabChangesFocus(true);
    LogTxt.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    for (QLabel* label : {&SrcDestLabel, &Label2}) label->setTextFormat(Qt::PlainText);
    RowPro.setTextVisible(false);
}

void Form14::SetUpButtons() {
    CnclButton.ReadProperties(ButtonProperties("Cancel", "Asks, then stops the load"));
    FinishButt.ReadProperties(ButtonProperties("Finish", "Closes this window; a load goes on without it"));
    CnclButton.events.Click = [this] { CancelClick(); };
    FinishButt.events.Click = [this] { close(); };
    for (PelrinButton* button : {&CnclButton, &FinishButt}) button->setFixedSize(button->sizeHint());
    setTabOrder(&CnclButton, &FinishButt);
    setTabOrder(&FinishButt, &LogTxt);
    CnclButton.setFocus();
}

void Form14::LayOut() {
    auto* head = new QHBoxLayout;
    head->addWidget(&Image2);
    head->addSpacing(ToPixels(kMargin));
    head->addWidget(&title_);
    head->addStretch();
    auto* names = new QHBoxLayout;
    names->addWidget(&Label1);
    names->addWidget(&SrcDestLabel, 1);
    auto* foot = new QHBoxLayout;
    foot->addWidget(&Label2, 1);
    foot->addWidget(&CnclButton);
    foot->addSpacing(ToPixels(kMargin));
    foot->addWidget(&FinishButt);

    auto* all = new QVBoxLayout(this);
    const int margin = ToPixels(kMargin);
    all->setContentsMargins(margin, margin, margin, margin);
    all->addLayout(head);
    all->addWidget(&Line1);
    all->addLayout(names);
    all->addWidget(&LogTxt, 1);
    all->addWidget(&RowPro);
    all->addLayout(foot);
    resize(ToPixels(kFormWidth), ToPixels(kFormHeight));
}

void Form14::AppendToLog(const QString& text) {
    QTextCursor end(LogTxt.document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
}

void Form14::ShowEndOfLog() {
    LogTxt.moveCursor(QTextCursor::End);
}

void Form14::CancelClick() {
    if (!runIsOver_) {
        if (asking) asking(true);
        *cancelRequested_ = ConfirmsCancel();
        if (asking) asking(false);
        if (!*cancelRequested_) return;
    }
    close();
}

bool Form14::ConfirmsCancel() {
    QMessageBox question(QMessageBox::NoIcon, kCancelTitle, kCancelQuestion, QMessageBox::Yes | QMessageBox::No, this);
    question.setDefaultButton(QMessageBox::No);
    if (signalDescriptor_ >= 0) {
        auto* signal = new QSocketNotifier(signalDescriptor_, QSocketNotifier::Read, &question);
        QObject::connect(signal, &QSocketNotifier::activated, &question, &QMessageBox::reject);
    }
    return question.exec() == QMessageBox::Yes;
}

void Form14::closeEvent(QCloseEvent* event) {
    event->accept();
    if (closed) std::exchange(closed, nullptr)();
}

}  // namespace varnel::window
