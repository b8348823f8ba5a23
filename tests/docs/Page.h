// A page of the documentation, taken apart into what a reader reads, saves and types.
//
//   ```console            commands ("$ ") and what they print; "…" stands for what varies, alone on a line for any
//   lines
//   <!-- file: NAME -->   the fenced block behind it is what the reader saves under that name
//   <!-- run ... -->      shell commands that only a test runs: what the page takes for granted
#pragma once

#include <string>
#include <vector>

namespace varnel {

/// A stretch of lines of one kind: "prose", "indented", "run", or the word behind a fence ("console", "toml", "").
struct PageBlock {
    std::string kind;
    int line = 0;      ///< of the first of lines, counted from 1
    std::string file;  ///< the name under which a fenced block is saved, "" for none
    std::vector<std::string> lines;
};

/// What a reader does: one command, or one file saved.
struct PageStep {
    int line = 0;
    std::string command;                ///< for a shell, perhaps of several lines
    std::vector<std::string> expected;  ///< what it prints, blanks at line ends removed
    bool compared = true;               ///< false for hidden commands, which only have to succeed
};

/// A command of varnel or varnel-admin that is mentioned and not run.
struct PageMention {
    int line = 0;
    std::string command;
    bool first = false;  ///< begins its line in a block that is not run
};

/// All pages: README.md and docs/*.md, as paths from the folder of the sources.
std::vector<std::string> AllPages();
std::vector<PageBlock> ReadPage(const std::string& page);
/// A file that is no page, a unit or a script, as one block of kind "file".
std::vector<PageBlock> ReadOtherFile(const std::string& path);
std::vector<PageStep> StepsOf(const std::vector<PageBlock>& blocks);
/// The rows of every table of a page that has this head, cell by cell.
std::vector<std::vector<std::string>> TableRows(const std::string& page, const std::string& head);
/// In code between back-quotes, and in blocks that are not run.
std::vector<PageMention> MentionsOf(const std::vector<PageBlock>& blocks);

/// True when what was printed is what the page says.
bool Agree(const std::vector<std::string>& expected, const std::vector<std::string>& printed);

}  // namespace varnel
