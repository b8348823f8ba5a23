#include "platform/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "platform/Error.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;

TEST(ListFilesTest, ListsOrdinaryFilesInOrder) {
    const TempFolder folder;
    for (const char* name : {"b.csv", "A.CSV", "c.csv", ".hidden.csv", "c.txt", "Ä.csv"}) folder.Write(name);
    folder.MakeFolder("folder.csv");
    fs::create_symlink("b.csv", folder.File("link.csv"));
    fs::create_symlink("gone", folder.File("broken.csv"));
    EXPECT_THAT(ListFiles(folder.Path(), "*.csv"),
                testing::ElementsAre("A.CSV", "b.csv", "c.csv", "link.csv", "Ä.csv"));
    EXPECT_THAT(ListFiles(folder.Path() + "\\", "nothing*"), testing::IsEmpty());
    EXPECT_EQ(ErrorOf([&] { ListFiles(folder.File("none"), "*"); }), "Path not found: '" + folder.File("none") + "'");
    EXPECT_EQ(ErrorOf([&] { ListFiles(folder.File("b.csv"), "*"); }),
              "Path/File access error: '" + folder.File("b.csv") + "'");
}

TEST(RenameFileTest, NeverOverwrites) {
    const TempFolder folder;
    const std::string a = folder.Write("a.txt", "A"), b = folder.Write("B.txt", "B");
    EXPECT_EQ(ErrorOf([&] { RenameFile(a, b); }), "File already exists: '" + b + "'");
    EXPECT_EQ(ErrorOf([&] { RenameFile(a, folder.File("b.TXT")); }),
              "File already exists: '" + folder.File("b.TXT") + "'");
    EXPECT_EQ(ReadBytes(b), "B");
    EXPECT_EQ(ReadBytes(a), "A");
    RenameFile(folder.File("A.TXT"), folder.File("c.txt"));
    EXPECT_EQ(ReadBytes(folder.File("c.txt")), "A");
    EXPECT_FALSE(FileExists(a));
}

TEST(RenameFileTest, ChangesTheCaseOfAName) {
    const TempFolder folder;
    folder.Write("report.txt", "x");
    RenameFile(folder.File("report.txt"), folder.File("Report.TXT"));
    EXPECT_THAT(ListFiles(folder.Path(), "*"), testing::ElementsAre("Report.TXT"));
}

TEST(RenameFileTest, NamesWhatIsMissing) {
    const TempFolder folder;
    const std::string a = folder.Write("a.txt");
    const std::string none = folder.File("none.txt"), deep = folder.File("no/x.txt");
    EXPECT_EQ(ErrorOf([&] { RenameFile(none, folder.File("b.txt")); }), "File not found: '" + none + "'");
    EXPECT_EQ(ErrorOf([&] { RenameFile(deep, folder.File("b.txt")); }), "Path not found: '" + deep + "'");
    EXPECT_EQ(ErrorOf([&] { RenameFile(a, deep); }), "Path not found: '" + deep + "'");
}

TEST(FileErrorTextTest, UsesTheKnownWords) {
    struct Case {
        int code;
        bool folderMissing;
        const char* text;
    };
    for (const auto& [code, folderMissing, text] : {Case{ENOENT, false, "File not found: 'C:\\x'"},
                                                    {ENOENT, true, "Path not found: 'C:\\x'"},
                                                    {EACCES, true, "Permission denied: 'C:\\x'"},
                                                    {EISDIR, false, "Path/File access error: 'C:\\x'"},
                                                    {ENOSPC, false, "Disk full: 'C:\\x'"},
                                                    {EMFILE, false, "Too many files: 'C:\\x'"},
                                                    {EXDEV, false, "Can't rename with different drive: 'C:\\x'"}}) {
        EXPECT_EQ(FileErrorText(code, "C:\\x", folderMissing), text);
    }
    EXPECT_NE(FileErrorText(ELOOP, "x").find("symbolic"), std::string::npos);
}

TEST(OutputFileTest, AppendsOrTruncatesAndWritesAtOnce) {
    const TempFolder folder;
    const std::string path = folder.File("log.txt");
    {
        OutputFile file(path, OutputFile::Mode::Append);
        file.Write("one\r\n");
        EXPECT_EQ(ReadBytes(path), "one\r\n");
        OutputFile other(folder.File("LOG.TXT"), OutputFile::Mode::Append);
        other.Write("two\r\n");
        file.Write("three\r\n");
    }
    EXPECT_EQ(ReadBytes(path), "one\r\ntwo\r\nthree\r\n");
    OutputFile file(path, OutputFile::Mode::Truncate);
    EXPECT_EQ(ReadBytes(path), "");
    OutputFile moved = std::move(file);
    EXPECT_FALSE(file.IsOpen());
    moved.Write(std::string(3'000'000, 'x'));
    moved.Close();
    EXPECT_EQ(ReadBytes(path).size(), 3'000'000u);
    EXPECT_EQ(ErrorOf([&] { moved.Write("x"); }), "Bad file name or number: '" + path + "'");
}

TEST(OutputFileTest, SaysWhyItCannotWrite) {
    const TempFolder folder;
    const std::string deep = folder.File("none/x.log");
    EXPECT_EQ(ErrorOf([&] { OutputFile(deep, OutputFile::Mode::Append); }), "Path not found: '" + deep + "'");
    EXPECT_EQ(ErrorOf([&] { OutputFile(folder.Path(), OutputFile::Mode::Append); }),
              "Path/File access error: '" + folder.Path() + "'");
    OutputFile full("/dev/full", OutputFile::Mode::Append);
    EXPECT_EQ(ErrorOf([&] { full.Write("x"); }), "Disk full: '/dev/full'");
}

}  // namespace
}  // namespace varnel
