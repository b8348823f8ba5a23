// The module's one entry point. Every case is a process of its own, as the program is.
#include "ui/WindowModule.h"

#include <gtest/gtest.h>

#include <QLibrary>
#include <clocale>

namespace varnel {
namespace {

class WindowModuleTest : public testing::Test {
protected:
    WindowModuleTest() {
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) qunsetenv(name);
        request_.cancelRequested = &cancelRequested_;
    }
    std::unique_ptr<ProgressForm> Open() {
        QLibrary module(VARNEL_WINDOW_MODULE);
        auto* open = reinterpret_cast<OpenWindowFunction*>(module.resolve(kOpenWindowName));
        EXPECT_NE(open, nullptr) << module.errorString().toStdString();
        return open == nullptr ? nullptr : std::unique_ptr<ProgressForm>(open(&request_));
    }

    bool cancelRequested_ = false;
    WindowRequest request_;
};

TEST_F(WindowModuleTest, LeavesTheWayNumbersAreWrittenAlone) {
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto window = Open();
    ASSERT_NE(window, nullptr) << request_.refusal;
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST_F(WindowModuleTest, RefusesWithoutADisplay) {
    EXPECT_EQ(Open(), nullptr);
    EXPECT_NE(std::string(request_.refusal).find("no display"), std::string::npos);
}

TEST_F(WindowModuleTest, RefusesADisplayThatCannotBeReached) {
    qputenv("DISPLAY", ":65000");
    EXPECT_EQ(Open(), nullptr);
    EXPECT_STREQ(request_.refusal, "the display cannot be reached");
}

TEST_F(WindowModuleTest, RefusesAProgramOfAnotherVersion) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    request_.agreement = kWindowAgreement + 1;
    EXPECT_EQ(Open(), nullptr);
    EXPECT_NE(std::string(request_.refusal).find("version"), std::string::npos);
}

}  // namespace
}  // namespace varnel
