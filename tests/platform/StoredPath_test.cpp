#include "platform/StoredPath.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;

class StoredPathTest : public testing::Test {
protected:
    StoredPathTest() : before_(ApplicationFolder()) { SetApplicationFolder(folder_.Path() + "/"); }
    ~StoredPathTest() override { SetApplicationFolder(before_); }

    TempFolder folder_;
    std::string before_;
};

TEST_F(StoredPathTest, FindsNamesWithoutCase) {
    folder_.MakeFolder("Data/Übung");
    folder_.Write("Data/Übung/Orders.DBF");
    folder_.Write("Data/x.txt");
    folder_.Write("Data/X.TXT");
    const std::string base = folder_.Path();
    const struct {
        const char* stored;
        const char* local;
    } cases[] = {{"/data/übung/orders.dbf", "/Data/Übung/Orders.DBF"},
                 {"\\DATA\\ÜBUNG\\ORDERS.DBF", "/Data/Übung/Orders.DBF"},
                 {"/Data//.//Übung/", "/Data/Übung"},
                 {"/Data/Übung/../x.txt", "/Data/Übung/../x.txt"},
                 {"/data/new.txt", "/Data/new.txt"},                          // a new file in a folder that is found
                 {"/data/No/Übung/orders.dbf", "/Data/No/Übung/orders.dbf"},  // behind what is missing, as written
                 {"/Data/X.txt", "/Data/X.txt"},                              // two names would do: neither is taken
                 {"/Data/X.TXT", "/Data/X.TXT"}};
    for (const auto& [stored, local] : cases) {
        EXPECT_EQ(LocalPath(base + stored), base + local) << stored;
    }
}

TEST_F(StoredPathTest, DrivesAndSharesLieInTheApplicationFolder) {
    folder_.MakeFolder("elsewhere/In");
    folder_.MakeFolder("drives/d");
    folder_.MakeFolder("shares/Server/Pub");
    fs::create_directory_symlink(folder_.File("elsewhere"), folder_.File("drives/C"));
    const std::string base = folder_.Path();
    const struct {
        const char* stored;
        const char* local;
    } cases[] = {{"C:\\in\\a.csv", "/drives/C/In/a.csv"},
                 {"c:/IN", "/drives/C/In"},
                 {"D:\\", "/drives/d"},
                 {"d:x", "/drives/d/x"},
                 {"\\\\server\\pub\\x\\y", "/shares/Server/Pub/x/y"},
                 {"//server/pub", "/shares/Server/Pub"}};
    for (const auto& [stored, local] : cases) {
        EXPECT_EQ(LocalPath(stored), base + local) << stored;
    }
    for (const char* stored : {"E:\\x.csv", "\\\\other\\pub\\x", "\\\\server\\other\\x"}) {
        const std::string text = ErrorOf([&] { LocalPath(stored); });
        EXPECT_NE(text.find(stored), std::string::npos) << text;
        EXPECT_NE(text.find(stored[0] == 'E' ? "drives/E" : "shares/"), std::string::npos) << text;
    }
}

TEST_F(StoredPathTest, RelativeAndRootPathsStay) {
    EXPECT_EQ(LocalPath("no-such-folder\\x.txt"), "no-such-folder/x.txt");
    EXPECT_EQ(LocalPath(""), "");
    EXPECT_EQ(LocalPath("/"), "/");
    EXPECT_EQ(LocalPath("/\\no-such-file"), "/no-such-file");
    EXPECT_EQ(FolderOfProgram("/prog"), "/");
}

TEST_F(StoredPathTest, LinksThatLeadNowhereOrInACircleEnd) {
    fs::create_symlink(folder_.File("round"), folder_.File("round"));
    fs::create_symlink("gone", folder_.File("Broken"));
    EXPECT_EQ(LocalPath(folder_.File("ROUND/a/b")), folder_.File("round/a/b"));
    EXPECT_EQ(LocalPath(folder_.File("broken")), folder_.File("Broken"));
}

}  // namespace
}  // namespace varnel
