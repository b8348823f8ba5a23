#include <gmock/gmock.h>

#include <filesystem>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

// The script with stand-ins for the system's programs, found first along PATH; each notes how it was called.
class InstallPackages : public AdminTest {
protected:
    InstallPackages() {
        Program("id", "echo 0");
        Program("dpkg-query", "for last; do :; done; [ $last = sqlite3 ] || echo installed");
        Program("apt-get", "echo \"$DEBIAN_FRONTEND\" apt-get \"$@\" >> calls");
        Program("sudo", "exit 1");
    }
    void Program(const std::string& name, const std::string& text) const {
        WriteFile(name, "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(Folder() + "/" + name, std::filesystem::perms::owner_all);
    }
    ProgramResult Install(const std::string& groups) const {
        return RunIn(Folder(), "/bin/sh",
                     {"-c", "unset DEBIAN_FRONTEND; PATH=$PWD:$PATH " VARNEL_SOURCE "/tools/install_packages " +
                                groups + "; status=$?; [ ! -f calls ] || cat calls; exit $status"});
    }
};

TEST_F(InstallPackages, CallsNobodyWhenNothingIsMissing) {
    const ProgramResult result = Install("build");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
}

TEST_F(InstallPackages, UpdatesTheListsAndInstallsOnlyWhatIsMissing) {
    const ProgramResult result = Install("build demo test");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, " apt-get update\nnoninteractive apt-get install -y --no-install-recommends sqlite3\n");
}

TEST_F(InstallPackages, TellsAnOrdinaryUserWhatToRun) {
    Program("id", "echo 1000");
    const ProgramResult result = Install("demo");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "Packages are missing and only root can install them; run: apt-get update && apt-get install "
              "--no-install-recommends sqlite3\n");
}

TEST_F(InstallPackages, RefusesAnUnknownGroup) {
    EXPECT_EQ(Install("games").status, 2);
}

}  // namespace
}  // namespace varnel
