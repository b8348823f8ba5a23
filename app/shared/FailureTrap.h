// "A failed step is reported and counted, and the operation goes on with the next one", said once. With it a procedure
// reads as the list of its steps:
//
//     FailureTrap trap(report, abort);
//     return trap.Run([&] { trap.Try([&] { … }); trap.Try([&] { … }); … });
#pragma once

#include <functional>
#include <new>

#include "app/shared/RunTally.h"
#include "platform/Error.h"

namespace varnel {

/// The failures that an operation survives; the next one ends it.
inline constexpr int kMaxRowFailures = 50;

class FailureTrap {
public:
    /// report: called with every failure, before it is counted. abort: called once, when the operation is given up.
    /// What they throw themselves ends the run.
    FailureTrap(std::function<void(const Error&)> report, std::function<void()> abort)
        : report_(std::move(report)), abort_(std::move(abort)) {}

    /// Runs the whole operation. Returns false when it was given up, else what body returns.
    template <class Body>
    bool Run(Body&& body) {
        try {
            return body();
        } catch (const GivenUp&) {
            return false;
        }
    }

    /// Runs one step. Returns whether it succeeded; gives the operation up when the failures pass the limit.
    template <class Step>
    bool Try(Step&& step) {
        try {
            step();
            return true;
        } catch (const Error& error) {
            Note(error);
        } catch (const std::bad_alloc&) {
            Note(Error(ErrorKind::Misuse, "", "Out of memory"));
        }
        return false;
    }

    /// Runs a step without which the operation cannot go on: a failure is reported and counted once, then the
    /// operation is given up.
    template <class Step>
    void Need(Step&& step) {
        if (!Try(std::forward<Step>(step))) GiveUp();
    }

    int Count() const { return count_; }

private:
    struct GivenUp {};

    void Note(const Error& error) {
        report_(error);
        ++Tally.failures;
        if (++count_ > kMaxRowFailures) GiveUp();
    }
    [[noreturn]] void GiveUp() {
        abort_();
        throw GivenUp{};
    }

    std::function<void(const Error&)> report_;
    std::function<void()> abort_;
    int count_ = 0;
};

}  // namespace varnel
