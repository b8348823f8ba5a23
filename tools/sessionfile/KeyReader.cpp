#include "tools/sessionfile/KeyReader.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {

std::string Faults::Place(const toml::node& node) const {
    return file_ + ":" + std::to_string(node.source().begin.line);
}

std::vector<std::string> Faults::Lines() const {
    std::vector<std::string> lines;
    for (const auto& [line, text] : texts_) lines.push_back(file_ + ":" + std::to_string(line) + ": " + text);
    return lines;
}

const toml::node* KeyReader::Ask(std::string_view key) {
    asked_.emplace_back(key);
    return table_.get(key);
}

const toml::node& KeyReader::At(std::string_view key) const {
    const toml::node* node = table_.get(key);
    return node ? *node : table_;
}

void KeyReader::Missing(std::string_view key, std::string_view example) {
    faults_.Add(table_, what_ + " needs " + std::string(key) + "; write " + std::string(example));
}

void KeyReader::WrongKind(std::string_view key, std::string_view kind, std::string_view example) {
    faults_.Add(At(key), std::string(key) + " must be " + std::string(kind) + "; write " + std::string(example));
}

std::optional<std::string> KeyReader::Text(std::string_view key, std::string_view example) {
    const toml::node* node = Ask(key);
    if (!node) return std::nullopt;
    if (!node->is_string()) {
        WrongKind(key, "a text in quotes", example);
        return std::string();
    }
    const std::string& text = node->as_string()->get();
    if (text.find('\0') == std::string::npos) return text;
    WrongKind(key, "a text without the character of code 0", example);
    return std::string();
}

std::string KeyReader::RequiredText(std::string_view key, std::string_view example) {
    const auto text = Text(key, example);
    if (!text) Missing(key, example);
    if (text && text->empty() && At(key).is_string())
        faults_.Add(At(key), std::string(key) + " must not be empty; write " + std::string(example));
    return text.value_or("");
}

std::optional<bool> KeyReader::Flag(std::string_view key, std::string_view example) {
    const toml::node* node = Ask(key);
    if (!node) return std::nullopt;
    if (!node->is_boolean()) {
        WrongKind(key, "true or false", example);
        return false;
    }
    return node->as_boolean()->get();
}

std::optional<std::int64_t> KeyReader::Number(std::string_view key, std::string_view example, std::int64_t least,
                                              std::int64_t most) {
    const toml::node* node = Ask(key);
    if (!node) return std::nullopt;
    const std::int64_t number = node->is_integer() ? node->as_integer()->get() : 0;
    if (!node->is_integer() || number < least || number > most) {
        WrongKind(key, "a whole number from " + std::to_string(least) + " to " + std::to_string(most), example);
        return std::nullopt;
    }
    return number;
}

std::optional<std::int64_t> KeyReader::RequiredNumber(std::string_view key, std::string_view example,
                                                      std::int64_t least, std::int64_t most) {
    if (!Has(key)) Missing(key, example);
    return Number(key, example, least, most);
}

const toml::table* KeyReader::Table(std::string_view key, std::string_view example) {
    const toml::node* node = Ask(key);
    if (node && !node->is_table()) WrongKind(key, "a table", example);
    return node ? node->as_table() : nullptr;
}

const toml::array* KeyReader::Array(std::string_view key, std::string_view example) {
    const toml::node* node = Ask(key);
    if (node && !node->is_array()) WrongKind(key, "a list", example);
    return node ? node->as_array() : nullptr;
}

std::optional<std::string> KeyReader::Word(std::string_view key, std::string_view example,
                                           const std::vector<std::string_view>& words) {
    auto text = Text(key, example);
    if (!text || std::find(words.begin(), words.end(), *text) != words.end()) return text;
    std::string list;
    for (const std::string_view word : words) {
        if (EqualNoCase(word, *text)) {
            faults_.Add(At(key), std::string(key) + " is \"" + *text + "\"; write \"" + std::string(word) +
                                     "\" (capitals and small letters count)");
            return std::string(word);
        }
        list += (list.empty() ? "\"" : ", \"") + std::string(word) + "\"";
    }
    if (At(key).is_string()) faults_.Add(At(key), std::string(key) + " is \"" + *text + "\"; write one of " + list);
    return text;
}

void KeyReader::Finish() {
    for (const auto& [key, node] : table_) {
        if (std::find(asked_.begin(), asked_.end(), key.str()) != asked_.end()) continue;
        std::string keys;
        for (const std::string& name : asked_) keys += (keys.empty() ? "" : ", ") + name;
        faults_.Add(key.source().begin.line,
                    "unknown key \"" + std::string(key.str()) + "\"; " + what_ + " has the keys " + keys);
    }
}

}  // namespace varnel::admin
