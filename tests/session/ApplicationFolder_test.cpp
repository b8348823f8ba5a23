// One folder with the program, or a link to it, and its repository is one installation, however it is started.
#include <cstdlib>
#include <filesystem>

#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

class ApplicationFolderTest : public SessionTest {
protected:
    ApplicationFolderTest() {
        folder_.MakeFolder("elsewhere");
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "t", 3);
        NativeSqlite(Path("target.db")).Run({"create table t_copy (ID int)"});
        session_.tables = {{"t", "t_copy", {{"ID", "Integer", 4}}, true, "append"}};
    }
    std::int64_t Loaded() { return NativeSqlite(Path("target.db")).Count("t_copy"); }
};

TEST_F(ApplicationFolderTest, IsTheFolderOfThePathByWhichTheProgramWasStarted) {
    repository_.Add(session_);
    const std::string there = Path("elsewhere");
    struct Case {
        const char *name, *program, *from;
        std::vector<std::string> words;
    };
    const Case cases[] = {
        {"absolute", "FOLDER/varnel", "elsewhere", {"1"}},
        {"relative, below", "../varnel", "elsewhere", {"1"}},
        {"relative, here", "./varnel", "", {"1"}},
        {"with dots", "FOLDER/elsewhere/.././varnel", "", {"1"}},
        {"along PATH", "/usr/bin/env", "elsewhere", {"PATH=/nowhere:FOLDER:/usr/bin", "varnel", "1"}},
        {"along a relative PATH", "/usr/bin/env", "elsewhere", {"PATH=..", "varnel", "1"}},
        {"a hard start by its name", "/bin/sh", "", {"-c", "exec ./varnel 1"}},
    };
    std::int64_t loaded = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto filled = [&](std::string text) {
            const std::size_t at = text.find("FOLDER");
            return at == std::string::npos ? text : text.replace(at, 6, folder_.Path());
        };
        std::vector<std::string> words;
        for (const std::string& word : c.words) words.push_back(filled(word));
        EXPECT_EQ(RunningProgram(filled(c.program), words, Path(c.from), Path("output.txt")).Wait(), 0);
        EXPECT_EQ(Loaded(), loaded += 3) << Content("Varnel.log") << Content("output.txt");
    }
    EXPECT_FALSE(std::filesystem::exists(Path("Varnel.log")));
}

TEST_F(ApplicationFolderTest, FollowsNoLinkToAnotherInstallation) {
    repository_.Add(session_);
    std::filesystem::create_symlink(Path("varnel"), Path("elsewhere/varnel"));
    EXPECT_EQ(RunningProgram(Path("elsewhere/varnel"), {"1"}, folder_.Path(), Path("output.txt")).Wait(), 2);
    EXPECT_NE(Content("elsewhere/Varnel.log").find("vrrepo.mdb"), std::string::npos);
    EXPECT_EQ(Loaded(), 0);
}

TEST_F(ApplicationFolderTest, WindowsPathsLeadThroughDrivesAndShares) {
    folder_.MakeFolder("shares/server");
    folder_.MakeFolder("data/Sub Folder");
    folder_.MakeFolder("drives");
    std::filesystem::create_symlink(Path("data"), Path("drives/c"));
    std::filesystem::create_symlink(Path("data"), Path("shares/server/pub"));
    std::filesystem::rename(Path("source.db"), Path("data/Sub Folder/Source.db"));
    std::filesystem::rename(Path("target.db"), Path("data/target.db"));
    session_.sourceConnection =
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\sub folder\\SOURCE.DB;User ID=admin;"
        "Password=";
    session_.targetConnection = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\\\\SERVER\\pub\\target.db";
    session_.log = "C:\\Sub Folder\\run.log";
    EXPECT_EQ(Run(), 0) << Content("Varnel.log");
    EXPECT_EQ(NativeSqlite(Path("data/target.db")).Count("t_copy"), 3);
    EXPECT_NE(Content("data/Sub Folder/run.log").find(" 3 Rows Loaded"), std::string::npos);
}

TEST_F(ApplicationFolderTest, AMissingDriveIsNamedWithItsRemedy) {
    session_.sourceConnection = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=D:\\data\\source.db";
    EXPECT_EQ(Run(), 1);
    EXPECT_GE(InLog("make 'drives/D' in '" + folder_.Path() + "' a folder, or a link to one"), 1) << log_;
    EXPECT_TRUE(LogIsClosed());
}

}  // namespace
}  // namespace varnel
