// Output files that cannot be written, or not to their end: reported and counted, and the other tables are written.
#include <filesystem>

#include "tests/session/TextSession.h"

namespace varnel {
namespace {

class TextOutputTest : public TextSessionTest {
protected:
    /// A table of count numbered rows and the session's entry that writes it to output.
    void AddTable(const std::string& name, int count, const std::string& output) {
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, name, count, 50);
        session_.tables.push_back({name, output, {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}});
    }
    static std::string Lines(int count) {
        std::string text;
        for (int k = 1; k <= count; ++k) {
            text += std::to_string(k) + ",\"row " + std::to_string(k) + std::string(50, '.') + "\"\r\n";
        }
        return text;
    }
    TextOutputTest() { TargetIsText({",", "DQ", false, "DELIMITED"}); }
};

TEST_F(TextOutputTest, AFullDiskAtTheEndOfASmallTable) {
    AddTable("small", 3, "/dev/full");
    AddTable("after", 2, Path("out/after.txt"));
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(InLog("\r\nDisk full: '/dev/full'\r\n"), 1) << log_;
    EXPECT_EQ(InLog("Error Loading Row:"), 1) << log_;
    EXPECT_EQ(Content("out/after.txt"), Lines(2));
    EXPECT_EQ(InLog("******( FINISH )*******"), 1);
    EXPECT_EQ(Outcome(), "recorded, no error");
}

TEST_F(TextOutputTest, AFullDiskInTheMiddleOfALargeTableEndsTheRun) {
    AddTable("large", 20'000, "/dev/full");
    AddTable("after", 2, Path("out/after.txt"));
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(InLog("\r\nDisk full: '/dev/full'\r\n"), 51) << log_;
    EXPECT_TRUE(log_.ends_with("Aborting loading as Errors exceed 50 allowed\r\n")) << log_;
    EXPECT_FALSE(Has("out/after.txt"));
}

/// Mounts a small file system over "out", in a name space of its own, and runs the session there.
TEST_F(TextOutputTest, ADiskThatFillsUpKeepsWholeLinesOfTheBeginning) {
    std::filesystem::create_directory(Path("kept"));
    AddTable("large", 40'000, Path("out/large.txt"));
    repository_.Add(session_);
    RunningProgram shell("/bin/sh",
                         {"-c",
                          "unshare --mount sh -c 'mount -t tmpfs -o size=1m none out || exit 99; ./varnel 1; s=$?; "
                          "cp out/* kept/; exit $s' || exit"},
                         folder_.Path(), Path("output.txt"));
    const int status = End(shell);
    if (!Has("run.log")) GTEST_SKIP() << "file systems cannot be mounted here: " << output_;
    EXPECT_EQ(status, 1) << output_;
    EXPECT_EQ(InLog("Disk full: '" + Path("out/large.txt") + "'"), 51) << log_.substr(0, 2000);
    EXPECT_TRUE(log_.ends_with("Aborting loading as Errors exceed 50 allowed\r\n"));
    const std::string kept = Content("kept/large.txt");
    EXPECT_GT(kept.size(), 500'000U);
    EXPECT_TRUE(Lines(40'000).starts_with(kept)) << "the file is not the beginning of the table";
}

/// Output paths that cannot be opened; the steps that need the file fail one by one.
TEST_F(TextOutputTest, AFileThatCannotBeOpened) {
    std::filesystem::create_directory(Path("out/folder.txt"));
    struct Case {
        std::string output, said;
    };
    for (const Case& c : {Case{Path("out/nowhere/a.txt"), "Path not found: '" + Path("out/nowhere/a.txt") + "'"},
                          Case{Path("out/folder.txt"), "Path/File access error: '" + Path("out/folder.txt") + "'"}}) {
        SCOPED_TRACE(c.output);
        session_.tables.clear();
        std::filesystem::remove(session_.log);
        const std::string id = std::to_string(session_.id);
        AddTable("t" + id, 3, c.output);
        AddTable("after" + id, 2, Path("out/after" + id + ".txt"));
        EXPECT_EQ(Run(), 1);
        EXPECT_EQ(InLog(c.said), 1) << log_;
        EXPECT_EQ(InLog("\r\n0 Rows Loaded\r\n"), 1) << log_;
        EXPECT_EQ(InLog("\r\n2 Rows Loaded\r\n"), 1) << log_;
        EXPECT_EQ(Content("out/after" + id + ".txt"), Lines(2));
        EXPECT_EQ(Outcome(session_.id++), "recorded, no error");
    }
    EXPECT_EQ(Names("out"), "after1.txt after2.txt folder.txt ");
}

}  // namespace
}  // namespace varnel
