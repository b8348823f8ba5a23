#include "platform/Terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace varnel {

namespace {

bool IsTerminal(int descriptor) {
    const char* kind = std::getenv("TERM");
    const bool dumb = kind == nullptr || std::string_view(kind) == "dumb" || std::string_view(kind).empty();
    return !dumb && isatty(descriptor) == 1;
}

}  // namespace

bool OutputIsTerminal() {
    return IsTerminal(STDOUT_FILENO);
}

bool ErrorsGoToTerminal() {
    return IsTerminal(STDERR_FILENO);
}

bool CanAskAtTerminal() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1 && tcgetpgrp(STDIN_FILENO) == getpgrp();
}

int TerminalColumns() {
    constexpr int kUsualColumns = 80;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualColumns;
}

void WriteToOutput(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::optional<std::string> ReadTerminalLine(int wakeUp) {
    std::string line;
    while (true) {
        pollfd wanted[] = {{STDIN_FILENO, POLLIN, 0}, {wakeUp, POLLIN, 0}};
        if (poll(wanted, 2, -1) < 0) {
            if (errno == EINTR) continue;
            return std::nullopt;
        }
        if (wanted[1].revents != 0) return std::nullopt;
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) != 1) return std::nullopt;
        if (byte == '\n') return line;
        line += byte;
    }
}

}  // namespace varnel
