#include "ui/RepaintBudget.h"

#include <gtest/gtest.h>

namespace varnel {
namespace {

using std::chrono::milliseconds;

/// How many of the drawings asked for every gap milliseconds, over a second, are let through.
int Drawings(int gap) {
    RepaintBudget budget(milliseconds(100), 3);
    const auto start = RepaintBudget::Clock::now();
    int drawn = 0;
    for (int at = 0; at < 1000; at += gap) drawn += budget.Take(start + milliseconds(at)) ? 1 : 0;
    return drawn;
}

TEST(RepaintBudget, LetsASlowRunShowEverythingAndMergesAFastOne) {
    EXPECT_EQ(Drawings(250), 4);
    EXPECT_EQ(Drawings(100), 10);
    EXPECT_EQ(Drawings(1), 10 + 2);
}

TEST(RepaintBudget, ABurstComesBackAfterAPause) {
    RepaintBudget budget(milliseconds(100), 2);
    const auto start = RepaintBudget::Clock::now();
    const auto at = [&](int when) { return budget.Take(start + milliseconds(when)); };
    EXPECT_TRUE(at(0) && at(0));
    EXPECT_FALSE(at(0) || at(99));
    EXPECT_TRUE(at(100));
    EXPECT_FALSE(at(101));
    EXPECT_TRUE(at(1000) && at(1000));
    EXPECT_FALSE(at(1000));
}

}  // namespace
}  // namespace varnel
