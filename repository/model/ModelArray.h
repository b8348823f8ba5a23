// An array of session records: indexed with 16-bit numbers, never beyond its bounds.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "platform/Error.h"

namespace varnel {

inline constexpr std::size_t kMaxModelEntries = std::numeric_limits<std::int16_t>::max();

template <class Entry>
class ModelArray {
public:
    /// what: "tables" or "columns", for the error texts.
    explicit ModelArray(std::string what) : what_(std::move(what)) {}

    /// Throws Error{Misuse} "Subscript out of range" for an entry that does not exist.
    Entry& operator()(std::size_t index) { return entries_[Checked(index)]; }
    const Entry& operator()(std::size_t index) const { return entries_[Checked(index)]; }

    /// Keeps the entries that fit, empties the new ones. Throws Error{Misuse} "Overflow" at the limit of 32,767.
    void Resize(std::size_t count) {
        if (count >= kMaxModelEntries) {
            throw Error(ErrorKind::Misuse, what_,
                        "Overflow: the session has " + std::to_string(count) + " " + what_ + ", and " +
                            std::to_string(kMaxModelEntries - 1) + " is the most that one session can hold");
        }
        entries_.resize(count);
    }
    void Clear() { entries_.clear(); }

    std::int16_t Count() const { return static_cast<std::int16_t>(entries_.size()); }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

private:
    std::size_t Checked(std::size_t index) const {
        if (index >= entries_.size()) {
            throw Error(ErrorKind::Misuse, what_,
                        "Subscript out of range: entry " + std::to_string(index) + " of " +
                            std::to_string(entries_.size()) + " " + what_);
        }
        return index;
    }

    std::string what_;
    std::vector<Entry> entries_;
};

}  // namespace varnel
