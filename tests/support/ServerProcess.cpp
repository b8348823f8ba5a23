#include "tests/support/ServerProcess.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace varnel {

std::string FindProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(std::string(path != nullptr ? path : "") + ":/usr/sbin:/usr/bin");
    for (std::string file; std::getline(folders, file, ':');) {
        file.append("/").append(name);
        if (file[0] == '/' && access(file.c_str(), X_OK) == 0) return file;
    }
    return "";
}

int FreePort() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = bind(descriptor, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(descriptor);
    if (!bound) throw std::runtime_error("No free port on the loopback address.");
    return ntohs(address.sin_port);
}

pid_t StartProgram(const std::vector<std::string>& words, const std::string& outputFile) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("No process could be started.");
    if (child > 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = open(outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (getppid() != parent || output < 0) _exit(126);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execv(arguments[0], arguments.data());
    _exit(127);
}

}  // namespace varnel
