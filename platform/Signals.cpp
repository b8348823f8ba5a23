#include "platform/Signals.h"

#include <csignal>
#include <initializer_list>

namespace varnel {
namespace {

/// Written by the handler, read by CancelSignalNoted.
volatile std::sig_atomic_t signalNoted = 0;

extern "C" void NoteSignal(int number) {
    if (signalNoted != 0) {
        std::signal(number, SIG_DFL);
        std::raise(number);  // delivered as soon as this handler returns
        return;
    }
    signalNoted = 1;
}

}  // namespace

void NoteCancelSignals() {
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction current {};
        sigaction(number, nullptr, &current);
        if (current.sa_handler == SIG_IGN) continue;
        struct sigaction noting {};
        noting.sa_handler = NoteSignal;
        noting.sa_flags = SA_RESTART;
        sigemptyset(&noting.sa_mask);
        sigaction(number, &noting, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool CancelSignalNoted() {
    return signalNoted != 0;
}

void ForgetCancelSignal() {
    signalNoted = 0;
}

}  // namespace varnel
