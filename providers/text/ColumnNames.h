// The names of a text file's columns, as reported and as statements may call them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnel::text {

/// What columns with these header texts are called: trimmed; control characters become "_", "." becomes "#", brackets
/// become parentheses, "!" and "`" become "_"; F and the position for an empty one; a number is added to a name that
/// another column has already, counted up past the names that are taken.
std::vector<std::string> ReportedNames(std::span<const std::string> headerTexts);

/// Finds columns by name, without case: by the reported name, else by the header text, else by F and the position,
/// else by the first 64 characters of the reported name.
class ColumnNames {
public:
    ColumnNames() = default;
    ColumnNames(std::span<const std::string> reported, std::span<const std::string> headerTexts);
    std::optional<std::size_t> Find(std::string_view name) const;

private:
    using Positions = std::unordered_map<std::string, std::size_t>;  // by folded name
    std::vector<Positions> ways_;                                    // the ways of finding a name, best first
};

}  // namespace varnel::text
