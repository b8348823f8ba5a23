#include "ui/TerminalForm.h"

#include <algorithm>
#include <utility>

#include "platform/Signals.h"
#include "platform/Terminal.h"
#include "ui/CancelQuestion.h"

namespace varnel {

namespace {

constexpr std::chrono::milliseconds kDrawingInterval{100};
constexpr int kRowBurst = 4;
constexpr int kLogBurst = 30;  // log lines are few: one that a long silence follows is written before it begins

constexpr std::string_view kClearLine = "\r\033[K";
constexpr std::string_view kUp = "\033[A";

std::string Forward(int columns) {
    return columns > 0 ? "\033[" + std::to_string(columns) + "C" : "";
}

/// Line ends as LF; what else could steer a terminal becomes a question mark.
void AppendHarmless(std::string& out, std::string_view text) {
    for (const char c : text) {
        if (c == '\r') continue;
        const auto code = static_cast<unsigned char>(c);
        out += (code < 0x20 && c != '\n' && c != '\t') || code == 0x7F ? '?' : c;
    }
}

bool IsContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// "y", "yes", "Yes" and the like.
bool SaysYes(std::string_view answer) {
    return !answer.empty() && (answer.front() == 'y' || answer.front() == 'Y');
}

}  // namespace

TerminalForm::TerminalForm()
    : moving_(OutputIsTerminal()),
      rowDrawings_(kDrawingInterval, kRowBurst),
      logDrawings_(kDrawingInterval, kLogBurst) {}

void TerminalForm::SetCaption(std::string_view text) {
    caption_ = text;
}

void TerminalForm::SetSrcDestLabel(std::string_view text) {
    srcDestLabel_ = text;
}

void TerminalForm::ReplaceLogTxt(std::string_view text) {
    pending_ += '\n';
    AppendLogTxt(text);
}

void TerminalForm::AppendLogTxt(std::string_view text) {
    AppendHarmless(pending_, text);
    stateIsNew_ = true;
    if (moving_) {
        DrawIfDue(logDrawings_);
    } else {
        Draw();
    }
}

void TerminalForm::SetLabel2(std::string_view text) {
    progress_.counter = text;
    stateIsNew_ = true;
}

/// The first thing that a table says of its rows.
void TerminalForm::SetRowProMin(float) {
    progress_ = TableProgress{};
    tableStart_ = Clock::now();
    stateIsNew_ = true;
}

void TerminalForm::SetRowProMax(float value) {
    progress_.maximum = value;
}

void TerminalForm::SetRowProValue(float value) {
    progress_.value = progress_.maximum > 0 ? std::min<double>(value, progress_.maximum) : value;
}

bool TerminalForm::ConfirmCancel() {
    if (!InterruptNoted() || !CanAskAtTerminal()) return true;
    Draw();
    ForgetCancelSignal();
    std::string out;
    TakeStatusOff(out);
    Write(out, std::string("\n") + kCancelQuestion + " (y/N)? ");
    WriteToOutput(out);
    const auto answer = ReadTerminalLine(CancelSignalDescriptor());
    atLineStart_ = answer.has_value();  // the line was ended by whoever answered
    return answer ? SaysYes(*answer) : CancelSignalNoted();
}

void TerminalForm::StayUntilClosed() {
    progress_.counter.clear();
    Draw();
    if (!atLineStart_) WriteToOutput("\n");
    atLineStart_ = true;
}

void TerminalForm::DrawIfDue(RepaintBudget& budget) {
    if (moving_ && stateIsNew_ && budget.Take()) Draw();
}

void TerminalForm::Draw() {
    std::string out;
    TakeStatusOff(out);
    Write(out, Heading());
    Write(out, pending_);
    pending_.clear();
    if (moving_ && !progress_.counter.empty()) PutStatusOn(out);
    WriteToOutput(out);
    stateIsNew_ = false;
}

std::string TerminalForm::Heading() {
    std::string lines;
    for (std::string* text : {&caption_, &srcDestLabel_}) {
        if (!text->empty()) AppendHarmless(lines, "\n" + *text);
        text->clear();
    }
    return lines;
}

/// Writes log text; a line break at the start of a line is none.
void TerminalForm::Write(std::string& out, std::string_view text) {
    if (text.empty()) return;
    if (atLineStart_ && text.front() == '\n') text.remove_prefix(1);
    out += text;
    const std::size_t lineEnd = text.rfind('\n');
    if (atLineStart_ || lineEnd != std::string_view::npos) openColumns_ = 0;
    if (lineEnd != std::string_view::npos) text.remove_prefix(lineEnd + 1);
    openColumns_ += static_cast<int>(
        text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuationByte)));
    atLineStart_ = openColumns_ == 0;
}

void TerminalForm::TakeStatusOff(std::string& out) {
    if (!std::exchange(statusIsOn_, false)) return;
    out += kClearLine;
    if (!atLineStart_) out.append(kUp).append(Forward(openColumns_ % TerminalColumns()));
}

void TerminalForm::PutStatusOn(std::string& out) {
    progress_.seconds = std::chrono::duration<double>(Clock::now() - tableStart_).count();
    if (!atLineStart_) out += '\n';
    out += StatusLine(progress_, TerminalColumns() - 1);
    statusIsOn_ = true;
}

}  // namespace varnel
