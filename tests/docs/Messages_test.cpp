// Every message that docs/troubleshooting.md quotes, as bold code, is one that the sources can write.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "tests/docs/Page.h"

namespace varnel {
namespace {

const std::string kVaries = "…";

/// Where the literal that begins at code[open] ends: the place of its closing quote; npos when its line holds none.
std::size_t EndOfLiteral(const std::string& code, std::size_t open) {
    for (std::size_t k = open + 1; k < code.size() && code[k] != '\n'; ++k) {
        if (code[k] == '\\') {
            ++k;
        } else if (code[k] == '"') {
            return k;
        }
    }
    return std::string::npos;
}

/// The text of a source file's literals, one a line; neighbours that the compiler joins are one.
std::string LiteralsOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    const std::string code{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::string texts;
    std::size_t end = 0;
    for (std::size_t open = code.find('"'); open != std::string::npos; open = code.find('"', open + 1)) {
        const std::size_t close = EndOfLiteral(code, open);
        const bool character = open > 0 && code.compare(open - 1, 3, "'\"'") == 0;
        if (close == std::string::npos || character) continue;
        if (!texts.empty() && code.find_first_not_of(" \n", end) == open) texts.pop_back();
        for (std::size_t k = open + 1; k < close; ++k) {
            if (code[k] == '\\') ++k;
            texts += code[k];
        }
        texts += '\n';
        open = close;
        end = close + 1;
    }
    return texts;
}

std::string AllLiterals() {
    std::string texts;
    for (const char* folder :
         {"ado", "app", "export", "load", "platform", "polling", "providers", "repository", "source", "tools", "ui"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
                texts += LiteralsOf(entry.path());
        }
    }
    return texts;
}

/// What stands between the parts that vary.
std::vector<std::string> FixedParts(const std::string& message) {
    std::vector<std::string> parts;
    for (std::size_t from = 0; from <= message.size();) {
        const std::size_t end = std::min(message.find(kVaries, from), message.size());
        if (end > from) parts.push_back(message.substr(from, end - from));
        from = end + kVaries.size();
    }
    return parts;
}

TEST(TroubleshootingPage, QuotesWhatTheProgramsSay) {
    static const std::regex quoted("\\*\\*`([^`]+)`\\*\\*");
    const std::string literals = AllLiterals();
    std::size_t messages = 0;
    for (const PageBlock& block : ReadPage("docs/troubleshooting.md")) {
        for (std::size_t k = 0; k < block.lines.size(); ++k) {
            const std::string& line = block.lines[k];
            for (std::sregex_iterator match(line.begin(), line.end(), quoted), end; match != end; ++match) {
                ++messages;
                for (const std::string& part : FixedParts((*match)[1].str())) {
                    EXPECT_NE(literals.find(part), std::string::npos)
                        << "docs/troubleshooting.md:" << block.line + static_cast<int>(k) << ": " << part;
                }
            }
        }
    }
    EXPECT_GT(messages, 20u);
}

}  // namespace
}  // namespace varnel
