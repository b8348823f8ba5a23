// Takes back what was appended to a buffer when the work on it fails half way.
#pragma once

#include <cstddef>
#include <string>

namespace varnel {

class AppendGuard {
public:
    explicit AppendGuard(std::string& out) : out_(out), size_(out.size()) {}
    ~AppendGuard() {
        if (!kept_) out_.resize(size_);  // never grows, so never throws
    }
    AppendGuard(const AppendGuard&) = delete;
    AppendGuard& operator=(const AppendGuard&) = delete;

    /// Everything was appended; it stays.
    void Keep() { kept_ = true; }

private:
    std::string& out_;
    std::size_t size_;
    bool kept_ = false;
};

}  // namespace varnel
