#include "tests/support/TerminalProgram.h"

#include <pty.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace varnel {

TerminalProgram::TerminalProgram(const std::string& path, const std::vector<std::string>& arguments,
                                 const std::string& folder) {
    const winsize size{24, 90, 0, 0};
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    id_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (id_ < 0) throw std::runtime_error("forkpty failed");
    if (id_ > 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("TERM", "xterm", 1);
    if (chdir(folder.c_str()) == 0) execv(path.c_str(), words.data());
    _exit(127);
}

TerminalProgram::~TerminalProgram() {
    if (id_ > 0 && status_ < 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    close(terminal_);
}

void TerminalProgram::Type(const std::string& text) const {
    if (write(terminal_, text.data(), text.size()) < 0) throw std::runtime_error("the terminal is gone");
}

bool TerminalProgram::ReadMore() {
    char bytes[4096];
    const ssize_t count = read(terminal_, bytes, sizeof bytes);
    if (count <= 0) return false;
    output_.append(bytes, static_cast<std::size_t>(count));
    return true;
}

bool TerminalProgram::WaitFor(const std::string& text) {
    while (true) {
        const std::size_t at = output_.find(text, seen_);
        if (at != std::string::npos) {
            seen_ = at + text.size();
            return true;
        }
        if (!ReadMore()) return false;
    }
}

int TerminalProgram::Wait() {
    while (ReadMore()) {
    }
    int raw = 0;
    if (status_ < 0 && waitpid(id_, &raw, 0) == id_) {
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    }
    return status_;
}

}  // namespace varnel
