#include "app/shared/SessionLog.h"

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "repository/model/SessionModel.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

class SessionLogTest : public testing::Test {
protected:
    void TearDown() override {
        CloseLog();
        ResetSessionModel();
    }
    TempFolder folder_;
    const std::string path_ = folder_.File("run.log");
};

TEST_F(SessionLogTest, AppendsOneBlockPerRun) {
    SessionDef.SessionName = "Nightly";
    for (int run = 0; run < 2; ++run) {
        WriteLog(path_, "VROPEN");
        WriteLog(path_, "vropen");
        WriteLog(path_, "two\r\nlines");
        CloseLog();
    }
    const std::string text = ReadBytes(path_);
    const auto second = text.find("Starting Session Nightly\r\n\r\nStart Time is :", 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(text.substr(0, 44), "Starting Session Nightly\r\n\r\nStart Time is :" + text.substr(43, 1));
    EXPECT_TRUE(text.substr(0, second).ends_with("M\r\n\r\nvropen\r\ntwo\r\nlines\r\n")) << text;
}

TEST_F(SessionLogTest, RefusesTheWrongOrderAndAMissingFolder) {
    EXPECT_THROW(WriteLog(path_, "message"), Error);
    WriteLog(path_, "VROPEN");
    EXPECT_THROW(WriteLog(path_, "VROPEN"), Error);
    CloseLog();
    EXPECT_THROW(WriteLog(folder_.File("missing/run.log"), "VROPEN"), Error);
}

TEST_F(SessionLogTest, DoesNothingWithoutAPath) {
    WriteLog("", "VROPEN");
    WriteLog("", "message");
    CloseLog();
}

}  // namespace
}  // namespace varnel
