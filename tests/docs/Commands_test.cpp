// What the pages tell a reader to type does what the pages say. Every page runs in a folder of its own, with the two
// programs on the path; "Server=db1" is a MariaDB server of the test's own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>

#include "tests/docs/Page.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

/// Lines without carriage returns and blanks at their ends.
std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        line.erase(line.find_last_not_of(" \r\n") + 1);
        lines.push_back(line);
    }
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += "    " + line + "\n";
    return text;
}

/// The server that pages call db1, with the database and the user they name.
std::string AddressOfDb1() {
    static const std::unique_ptr<MariaDbServer> server = [] {
        auto started = std::make_unique<MariaDbServer>();
        started->Run({"CREATE DATABASE warehouse CHARACTER SET utf8mb4", "CREATE USER shop IDENTIFIED BY 'secret'",
                      "GRANT ALL ON warehouse.* TO shop"});
        return started;
    }();
    return "Server=127.0.0.1;Port=" + std::to_string(server->Port());
}

class PageRun {
public:
    explicit PageRun(const std::string& page) : page_(page), steps_(StepsOf(ReadPage(page))) {
        folder_.MakeFolder("page");
        folder_.MakeFolder("said");
        const std::string programs = folder_.MakeFolder("programs");
        std::filesystem::create_symlink(VARNEL_PROGRAM, programs + "/varnel");
        std::filesystem::create_symlink(VARNEL_ADMIN, programs + "/varnel-admin");
    }
    bool HasSteps() const { return !steps_.empty(); }
    /// One shell runs all steps, so that "cd" and variables hold for those behind.
    void Run() {
        std::string script = Beginning();
        for (std::size_t k = 0; k < steps_.size(); ++k) {
            const std::string said = folder_.File("said/" + std::to_string(k));
            script += "{ (exit $status)\n" + steps_[k].command + "\n} > '" + said +
                      "' 2>&1; status=$?\necho $status > '" + said + ".status'\n";
        }
        if (script.find("Server=db1") != std::string::npos) script = Replaced(script, "Server=db1", AddressOfDb1());
        const std::string file = folder_.Write("steps.sh", script);
        RunningProgram("/bin/bash", {file}, folder_.File("page"), folder_.File("shell")).Wait();
        EXPECT_EQ(ReadBytes(folder_.File("shell")), "");
    }
    void Compare() const {
        for (std::size_t k = 0; k < steps_.size(); ++k) {
            if (!CompareStep(k)) break;
        }
    }

private:
    std::string Beginning() const {
        return "exec < /dev/null\nunset DISPLAY WAYLAND_DISPLAY\nexport LC_ALL=C.UTF-8 EXAMPLES='" VARNEL_SOURCE
               "/examples' PATH='" +
               folder_.File("programs") + "':$PATH:/usr/sbin\nstatus=0\n";
    }
    /// A step ends with status 0 unless the next one asks for it. False when the shell did not come that far.
    bool CompareStep(std::size_t k) const {
        const PageStep& step = steps_[k];
        const std::string said = folder_.File("said/" + std::to_string(k));
        const std::string where = page_ + ":" + std::to_string(step.line) + ": " + step.command + "\n";
        EXPECT_TRUE(std::filesystem::exists(said + ".status")) << where << "was not run";
        if (!std::filesystem::exists(said + ".status")) return false;
        const std::vector<std::string> printed = LinesOf(ReadBytes(said));
        const bool asked = k + 1 < steps_.size() && steps_[k + 1].command.starts_with("echo $?");
        EXPECT_TRUE(asked || ReadBytes(said + ".status") == "0\n")
            << where << "ended with status " << ReadBytes(said + ".status") << Joined(printed);
        EXPECT_TRUE(!step.compared || Agree(step.expected, printed)) << where << "printed\n"
                                                                     << Joined(printed) << "and not\n"
                                                                     << Joined(step.expected);
        return true;
    }

    std::string page_;
    std::vector<PageStep> steps_;
    TempFolder folder_;
};

class DocumentedCommands : public testing::TestWithParam<std::string> {};

TEST_P(DocumentedCommands, PrintWhatThePageSays) {
    PageRun run(GetParam());
    if (!run.HasSteps()) return;
    run.Run();
    run.Compare();
}

std::vector<std::string> WordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

/// "varnel N", "varnel 12 showoutput"
bool VarnelTakes(const std::vector<std::string>& words) {
    static const std::regex number("-?[0-9]+|N|%i|\\$\\{?\\w+\\}?");
    return words.size() >= 2 && std::regex_match(words[1], number) &&
           (words.size() == 2 || words[2] == "showoutput" || words[2].starts_with(">") || words[2] == "…");
}

/// What a command's own help says, "" for a command that does not exist.
const std::string& HelpOn(const std::string& command) {
    static std::map<std::string, std::string> known;
    const auto [place, isNew] = known.try_emplace(command);
    if (isNew) {
        TempFolder folder;
        RunningProgram program(VARNEL_ADMIN, {command, "--help"}, folder.Path(), folder.File("help"));
        if (program.Wait() == 0) place->second = ReadBytes(folder.File("help"));
    }
    return place->second;
}

/// Every word with a hyphen must be one of the command's options.
bool AdminTakes(const std::vector<std::string>& words) {
    static const std::regex option("-[a-z]|--[a-z-]+");
    if (words.size() < 2) return false;
    if (words[1] == "--help" || words[1] == "--version") return words.size() == 2;
    const std::string& help = HelpOn(words[1]);
    if (help.empty()) return false;
    for (const std::string& word : words) {
        std::smatch match;
        if (std::regex_search(word, match, option, std::regex_constants::match_continuous) &&
            help.find(match.str()) == std::string::npos) {
            return false;
        }
    }
    return true;
}

void ExpectCommands(const std::string& path, const std::vector<PageBlock>& blocks) {
    for (const PageMention& mention : MentionsOf(blocks)) {
        const std::vector<std::string> words = WordsOf(mention.command);
        EXPECT_TRUE(words[0] == "varnel" ? VarnelTakes(words) : AdminTakes(words))
            << path << ":" << mention.line << ": " << mention.command;
    }
}

TEST_P(DocumentedCommands, AreCommandsWhereTheyAreOnlyMentioned) {
    ExpectCommands(GetParam(), ReadPage(GetParam()));
}

TEST(DocumentedFiles, HoldCommands) {
    ExpectCommands("Dockerfile", ReadOtherFile("Dockerfile"));
    for (const char* folder : {"packaging/systemd", "examples/operating"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            ExpectCommands(entry.path().string(), ReadOtherFile(entry.path().string()));
    }
}

/// The words that form finds in text, its first group.
std::set<std::string> Found(const std::string& text, const char* form) {
    const std::regex search(form);
    std::set<std::string> words;
    for (std::sregex_iterator match(text.begin(), text.end(), search), end; match != end; ++match)
        words.insert((*match)[1].str());
    return words;
}

TEST(AdminPage, NamesEveryCommandAndOption) {
    const std::string page = ReadBytes("docs/varnel-admin.md"), help = HelpOn("--help");
    const std::set<std::string> commands = Found(help.substr(help.find("Subcommands:")), "\n  ([a-z]+) ");
    EXPECT_GT(commands.size(), 6u);
    for (const std::string& command : commands) {
        EXPECT_NE(page.find("`" + command + " "), std::string::npos) << command;
        for (const std::string& option : Found(HelpOn(command), "(--[a-z-]+)"))
            EXPECT_TRUE(option == "--help" || page.find(option) != std::string::npos) << command << " " << option;
    }
}

TEST(AdminPage, NamesNoOther) {
    const auto rows = TableRows("docs/varnel-admin.md", "| command | does |");
    EXPECT_GT(rows.size(), 10u);
    for (const auto& row : rows) {
        for (const std::string& call : Found(row[0], "`([^`]+)`"))
            EXPECT_TRUE(AdminTakes(WordsOf("varnel-admin " + Replaced(call, "[", "")))) << call;
    }
}

TEST(SessionFilePage, NamesEveryKey) {
    const std::string page = ReadBytes("docs/session-file.md");
    std::set<std::string> keys;
    for (const auto& entry : std::filesystem::directory_iterator("tools/sessionfile"))
        keys.merge(Found(ReadBytes(entry.path().string()), "[kK]eys\\.[A-Za-z]+\\(\"([a-z_]+)\""));
    EXPECT_GT(keys.size(), 30u);
    for (const std::string& key : keys) EXPECT_NE(page.find("`" + key + "`"), std::string::npos) << key;
}

INSTANTIATE_TEST_SUITE_P(Pages, DocumentedCommands, testing::ValuesIn(AllPages()), [](const auto& page) {
    std::string name = page.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
}  // namespace varnel
