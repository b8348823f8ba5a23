// Writes TOML lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnel::admin {

/// text in quotes: as it stands between single quotes where that is possible (paths, connection strings), else escaped.
std::string Quoted(std::string_view text);

/// text as it can stand in a comment: control characters, line breaks among them, are blanks.
std::string OneLine(std::string_view text);

class TomlText {
public:
    void Line(std::string_view text) { text_.append(text).append("\n"); }
    void Key(std::string_view key, const std::string& text) { Pair(key, Quoted(text)); }
    void Key(std::string_view key, bool flag) { Pair(key, flag ? "true" : "false"); }
    void Key(std::string_view key, int number) { Pair(key, std::to_string(number)); }
    void KeyUnlessEmpty(std::string_view key, const std::string& text) {
        if (!text.empty()) Key(key, text);
    }
    void Comments(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) Line("# " + OneLine(line));
    }
    const std::string& Text() const { return text_; }

private:
    void Pair(std::string_view key, const std::string& value) { Line(std::string(key) + " = " + value); }

    std::string text_;
};

}  // namespace varnel::admin
