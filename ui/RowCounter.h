// The text of Label2, made anew for every row.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnel {

/// "120 of 5000 Rows Loaded", without an allocation per row.
class RowCounter {
public:
    /// total: the number of rows, as it is to be shown.
    void Start(std::string_view total) { tail_.assign(" of ").append(total).append(" Rows Loaded"); }
    /// Valid until the next call.
    std::string_view Text(std::int64_t loaded) {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, loaded).ptr;
        return text_.assign(digits, end).append(tail_);
    }

private:
    std::string tail_, text_;
};

}  // namespace varnel
