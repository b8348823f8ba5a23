// Says on standard error how far a long piece of work has come, when standard error is a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnel::admin {

/// One line that is written anew, at most ten times a second and not in the first half second; erased at the end, so
/// that nothing of it stays. Nothing at all is written when standard error is no terminal.
class Progress {
public:
    /// what: in front of the count ("reading orders.mdb"). unit: behind it ("rows").
    Progress(std::string what, std::string unit);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// "reading orders.mdb: 1,204,000 rows"; cheap enough for every row.
    void Count(std::uint64_t done);
    /// "... 3 of 12 tables"
    void Count(std::uint64_t done, std::uint64_t all);
    /// Another piece of work, counted from 0.
    void Begin(std::string what);
    /// Takes the line away, for other output that is to follow.
    void Erase();

private:
    using Clock = std::chrono::steady_clock;
    bool Due();
    void Write(std::string_view count);

    bool terminal_, shown_ = false;
    std::string what_, unit_;
    Clock::time_point next_;
};

}  // namespace varnel::admin
