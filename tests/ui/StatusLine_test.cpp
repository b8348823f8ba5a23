#include "ui/StatusLine.h"

#include <gtest/gtest.h>

namespace varnel {
namespace {

struct LineCase {
    const char* name;
    TableProgress progress;
    int columns;
    const char* line;
};

void PrintTo(const LineCase& c, std::ostream* out) {
    *out << c.name;
}

class StatusLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(StatusLineTest, TellsWhatIsKnownInTheRoomThereIs) {
    EXPECT_EQ(StatusLine(GetParam().progress, GetParam().columns), GetParam().line);
}

const TableProgress kHalf{"5000 of 10000 Rows Loaded", 5000, 10000, 4};

INSTANTIATE_TEST_SUITE_P(
    Lines, StatusLineTest,
    testing::Values(
        LineCase{"Whole", kHalf, 76, "5000 of 10000 Rows Loaded [##########..........]  50% 1,250 rows/s 0:04 left"},
        LineCase{"NoRoomForABar", kHalf, 56, "5000 of 10000 Rows Loaded  50% 1,250 rows/s 0:04 left"},
        LineCase{"CutAtTheEnd", kHalf, 30, "5000 of 10000 Rows Loaded  50%"},
        LineCase{"NoMaximum", {"7 of 0 Rows Loaded", 7, 0, 2}, 60, "7 of 0 Rows Loaded 4 rows/s"},
        LineCase{"FirstInstants", {"7 of 70 Rows Loaded", 7, 70, 0.1}, 37, "7 of 70 Rows Loaded [#.........]  10%"},
        LineCase{"Hours", {"x", 100, 1'000'100, 100}, 53, "x [....................]   0% 1 rows/s 277:46:40 left"},
        LineCase{"BeyondTheMaximum", {"x", 10, 10, 0}, 14, "x [#####] 100%"}, LineCase{"NoColumns", kHalf, -1, ""}),
    [](const auto& c) { return std::string(c.param.name); });

}  // namespace
}  // namespace varnel
