// The command line as a whole: help, manual page and completion say the same of it.
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Words = std::set<std::string>;

std::string ReadSource(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(std::string(VARNEL_SOURCE "/") + file).rdbuf();
    return text.str();
}

Words Matches(const std::string& text, const char* pattern) {
    const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
    Words words;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        words.insert((*match)[1]);
    return words;
}

class CommandLine : public AdminTest {
protected:
    Words Commands() const {
        const std::string help = Output({"--help"});
        return Matches(help.substr(help.find("Subcommands:")), "^  ([a-z]+) ");
    }
    /// The long options of a command's help, "--help" among them.
    Words Options(const std::string& command) const {
        return Matches(Output({command, "--help"}), "^  (?:-h,)?(--[a-z-]+)");
    }
    /// What bash proposes for the last of the words.
    std::vector<std::string> Completed(const std::vector<std::string>& words) const {
        std::string line = "eval \"$(" VARNEL_ADMIN " completion bash)\"; COMP_WORDS=(";
        for (const std::string& word : words) line += " '" + word + "'";
        line += "); COMP_CWORD=" + std::to_string(words.size() - 1) +
                "; $(complete -p varnel-admin | sed 's/.*-F \\([^ ]*\\).*/\\1/'); printf '%s\\n' \"${COMPREPLY[@]}\"";
        const ProgramResult result = RunIn(Folder(), "/bin/bash", {"--norc", "-c", line});
        EXPECT_EQ(result.err, "");
        std::vector<std::string> proposals;
        std::istringstream lines(result.out);
        for (std::string proposal; std::getline(lines, proposal);)
            if (!proposal.empty()) proposals.push_back(proposal);
        std::sort(proposals.begin(), proposals.end());
        return proposals;
    }
    Words CompletedSet(const std::vector<std::string>& words) const {
        const std::vector<std::string> proposals = Completed(words);
        return {proposals.begin(), proposals.end()};
    }
};

TEST_F(CommandLine, EveryCommandHasAnExampleAManualEntryAndCompletedOptions) {
    std::map<std::string, std::string> manual;
    const std::string page = ReadSource("docs/man/varnel-admin.1");
    for (std::size_t at = page.find("\n.Ss "); at != std::string::npos; at = page.find("\n.Ss ", at + 1)) {
        const std::string rest = page.substr(at + 5);
        manual[rest.substr(0, rest.find_first_of(" \n"))] = rest.substr(0, rest.find("\n.S"));
    }
    const Words commands = Commands();
    ASSERT_GE(commands.size(), 12u);
    Words described;
    for (const auto& [name, text] : manual) described.insert(name);
    EXPECT_EQ(described, commands);
    for (const std::string& command : commands) {
        SCOPED_TRACE(command);
        EXPECT_THAT(Output({command, "--help"}), HasSubstr("Example:\n  "));
        const Words options = Options(command);
        EXPECT_EQ(CompletedSet({"varnel-admin", command, "--"}), options);
        Words inManual{"--help"};
        for (const std::string& option : Matches(manual[command], "Fl (-[a-z-]+)")) inManual.insert("-" + option);
        EXPECT_EQ(inManual, options);
    }
    Words first = commands;
    first.insert({"--help", "--version"});
    EXPECT_EQ(CompletedSet({"varnel-admin", ""}), first);
}

TEST_F(CommandLine, BashCompletesFilesAndKinds) {
    WriteFile("old one.mdb", "");
    WriteFile("other.toml", "");
    EXPECT_THAT(Completed({"varnel-admin", "ex"}), ElementsAre("export"));
    EXPECT_THAT(Completed({"varnel-admin", "import", "o"}), ElementsAre("old one.mdb", "other.toml"));
    EXPECT_THAT(Completed({"varnel-admin", "list", "--repository", "ol"}), ElementsAre("old one.mdb"));
    EXPECT_THAT(Completed({"varnel-admin", "list", "--repository", "\"old o"}), ElementsAre("old one.mdb"));
    EXPECT_THAT(Completed({"varnel-admin", "define", "--source-kind", "F"}), ElementsAre("FOXPRO DBC", "FOXPRO DIR"));
    EXPECT_THAT(Completed({"varnel-admin", "define", "--target-kind", "TEXT"}), ElementsAre("TEXT"));
    EXPECT_THAT(Completed({"varnel-admin", "define", "--source-kind", "TEXT"}), ElementsAre("TEXT", "TEXTPOLL"));
    EXPECT_THAT(Completed({"varnel-admin", "completion", ""}), ElementsAre("bash"));
    // Connection strings and names are nobody's guess.
    EXPECT_THAT(Completed({"varnel-admin", "define", "--name", "o"}), ElementsAre());
    EXPECT_THAT(Completed({"varnel-admin", "sql", "o"}), ElementsAre());
}

TEST_F(CommandLine, ManualPagesAreInOrder) {
    const ProgramResult lint =
        RunIn(Folder(), "/bin/sh",
              {"-c", "command -v mandoc > /dev/null || exit 99; exec mandoc -Tlint -W warning " VARNEL_SOURCE
                     "/docs/man/varnel.1 " VARNEL_SOURCE "/docs/man/varnel-admin.1"});
    if (lint.status == 99) GTEST_SKIP() << "mandoc is not installed";
    EXPECT_EQ(lint.status, 0) << lint.out << lint.err;
}

TEST_F(CommandLine, WrongCallsNameTheRemedy) {
    const struct {
        std::vector<std::string> arguments;
        const char* message;
    } kCases[] = {
        {{}, "varnel-admin: name a command: new, copy, import"},
        {{"nonsense"}, "varnel-admin: name a command: new, copy, import"},
        {{"show", "x"}, "for help: varnel-admin show --help"},
        {{"list", "--jsno"}, "for help: varnel-admin list --help"},
        {{"export"}, "name the sessions, as in: varnel-admin export 12 14; or write --all"},
        {{"sql", "a=b", "SELECT 1", "--csv", "--json"}, "excludes"},
    };
    for (const auto& one : kCases) {
        const ProgramResult result = Admin(one.arguments);
        EXPECT_EQ(result.status, 2) << one.message;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, testing::AllOf(testing::StartsWith("varnel-admin: "), HasSubstr(one.message)));
    }
}

// script gives the program a terminal; what it writes there goes into its own output.
TEST_F(CommandLine, ProgressIsShownAtATerminalAndTakenAway) {
    Sql("a.db", "CREATE TABLE T (N LONG)");
    std::string values = "(1)";
    for (int row = 1; row < 20000; ++row) values += ",(1)";
    Sql("a.db", "INSERT INTO T VALUES " + values);
    // A reader that takes its time, so that half a second goes by.
    const std::string sql = VARNEL_ADMIN
        " sql \"Provider=SQLite;Data Source=a.db\" \"SELECT A.N FROM T AS A\" --json | { sleep 1; cat > rows.json; }";
    WriteFile("run.sh", "export TERM=xterm\n" + sql + "\n");
    if (RunIn(Folder(), "/bin/sh", {"-c", "command -v script"}).status != 0) GTEST_SKIP() << "script is not installed";
    const ProgramResult shown = RunIn(Folder(), "/bin/sh", {"-c", "script -qec 'sh run.sh' /dev/null"});
    EXPECT_THAT(shown.out, testing::MatchesRegex("(\\s*writing: [0-9,]+ rows.\\[K)+\\s*.\\[K\\s*")) << shown.err;
    EXPECT_EQ(Admin({"sql", "Provider=SQLite;Data Source=a.db", "SELECT N FROM T"}).err, "");
}

}  // namespace
}  // namespace varnel
