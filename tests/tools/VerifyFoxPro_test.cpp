// varnel-admin verify on FoxPro tables and containers.
#include <filesystem>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

class VerifyFoxPro : public AdminTest {
protected:
    VerifyFoxPro() {
        std::filesystem::copy(std::filesystem::path(VARNEL_SOURCE) / "tests/data/foxpro", Folder(),
                              std::filesystem::copy_options::recursive);
    }
};

TEST_F(VerifyFoxPro, TellsSoundFilesFromDamagedOnes) {
    for (const char* file : {"suppliers.dbf", "expense details.dbf", "EXPENSES.DBC"}) {
        const ProgramResult sound = Admin({"verify", file});
        EXPECT_EQ(sound.status, 0) << sound.out << sound.err;
        EXPECT_NE(sound.out.find(std::string(file) + ": sound ("), std::string::npos) << sound.out;
    }
    // The last memos are gone.
    std::filesystem::resize_file(Folder() + "/suppliers.fpt", 600);
    const ProgramResult damaged = Admin({"verify", "suppliers.dbf"});
    EXPECT_EQ(damaged.status, 1) << damaged.out;
    EXPECT_NE(damaged.out.find("suppliers.fpt"), std::string::npos) << damaged.out;
}

}  // namespace
}  // namespace varnel
