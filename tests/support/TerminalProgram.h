// A program in a terminal of its own, with somebody who reads and types.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace varnel {

class TerminalProgram {
public:
    /// Starts path with arguments in folder, in the foreground of a new terminal of 90 columns.
    TerminalProgram(const std::string& path, const std::vector<std::string>& arguments, const std::string& folder);
    /// Ends the program when it still runs.
    ~TerminalProgram();
    TerminalProgram(const TerminalProgram&) = delete;
    TerminalProgram& operator=(const TerminalProgram&) = delete;

    pid_t Id() const { return id_; }
    void Type(const std::string& text) const;
    /// Reads on until text was written since the last call; false when the program ended without it.
    bool WaitFor(const std::string& text);
    /// Reads to the end. Returns the exit status, or 128 plus the signal that ended it.
    int Wait();
    /// Everything written so far, cursor movements included.
    const std::string& Output() const { return output_; }

private:
    bool ReadMore();

    pid_t id_ = -1;
    int terminal_ = -1;
    int status_ = -1;
    std::size_t seen_ = 0;
    std::string output_;
};

}  // namespace varnel
