#include "tests/support/RunProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <thread>

namespace varnel {

namespace {

[[noreturn]] void BecomeProgram(const std::string& path, const std::vector<std::string>& arguments,
                                const std::string& folder, const std::string& output) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    if (chdir(folder.c_str()) == 0) execv(path.c_str(), words.data());
    _exit(127);
}

int StatusOf(int raw) {
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
}

}  // namespace

RunningProgram::RunningProgram(const std::string& path, const std::vector<std::string>& arguments,
                               const std::string& folder, const std::string& output) {
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("fork failed");
    if (id_ == 0) BecomeProgram(path, arguments, folder, output);
}

RunningProgram::~RunningProgram() {
    if (HasEnded()) return;
    kill(id_, SIGKILL);
    Wait();
}

void RunningProgram::Signal(int number) const {
    kill(id_, number);
}

bool RunningProgram::HasEnded() {
    int raw = 0;
    if (!ended_ && waitpid(id_, &raw, WNOHANG) == id_) {
        ended_ = true;
        status_ = StatusOf(raw);
    }
    return ended_;
}

int RunningProgram::Wait() {
    int raw = 0;
    if (!ended_ && waitpid(id_, &raw, 0) == id_) {
        ended_ = true;
        status_ = StatusOf(raw);
    }
    return status_;
}

bool RunningProgram::WaitUntil(const std::function<bool()>& condition) {
    while (!condition()) {
        if (HasEnded()) return condition();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

void InstallVarnel(const std::string& folder) {
    std::filesystem::create_symlink(VARNEL_PROGRAM, folder + "/varnel");
}

int RunVarnel(const std::string& folder, const std::string& session) {
    return RunningProgram(folder + "/varnel", {session}, folder, folder + "/output.txt").Wait();
}

}  // namespace varnel
