// A file in memory in the place of a journaled one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/JournaledFiles.h"

namespace varnel {

class MemoryFiles : public JournaledFiles {
public:
    explicit MemoryFiles(std::span<const std::uint8_t> bytes) : bytes_(bytes.begin(), bytes.end()) {}

    Number Attach(std::string_view) override { return 0; }
    Number Create(std::string_view) override { return 0; }
    void Remove(Number) override {}
    void Detach(Number) noexcept override {}
    std::unique_ptr<Hold> HoldForReading() override { return std::make_unique<Hold>(); }
    std::unique_ptr<Hold> HoldForWriting() override { return std::make_unique<Hold>(); }
    bool HeldForWriting() const override { return true; }
    std::uint64_t Generation() const override { return 1; }
    std::uint64_t Size(Number) const override { return bytes_.size(); }
    std::size_t Read(Number, std::uint64_t offset, std::span<std::uint8_t> into) const override {
        if (offset >= bytes_.size()) return 0;
        const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
        return count;
    }
    void Protect(Number, std::uint64_t, std::uint64_t) override {}
    void Write(Number, std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        bytes_.resize(std::max<std::size_t>(bytes_.size(), offset + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    void Truncate(Number, std::uint64_t size) override { bytes_.resize(size); }
    void Commit() override {}
    void Rollback() override {}

private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace varnel
