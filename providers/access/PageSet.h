// A set of page numbers, as usage maps hold them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "providers/access/Layout.h"

namespace varnel::access {

class PageSet {
public:
    bool Has(PageNumber page) const {
        return page / 64 < words_.size() && ((words_[page / 64] >> (page % 64)) & 1) != 0;
    }
    void Add(PageNumber page) {
        if (page / 64 >= words_.size()) words_.resize(page / 64 + 1);
        words_[page / 64] |= std::uint64_t{1} << (page % 64);
    }
    void Remove(PageNumber page) {
        if (page / 64 < words_.size()) words_[page / 64] &= ~(std::uint64_t{1} << (page % 64));
    }
    bool Empty() const { return !Next(0); }
    std::size_t Count() const {
        std::size_t count = 0;
        for (const std::uint64_t word : words_) count += static_cast<std::size_t>(std::popcount(word));
        return count;
    }
    /// The lowest member that is not below page.
    std::optional<PageNumber> Next(PageNumber page) const {
        std::size_t k = page / 64;
        if (k >= words_.size()) return std::nullopt;
        std::uint64_t word = words_[k] >> (page % 64) << (page % 64);
        while (word == 0) {
            if (++k >= words_.size()) return std::nullopt;
            word = words_[k];
        }
        return static_cast<PageNumber>(k * 64 + static_cast<std::size_t>(std::countr_zero(word)));
    }
    bool operator==(const PageSet&) const = default;

private:
    std::vector<std::uint64_t> words_;
};

}  // namespace varnel::access
