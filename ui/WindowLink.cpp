#include "ui/WindowLink.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace varnel {

namespace {

constexpr std::chrono::milliseconds kRowsInterval{33}, kEventsInterval{10};
constexpr int kBurst = 4;
/// What may wait for a window that is slow to listen; with more the run waits for it.
constexpr std::size_t kPatience = 1 << 20;

}  // namespace

WindowLink::WindowLink(ProcessLink window, bool* cancelRequested)
    : window_(std::move(window)),
      cancelRequested_(cancelRequested),
      rowNews_(kRowsInterval, kBurst),
      events_(kEventsInterval, kBurst) {}

void WindowLink::SetLabel2(std::string_view text) {
    label2_ = text;
    label2IsNew_ = true;
}

void WindowLink::RefreshLabel2() {
    if (label2IsNew_ && window_.IsOpen() && rowNews_.Take()) SayRows();
}

void WindowLink::SetRowProMin(float value) {
    if (window_.IsOpen()) AppendCall(unsent_, FormCall::SetRowProMin, value);
}

void WindowLink::SetRowProMax(float value) {
    if (window_.IsOpen()) AppendCall(unsent_, FormCall::SetRowProMax, value);
}

void WindowLink::DoEvents() {
    if (!window_.IsOpen() || !events_.Take()) return;
    if (label2IsNew_ && rowNews_.Take()) SayRows();
    Send(Wait::No);
    while (Hear(Wait::No)) {
    }
    while (asking_) Hear(Wait::Yes);
}

void WindowLink::StayUntilClosed() {
    if (!window_.IsOpen()) return;
    staying_ = true;
    if (label2IsNew_) SayRows();
    AppendCall(unsent_, FormCall::StayUntilClosed);
    Send(Wait::Yes);
    while (window_.IsOpen()) Hear(Wait::Yes);
}

void WindowLink::Say(FormCall call, std::string_view text) {
    if (!window_.IsOpen()) return;
    AppendCall(unsent_, call, text);
    Send(Wait::No);
}

void WindowLink::SayRows() {
    label2IsNew_ = false;
    AppendCall(unsent_, FormCall::SetRowProValue, rowProValue_);
    AppendCall(unsent_, FormCall::SetLabel2, label2_);
    Say(FormCall::RefreshLabel2);
}

/// Sends what waits, or of it what the window takes at once.
void WindowLink::Send(Wait wait) {
    const std::string_view unsent = unsent_;
    const std::size_t tooMuch = unsent.size() - std::min(unsent.size(), kPatience);
    std::size_t sent = window_.Send(unsent.substr(0, tooMuch), Wait::Yes);
    sent += window_.Send(unsent.substr(tooMuch), wait);
    unsent_.erase(0, sent);
    NoteLoss();
}

/// Takes what the window says; false when it said nothing, and when it is gone.
bool WindowLink::Hear(Wait wait) {
    char words[16];
    const std::size_t count = window_.Receive(words, sizeof words, wait);
    for (std::size_t k = 0; k < count; ++k) {
        const auto word = static_cast<WindowWord>(words[k]);
        if (word == WindowWord::Cancelled && !staying_) *cancelRequested_ = true;
        asking_ = word == WindowWord::Asking;
    }
    NoteLoss();
    return count > 0;
}

/// What is waited for at the end of a run is news before it.
void WindowLink::NoteLoss() {
    if (window_.IsOpen() || std::exchange(lost_, true)) return;
    if (!staying_) std::fputs("varnel: the window is gone; the run goes on without it\n", stderr);
    unsent_.clear();
    asking_ = false;
}

}  // namespace varnel
