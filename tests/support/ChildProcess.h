// A part of a test in a process of its own, which may end at any moment.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "platform/JournaledFiles.h"

namespace varnel {

struct ChildEnd {
    int status;        ///< its exit status, or 128 plus the signal that ended it
    std::size_t told;  ///< how often it called tell
};

/// Runs body(tell) in a child of this process, to its end.
inline ChildEnd InChild(const std::function<void(const std::function<void()>& tell)>& body) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    const pid_t child = fork();
    if (child == 0) {
        body([&] {
            if (write(ends[1], "t", 1) != 1) std::_Exit(125);
        });
        std::_Exit(0);
    }
    close(ends[1]);
    ChildEnd end{0, 0};
    for (char byte = 0; read(ends[0], &byte, 1) == 1;) ++end.told;
    close(ends[0]);
    waitpid(child, &end.status, 0);
    end.status = WIFEXITED(end.status) ? WEXITSTATUS(end.status) : 128 + WTERMSIG(end.status);
    return end;
}

/// The process ends with status 7 at the n-th moment, from 1, of its work on journaled files.
inline void EndAtMoment(int n) {
    WatchJournaledFiles([n](JournaledFiles::Moment) mutable {
        if (--n == 0) std::_Exit(7);
    });
}

}  // namespace varnel
