#include "bench/Measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

namespace varnel {

namespace {

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

Measurement Measure(const std::string& command, const std::string& folder) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t id = fork();
    if (id < 0) throw std::runtime_error("fork failed");
    if (id == 0) {
        if (chdir(folder.c_str()) == 0) execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(id, &status, 0, &usage);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count(), Seconds(usage.ru_utime) + Seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024.0, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

Measurement LeastOf(int runs, const std::string& prepare, const std::string& command, const std::string& folder) {
    Measurement least;
    for (int k = 0; k < runs; ++k) {
        if (!prepare.empty()) Measure(prepare, folder);
        const Measurement run = Measure(command, folder);
        if (k == 0 || run.status != 0 || run.seconds < least.seconds) least = run;
        if (run.status != 0) break;
    }
    return least;
}

}  // namespace varnel
