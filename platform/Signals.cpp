#include "platform/Signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace varnel {
namespace {

/// The noted signal's number; written by the handler.
volatile std::sig_atomic_t signalNoted = 0;

/// A pipe that holds one byte while a signal is noted; open as long as the process lives.
int readEnd = -1, writeEnd = -1;

extern "C" void NoteSignal(int number) {
    if (signalNoted != 0) {
        std::signal(number, SIG_DFL);
        std::raise(number);  // delivered as soon as this handler returns
        return;
    }
    signalNoted = number;
    [[maybe_unused]] const auto written = write(writeEnd, "!", 1);
}

void OpenPipe() {
    int ends[2] = {-1, -1};
    if (readEnd >= 0 || pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd = ends[0];
    writeEnd = ends[1];
}

}  // namespace

void NoteCancelSignals() {
    OpenPipe();
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

bool InterruptNoted() {
    return signalNoted == SIGINT;
}

void ForgetCancelSignal() {
    char byte = 0;
    while (read(readEnd, &byte, 1) == 1) {
    }
    signalNoted = 0;
}

int CancelSignalDescriptor() {
    return readEnd;
}

}  // namespace varnel
