// Reads the keys of one TOML table and notes everything that is wrong with them, each fault with file and line, so
// that a person can mend a file in one go.
#pragma once

#include <toml++/toml.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Error.h"

namespace varnel::admin {

/// The faults of one file.
class Faults {
public:
    explicit Faults(std::string file) : file_(std::move(file)) {}
    void Add(const toml::node& at, const std::string& text) { Add(at.source().begin.line, text); }
    void Add(std::uint32_t line, const std::string& text) { texts_.emplace(line, text); }
    /// Runs a step; an Error that it throws becomes a fault at the node.
    template <class Step>
    void Note(const toml::node& at, Step&& step) {
        try {
            step();
        } catch (const Error& error) {
            Add(at, error.what());
        }
    }
    std::string Place(const toml::node& node) const;
    /// "file:line: text" per fault, in the order of the lines.
    std::vector<std::string> Lines() const;
    /// The first fault without its place; "" when there is none.
    std::string First() const { return texts_.empty() ? "" : texts_.begin()->second; }

private:
    std::string file_;
    std::multimap<std::uint32_t, std::string> texts_;
};

/// A table whose keys are asked for one by one; Finish names those that nobody asked for. The example of a key is the
/// whole line that a person could write; it ends every fault. A key that is missing or of the wrong kind is noted and
/// reads as empty.
class KeyReader {
public:
    /// what: how faults name the table ("a session", "a column").
    KeyReader(const toml::table& table, std::string what, Faults& faults)
        : table_(table), what_(std::move(what)), faults_(faults) {}

    std::string RequiredText(std::string_view key, std::string_view example);
    std::optional<std::string> Text(std::string_view key, std::string_view example);
    std::optional<bool> Flag(std::string_view key, std::string_view example);
    std::optional<std::int64_t> Number(std::string_view key, std::string_view example, std::int64_t least,
                                       std::int64_t most);
    std::optional<std::int64_t> RequiredNumber(std::string_view key, std::string_view example, std::int64_t least,
                                               std::int64_t most);
    const toml::table* Table(std::string_view key, std::string_view example);
    const toml::array* Array(std::string_view key, std::string_view example);
    /// One of the words, as written there; another one is a fault that lists them.
    std::optional<std::string> Word(std::string_view key, std::string_view example,
                                    const std::vector<std::string_view>& words);

    bool Has(std::string_view key) const { return table_.contains(key); }
    /// The node of a key, or the table itself when the key is missing: where a fault belongs.
    const toml::node& At(std::string_view key) const;
    void Missing(std::string_view key, std::string_view example);
    /// Notes every key that was not asked for.
    void Finish();

private:
    const toml::node* Ask(std::string_view key);
    void WrongKind(std::string_view key, std::string_view kind, std::string_view example);

    const toml::table& table_;
    std::string what_;
    Faults& faults_;
    std::vector<std::string> asked_;
};

}  // namespace varnel::admin
