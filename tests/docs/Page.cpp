#include "tests/docs/Page.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <span>
#include <sstream>
#include <stdexcept>

namespace varnel {

namespace {

const std::string kFence = "```";
const std::string kVaries = "…";

std::vector<std::string> LinesOfFile(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("there is no file " + path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

/// Takes lines one by one and keeps the blocks they belong to.
class PageReader {
public:
    void Take(const std::string& line, int number) {
        if (open_) {
            if (line == ending_) {
                open_ = false;
            } else {
                blocks_.back().lines.push_back(line);
            }
        } else if (line.starts_with(kFence)) {
            Open(line.substr(kFence.size()), kFence, number);
        } else if (line == "<!-- run") {
            Open("run", "-->", number);
        } else if (line.starts_with("<!-- file: ")) {
            file_ = line.substr(11, line.rfind(" -->") - 11);
        } else {
            TakeText(line, number);
        }
    }
    std::vector<PageBlock> Blocks() && {
        if (open_) throw std::runtime_error("a block has no end: line " + std::to_string(blocks_.back().line));
        return std::move(blocks_);
    }

private:
    void Open(const std::string& kind, const std::string& ending, int number) {
        blocks_.push_back({kind, number + 1, file_, {}});
        file_.clear();
        ending_ = ending;
        open_ = true;
    }
    void TakeText(const std::string& line, int number) {
        const std::string kind = line.starts_with("    ") ? "indented" : "prose";
        if (blocks_.empty() || blocks_.back().kind != kind) blocks_.push_back({kind, number, "", {}});
        blocks_.back().lines.push_back(line);
    }

    std::vector<PageBlock> blocks_;
    std::string file_, ending_;
    bool open_ = false;
};

void AddConsoleSteps(std::vector<PageStep>& steps, const PageBlock& block) {
    bool goesOn = false;
    for (std::size_t k = 0; k < block.lines.size(); ++k) {
        const std::string& line = block.lines[k];
        const int number = block.line + static_cast<int>(k);
        if (goesOn) {
            steps.back().command += "\n" + line;
        } else if (line.starts_with("$ ")) {
            steps.push_back({number, line.substr(2), {}});
        } else {
            if (k == 0) throw std::runtime_error("line " + std::to_string(number) + ": output before any command");
            steps.back().expected.push_back(line);
        }
        goesOn = (goesOn || line.starts_with("$ ")) && line.ends_with('\\');
    }
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

void AddMentions(std::vector<PageMention>& mentions, const std::string& line, int number, const std::regex& form) {
    for (std::sregex_iterator match(line.begin(), line.end(), form), end; match != end; ++match) {
        const std::string before = line.substr(0, static_cast<std::size_t>(match->position(2)));
        mentions.push_back({number, (*match)[2].str(), before.find_first_not_of(" \t$./") == std::string::npos});
    }
}

/// A word "varnel" after a blank is as often a user, an image or a package as the program.
void AddMentions(std::vector<PageMention>& mentions, const std::string& line, int number, bool prose) {
    static const std::regex inProse("(`)(?:\\./)?(varnel(?:-admin)? [^`]+)`");
    static const std::regex run("(^ *(?:\\$ )?|/)(varnel [^\"')|;&#]+)");
    static const std::regex admin("(^|[ /=\"'(])(varnel-admin [^\"')|;&#]+)");
    if (prose) return AddMentions(mentions, line, number, inProse);
    AddMentions(mentions, line, number, run);
    AddMentions(mentions, line, number, admin);
}

std::vector<std::string> CellsOf(const std::string& row) {
    std::istringstream stream(row.substr(1));
    std::vector<std::string> cells;
    for (std::string cell; std::getline(stream, cell, '|');) {
        const std::size_t first = cell.find_first_not_of(' ');
        cells.push_back(first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
    }
    return cells;
}

bool LineAgrees(const std::string& expected, const std::string& printed) {
    std::size_t at = 0, from = 0;
    while (true) {
        const std::size_t end = expected.find(kVaries, from);
        const std::string part = expected.substr(from, end == std::string::npos ? end : end - from);
        const bool first = from == 0, last = end == std::string::npos;
        if (last && !first) return printed.size() >= at + part.size() && printed.ends_with(part);
        const std::size_t found = first ? (printed.starts_with(part) ? 0 : std::string::npos) : printed.find(part, at);
        if (found == std::string::npos) return false;
        at = found + part.size();
        if (last) return at == printed.size();
        from = end + kVaries.size();
    }
}

bool LinesAgree(std::span<const std::string> expected, std::span<const std::string> printed) {
    if (expected.empty()) return printed.empty();
    if (expected.front() == kVaries) {
        for (std::size_t left = 0; left <= printed.size(); ++left)
            if (LinesAgree(expected.subspan(1), printed.subspan(left))) return true;
        return false;
    }
    return !printed.empty() && LineAgrees(expected.front(), printed.front()) &&
           LinesAgree(expected.subspan(1), printed.subspan(1));
}

}  // namespace

std::vector<std::string> AllPages() {
    std::vector<std::string> pages{"README.md"};
    for (const auto& entry : std::filesystem::directory_iterator("docs"))
        if (entry.path().extension() == ".md") pages.push_back(entry.path().string());
    std::sort(pages.begin() + 1, pages.end());
    return pages;
}

std::vector<PageBlock> ReadPage(const std::string& page) {
    PageReader reader;
    int number = 0;
    for (const std::string& line : LinesOfFile(page)) reader.Take(line, ++number);
    return std::move(reader).Blocks();
}

std::vector<PageBlock> ReadOtherFile(const std::string& path) {
    return {{"file", 1, "", LinesOfFile(path)}};
}

std::vector<PageStep> StepsOf(const std::vector<PageBlock>& blocks) {
    std::vector<PageStep> steps;
    for (const PageBlock& block : blocks) {
        if (block.kind == "console") {
            AddConsoleSteps(steps, block);
        } else if (block.kind == "run") {
            steps.push_back({block.line, Joined(block.lines), {}, false});
        } else if (!block.file.empty()) {
            const std::string command = "cat > '" + block.file + "' <<'END OF FILE'\n";
            steps.push_back({block.line, command + Joined(block.lines) + "END OF FILE", {}});
        }
    }
    return steps;
}

std::vector<PageMention> MentionsOf(const std::vector<PageBlock>& blocks) {
    std::vector<PageMention> mentions;
    for (const PageBlock& block : blocks) {
        if (block.kind == "console" || block.kind == "run") continue;
        for (std::size_t k = 0; k < block.lines.size(); ++k)
            AddMentions(mentions, block.lines[k], block.line + static_cast<int>(k), block.kind == "prose");
    }
    return mentions;
}

std::vector<std::vector<std::string>> TableRows(const std::string& page, const std::string& head) {
    std::vector<std::vector<std::string>> rows;
    for (const PageBlock& block : ReadPage(page)) {
        bool inside = false;
        for (const std::string& line : block.lines) {
            inside = line.starts_with('|') && (inside || line == head);
            if (inside && line != head && !line.starts_with("|-")) rows.push_back(CellsOf(line));
        }
    }
    return rows;
}

bool Agree(const std::vector<std::string>& expected, const std::vector<std::string>& printed) {
    return LinesAgree(expected, printed);
}

}  // namespace varnel
