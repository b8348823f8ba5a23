// A display of its own that nobody sees, and a person's hands on it.
#pragma once

#include <memory>
#include <string>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {

class XServer {
public:
    /// Starts Xvfb, reachable through a unix socket only. Throws std::runtime_error when it does not come up.
    XServer();

    /// Xvfb and xdotool are installed.
    static bool Available();
    /// ":N", what DISPLAY is to be.
    const std::string& Display() const { return display_; }
    /// Waits up to a minute for a shown window whose title begins so. Returns its number, "" when none came.
    std::string WindowTitled(const std::string& title) const;
    bool HasWindow(const std::string& title) const;
    /// Clicks at a place of a window, counted in pixels from its lower right corner.
    void ClickFromCorner(const std::string& window, int left, int up) const;
    /// Types keys, in xdotool's names, at a window.
    void Type(const std::string& window, const std::string& keys) const;
    /// Ends the server at once.
    void Kill() { server_.reset(); }

private:
    std::string Tool(const std::string& arguments) const;

    TempFolder folder_;
    std::string display_;
    std::unique_ptr<RunningProgram> server_;
};

}  // namespace varnel
