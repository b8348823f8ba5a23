// How often a face is worth drawing: a run says more than a screen can show.
#pragma once

#include <chrono>

namespace varnel {

/// Lets a few drawings through at once, so that a slow run shows every state, and merges the rest: on average one per
/// interval. It only looks at the clock when it is asked; whoever was refused asks again with a later state.
class RepaintBudget {
public:
    using Clock = std::chrono::steady_clock;

    /// burst: drawings that are let through one right after another, at least 1.
    constexpr RepaintBudget(std::chrono::milliseconds interval, int burst) : interval_(interval), burst_(burst) {}

    /// Whether to draw now.
    bool Take() { return Take(Clock::now()); }
    bool Take(Clock::time_point now) {
        if (allFreeAt_ < now) allFreeAt_ = now;
        if (allFreeAt_ - now > interval_ * (burst_ - 1)) return false;
        allFreeAt_ += interval_;
        return true;
    }

private:
    std::chrono::milliseconds interval_;
    int burst_;
    Clock::time_point allFreeAt_{};  // when as many as burst_ would be let through again
};

}  // namespace varnel
