#include "platform/ProcessLink.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace varnel {

namespace {

void LiveBesideTheProgram() {
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) signal(number, SIG_IGN);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::atexit([] { std::_Exit(0); });
}

int Flags(Wait wait) {
    return MSG_NOSIGNAL | (wait == Wait::No ? MSG_DONTWAIT : 0);
}

bool OtherSideIsThere(int error) {
    return error == EAGAIN || error == EINTR;
}

}  // namespace

ProcessLink ProcessLink::ToNewProcess(const std::function<void(ProcessLink&)>& body) {
    std::pair<ProcessLink, ProcessLink> ends = Pair();
    ProcessLink& here = ends.first;
    if (here.IsOpen()) here.process_ = fork();
    if (here.process_ == 0) {
        here.Close();
        LiveBesideTheProgram();
        body(ends.second);
        std::_Exit(0);
    }
    if (here.process_ < 0) here.Close();
    return std::move(here);
}

std::pair<ProcessLink, ProcessLink> ProcessLink::Pair() {
    int ends[2] = {-1, -1};
    static_cast<void>(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends));
    return {ProcessLink(ends[0]), ProcessLink(ends[1])};
}

ProcessLink::~ProcessLink() {
    Close();
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::size_t ProcessLink::Send(std::string_view bytes, Wait wait) {
    std::size_t sent = 0;
    while (IsOpen() && sent < bytes.size()) {
        const ssize_t count = send(descriptor_, bytes.data() + sent, bytes.size() - sent, Flags(wait));
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            Close();
        }
    }
    return sent;
}

std::size_t ProcessLink::Receive(char* buffer, std::size_t size, Wait wait) {
    const ssize_t count = IsOpen() ? recv(descriptor_, buffer, size, Flags(wait)) : 0;
    if (count > 0) return static_cast<std::size_t>(count);
    if (count == 0 || !OtherSideIsThere(errno)) Close();
    return 0;
}

bool ProcessLink::WaitForBytes(std::chrono::milliseconds limit) const {
    pollfd waiting{descriptor_, POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(limit.count())) > 0;
}

void ProcessLink::Close() {
    if (IsOpen()) close(std::exchange(descriptor_, -1));
}

}  // namespace varnel
