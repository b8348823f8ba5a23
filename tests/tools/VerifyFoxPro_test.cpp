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
    const ProgramResult sound = Admin({"verify", "expense details.dbf"});
    EXPECT_EQ(sound.status, 0) << sound.out << sound.err;
    EXPECT_EQ(sound.out, "expense details.dbf: sound (1 table, 6 records)\n");
    // One table of the container was copied without its index.
    const ProgramResult container = Admin({"verify", "EXPENSES.DBC"});
    EXPECT_EQ(container.status, 1);
    EXPECT_NE(container.out.find("EXPENSES.DBC: 1 finding (4 tables, "), std::string::npos) << container.out;
    EXPECT_NE(container.out.find("employees.dbf"), std::string::npos) << container.out;
    const std::string table = Folder() + "/expense details.dbf";
    std::filesystem::resize_file(table, std::filesystem::file_size(table) - 100);
    const ProgramResult damaged = Admin({"verify", "expense details.dbf"});
    EXPECT_EQ(damaged.status, 1) << damaged.out << damaged.err;
    EXPECT_NE((damaged.out + damaged.err).find("expense details.dbf"), std::string::npos);
}

}  // namespace
}  // namespace varnel
