#include <gmock/gmock.h>

#include <filesystem>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;

// A small house of its own, with the real rules and the real script.
class CheckIncludes : public AdminTest {
protected:
    CheckIncludes() {
        for (const char* folder : {"tools", "platform", "ado/types", "load", "tests/load"})
            fs::create_directories(Folder() + "/" + folder);
        fs::copy_file(VARNEL_SOURCE "/tools/allowed_includes", Folder() + "/tools/allowed_includes");
        WriteFile("platform/Error.h", "#pragma once\n#include <string>\n");
        WriteFile("ado/types/Value.h", "#pragma once\n#include \"platform/Error.h\"\n");
        WriteFile("load/Load.h", "#include \"ado/types/Value.h\"\n");
    }
    ProgramResult Check() const { return RunIn(Folder(), VARNEL_SOURCE "/tools/check_includes", {Folder()}); }
};

TEST_F(CheckIncludes, PassesAHouseInOrder) {
    const ProgramResult result = Check();
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_EQ(result.out, "3 files, 0 faults\n");
}

struct Planted {
    const char* file;
    const char* text;
    const char* message;
};

TEST_F(CheckIncludes, NamesFileAndLineOfEveryBreach) {
    const Planted cases[] = {
        {"platform/Bad.cpp", "\n#include \"ado/types/Value.h\"\n",
         "platform/Bad.cpp:2: platform may not include ado/types"},
        {"ado/types/Bad.h", "#include \"load/Load.h\"\n", "ado/types/Bad.h:1: ado/types may not include load"},
        {"load/Bad.cpp", "#  include <sqlite3.h>\n",
         "load/Bad.cpp:1: <sqlite3.h> may be included only in: providers/sql"},
        {"load/Window.cpp", "#include <QWidget>\n", "load/Window.cpp:1: <QWidget> may be included only in: ui/qt"},
        {"load/System.cpp", "#include <unistd.h>\n", "load/System.cpp:1: <unistd.h>"},
        {"load/Gone.cpp", "int a;\n\n#include \"load/Gone.h\"\n", "load/Gone.cpp:3: \"load/Gone.h\" does not exist"},
        {"load/Near.cpp", "#include \"Load.h\"\n", "load/Near.cpp:1: \"Load.h\" does not exist"},
        {"nowhere/Bad.cpp", "#include \"load/Load.h\"\n", "nowhere/Bad.cpp:1: nowhere may not include load"},
    };
    for (const Planted& planted : cases) {
        fs::create_directories(fs::path(Folder() + "/" + planted.file).parent_path());
        WriteFile(planted.file, planted.text);
        const ProgramResult result = Check();
        EXPECT_EQ(result.status, 1) << planted.file;
        EXPECT_THAT(result.out, testing::HasSubstr(planted.message));
        EXPECT_THAT(result.out, testing::HasSubstr(" 1 faults\n"));
        fs::remove(Folder() + "/" + planted.file);
    }
}

TEST_F(CheckIncludes, TestsMayIncludeAnythingOfTheHouse) {
    WriteFile("tests/load/Load_test.cpp", "#include <gtest/gtest.h>\n#include \"load/Load.h\"\n");
    EXPECT_EQ(Check().status, 0);
}

}  // namespace
}  // namespace varnel
