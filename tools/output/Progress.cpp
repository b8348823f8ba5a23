#include "tools/output/Progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/Terminal.h"

namespace varnel::admin {
namespace {

constexpr auto kFirst = std::chrono::milliseconds(500), kEach = std::chrono::milliseconds(100);

constexpr std::size_t kLongest = 79;  // bytes

/// "1,204,000"
std::string Grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
    return digits;
}

}  // namespace

Progress::Progress(std::string what, std::string unit)
    : terminal_(ErrorsGoToTerminal()), what_(std::move(what)), unit_(std::move(unit)), next_(Clock::now() + kFirst) {}

Progress::~Progress() {
    Erase();
}

void Progress::Count(std::uint64_t done) {
    if (Due()) Write(Grouped(done));
}

void Progress::Count(std::uint64_t done, std::uint64_t all) {
    if (Due()) Write(Grouped(done) + " of " + Grouped(all));
}

void Progress::Begin(std::string what) {
    what_ = std::move(what);
}

void Progress::Erase() {
    if (std::exchange(shown_, false)) std::fputs("\r\x1B[K", stderr);
}

bool Progress::Due() {
    if (!terminal_ || Clock::now() < next_) return false;
    next_ = Clock::now() + kEach;
    return true;
}

void Progress::Write(std::string_view count) {
    std::string line = what_ + ": " + std::string(count) + " " + unit_;
    // A line that wraps could not be taken back.
    std::size_t end = std::min<std::size_t>(line.size(), kLongest);
    while (end > 0 && end < line.size() && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    line.resize(end);
    line = "\r" + line + "\x1B[K";
    std::fwrite(line.data(), 1, line.size(), stderr);
    shown_ = true;
}

}  // namespace varnel::admin
