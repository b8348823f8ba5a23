// A stream of bytes between two processes of this program, and the start of the second one.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>
#include <utility>

#include <sys/types.h>

namespace varnel {

/// Whether a call waits until it can do something.
enum class Wait { No, Yes };

/// One end of the stream; a process that was started for the other end is ended with this one.
class ProcessLink {
public:
    /// Copies this process, which must have one thread only, and runs body in the copy, which then ends. The copy lives
    /// no longer than this process, ignores the signals that ask a program to stop, and does nothing of what the
    /// program does at its end. The link is not open when no process could be started.
    static ProcessLink ToNewProcess(const std::function<void(ProcessLink&)>& body);
    /// Both ends in this process.
    static std::pair<ProcessLink, ProcessLink> Pair();

    ProcessLink() = default;
    ProcessLink(ProcessLink&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)), process_(std::exchange(other.process_, -1)) {}
    ProcessLink& operator=(ProcessLink&&) = delete;
    ~ProcessLink();

    /// False once the other side was found gone.
    bool IsOpen() const { return descriptor_ >= 0; }
    /// Returns how many of the bytes went, none when the other side is gone.
    std::size_t Send(std::string_view bytes, Wait wait);
    /// Puts up to size bytes into buffer and returns how many came; none when there are none now, when a signal came in
    /// between, or when the other side is gone.
    std::size_t Receive(char* buffer, std::size_t size, Wait wait);
    /// Waits until something can be received, or the other side is gone; false when neither is so within limit.
    bool WaitForBytes(std::chrono::milliseconds limit) const;
    void Close();

private:
    explicit ProcessLink(int descriptor) : descriptor_(descriptor) {}

    int descriptor_ = -1;
    pid_t process_ = -1;
};

}  // namespace varnel
