#include "app/shared/FailureTrap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnel {
namespace {

class FailureTrapTest : public testing::Test {
protected:
    void SetUp() override { Tally = {}; }
    static void Fail() { throw Error(ErrorKind::Io, "", "broken"); }

    std::vector<std::string> reports_;
    int aborts_ = 0;
    FailureTrap trap_{[this](const Error& error) { reports_.emplace_back(error.what()); }, [this] { ++aborts_; }};
};

TEST_F(FailureTrapTest, GoesOnAfterFiftyFailuresAndGivesUpAtTheNext) {
    int reached = 0;
    const bool ended = trap_.Run([&] {
        for (int k = 1; k <= 100; ++k) {
            trap_.Try(Fail);
            reached = k;
        }
        return true;
    });
    EXPECT_FALSE(ended);
    EXPECT_EQ(reached, 50);
    EXPECT_EQ(reports_.size(), 51u);
    EXPECT_EQ(aborts_, 1);
    EXPECT_EQ(Tally.failures, 51);
}

TEST_F(FailureTrapTest, GivesUpAtOnceWithoutANeededStep) {
    EXPECT_FALSE(trap_.Run([&] {
        trap_.Need(Fail);
        ADD_FAILURE() << "a step after a failed needed one ran";
        return true;
    }));
    EXPECT_EQ(reports_, std::vector<std::string>{"broken"});
    EXPECT_EQ(aborts_, 1);
}

TEST_F(FailureTrapTest, LetsAFailureOfTheReportItselfThrough) {
    FailureTrap trap([](const Error&) { throw Error(ErrorKind::Io, "", "log is gone"); }, [] {});
    EXPECT_THROW(trap.Run([&] { return trap.Try(Fail); }), Error);
}

}  // namespace
}  // namespace varnel
