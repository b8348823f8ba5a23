// The real program, run as a user would run it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace varnel {

/// A started program; its output goes to a file.
class RunningProgram {
public:
    /// Starts path with arguments in folder; standard output and error go to output (both, in order).
    RunningProgram(const std::string& path, const std::vector<std::string>& arguments, const std::string& folder,
                   const std::string& output);
    /// Ends the program when it still runs.
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    pid_t Id() const { return id_; }
    void Signal(int number) const;
    /// Waits for its end. Returns the exit status, or 128 plus the signal that ended it.
    int Wait();
    /// Asks every millisecond until condition holds or the program has ended; false when it did not hold.
    bool WaitUntil(const std::function<bool()>& condition);
    bool HasEnded();

private:
    pid_t id_ = -1;
    int status_ = -1;
    bool ended_ = false;
};

/// Makes folder an installation: a link to the built varnel in it.
void InstallVarnel(const std::string& folder);
/// Runs "folder/varnel session" to its end and returns the exit status.
int RunVarnel(const std::string& folder, const std::string& session);

}  // namespace varnel
