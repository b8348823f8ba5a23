#include "platform/Signals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace varnel {
namespace {

/// Runs body in a process of its own; returns its wait status. body's result is the exit status.
template <class Body>
int StatusOfChild(Body&& body) {
    const pid_t child = fork();
    if (child == 0) _exit(body());
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST(SignalsTest, WhatWasIgnoredStaysIgnored) {
    const int status = StatusOfChild([] {
        std::signal(SIGHUP, SIG_IGN);
        NoteCancelSignals();
        std::raise(SIGHUP);
        std::raise(SIGPIPE);
        return CancelSignalNoted() ? 1 : 0;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(SignalsTest, AForgottenSignalMakesTheNextTheFirstAgain) {
    const int status = StatusOfChild([] {
        NoteCancelSignals();
        std::raise(SIGINT);
        ForgetCancelSignal();
        if (CancelSignalNoted()) return 1;
        std::raise(SIGINT);
        return CancelSignalNoted() ? 0 : 2;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace varnel
