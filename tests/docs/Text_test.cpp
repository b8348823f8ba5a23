// Links lead somewhere, and no command stands where nobody runs it.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <regex>

#include "tests/docs/Page.h"

namespace varnel {
namespace {

/// "## What a run does" has the anchor "what-a-run-does".
std::string AnchorOf(const std::string& heading) {
    std::string anchor;
    for (const unsigned char c : heading.substr(heading.find_first_not_of("# "))) {
        if (std::isalnum(c) != 0 || c == '-' || c == '_' || c >= 0x80) anchor += static_cast<char>(std::tolower(c));
        if (c == ' ') anchor += '-';
    }
    return anchor;
}

bool HasAnchor(const std::string& page, const std::string& anchor) {
    for (const PageBlock& block : ReadPage(page)) {
        if (block.kind != "prose") continue;
        for (const std::string& line : block.lines)
            if (line.starts_with('#') && AnchorOf(line) == anchor) return true;
    }
    return false;
}

void ExpectLink(const std::string& page, int line, const std::string& link) {
    const std::size_t mark = link.find('#');
    const std::filesystem::path folder = std::filesystem::path(page).parent_path();
    const std::string target = mark == 0 ? page : (folder / link.substr(0, mark)).string();
    ASSERT_TRUE(std::filesystem::exists(target)) << page << ":" << line << ": " << link;
    if (mark != std::string::npos) {
        EXPECT_TRUE(HasAnchor(target, link.substr(mark + 1))) << page << ":" << line << ": " << link;
    }
}

TEST(Pages, LinksLeadSomewhere) {
    const std::regex form("\\]\\(([^)]+)\\)");
    for (const std::string& page : AllPages()) {
        for (const PageBlock& block : ReadPage(page)) {
            for (std::size_t k = 0; block.kind == "prose" && k < block.lines.size(); ++k) {
                const std::string& line = block.lines[k];
                for (std::sregex_iterator match(line.begin(), line.end(), form), end; match != end; ++match) {
                    const std::string link = (*match)[1].str();
                    if (!link.starts_with("http")) ExpectLink(page, block.line + static_cast<int>(k), link);
                }
            }
        }
    }
}

// Else nobody would notice when it does something else one day.
TEST(Pages, CommandsThatCanBeRunStandInConsoleBlocks) {
    for (const std::string& page : AllPages()) {
        for (const PageMention& mention : MentionsOf(ReadPage(page)))
            EXPECT_FALSE(mention.first) << page << ":" << mention.line << ": " << mention.command;
    }
}

TEST(Pages, TheIndexNamesThemAll) {
    std::string index;
    for (const PageBlock& block : ReadPage("docs/README.md"))
        for (const std::string& line : block.lines) index += line;
    for (const std::string& page : AllPages()) {
        const std::string name = std::filesystem::path(page).filename();
        EXPECT_TRUE(name == "README.md" || index.find("(" + name + ")") != std::string::npos) << page;
    }
}

}  // namespace
}  // namespace varnel
