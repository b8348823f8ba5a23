#include "tests/support/XServer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace varnel {

namespace {

void Pause() {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

std::string Content(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path).rdbuf();
    return bytes.str();
}

}  // namespace

bool XServer::Available() {
    return std::system("command -v Xvfb >/dev/null && command -v xdotool >/dev/null") == 0;
}

XServer::XServer() {
    const std::string number = folder_.File("number");
    server_ = std::make_unique<RunningProgram>(
        "/bin/sh",
        std::vector<std::string>{"-c",
                                 "exec Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset "
                                 "3>'" +
                                     number + "'"},
        folder_.Path(), folder_.File("output"));
    if (!server_->WaitUntil([&] { return Content(number).find('\n') != std::string::npos; })) {
        throw std::runtime_error("Xvfb did not start: " + Content(folder_.File("output")));
    }
    const std::string text = Content(number);
    display_ = ":" + text.substr(0, text.find('\n'));
}

std::string XServer::Tool(const std::string& arguments) const {
    const std::string out = folder_.File("tool");
    const std::string command = "DISPLAY=" + display_ + " xdotool " + arguments + " >'" + out + "' 2>&1";
    return std::system(command.c_str()) == 0 ? Content(out) : "";
}

bool XServer::HasWindow(const std::string& title) const {
    return !Tool("search --onlyvisible --name '^" + title + "'").empty();
}

std::string XServer::WindowTitled(const std::string& title) const {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < limit) {
        const std::string found = Tool("search --onlyvisible --name '^" + title + "'");
        if (!found.empty()) return found.substr(0, found.find('\n'));
        Pause();
    }
    return "";
}

void XServer::ClickFromCorner(const std::string& window, int left, int up) const {
    int width = 0, height = 0;
    std::istringstream lines(Tool("getwindowgeometry --shell " + window));
    for (std::string line; std::getline(lines, line);) {
        std::sscanf(line.c_str(), "WIDTH=%d", &width);
        std::sscanf(line.c_str(), "HEIGHT=%d", &height);
    }
    Tool("mousemove --window " + window + " " + std::to_string(width - left) + " " + std::to_string(height - up) +
         " click 1");
}

void XServer::Type(const std::string& window, const std::string& keys) const {
    Tool("windowfocus --sync " + window + " key " + keys);
}

}  // namespace varnel
