#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "platform/ByteView.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Rounding.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(ByteViewTest, ReadsBothByteOrders) {
    const std::array<std::uint8_t, 9> bytes{0x01, 0x82, 0x03, 0x84, 0x05, 0x06, 0x07, 0x88, 'x'};
    const ByteView view(bytes, "page");
    EXPECT_EQ(view.U16(0), 0x8201);
    EXPECT_EQ(view.U16Big(0), 0x0182);
    EXPECT_EQ(view.U32(0), 0x84038201u);
    EXPECT_EQ(view.U32Big(1), 0x82038405u);
    EXPECT_EQ(view.U64(0), 0x8807060584038201u);
    EXPECT_TRUE(view.StartsWithAt(8, "x"));
    EXPECT_FALSE(view.StartsWithAt(8, "xy"));
    EXPECT_FALSE(view.StartsWithAt(std::numeric_limits<std::size_t>::max(), "x"));
}

TEST(ByteViewTest, RefusesWhatPassesTheEnd) {
    const std::array<std::uint8_t, 4> bytes{};
    const ByteView view(bytes, "orders.dbf");
    constexpr std::size_t kHuge = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(view.Part(4, 0).size(), 0u);
    EXPECT_THROW(view.Part(5, 0), Error);
    EXPECT_THROW(view.Part(1, kHuge), Error);
    EXPECT_THROW(view.Part(kHuge, 2), Error);
    EXPECT_THROW(view.U32(1), Error);
    EXPECT_NE(ErrorOf([&] { view.U8(4); }).find("orders.dbf"), std::string::npos);
}

struct RoundCase {
    double number, expected;
};

TEST(RoundingTest, SendsTiesToTheEvenNeighbour) {
    for (const auto& [number, expected] : {RoundCase{2.5, 2},
                                           {3.5, 4},
                                           {-2.5, -2},
                                           {-3.5, -4},
                                           {0.5, 0},
                                           {1.4999, 1},
                                           {-0.6, -1},
                                           {0.49999999999999994, 0},
                                           {4503599627370497.5, 4503599627370498},
                                           {9007199254740993.0, 9007199254740992}}) {
        EXPECT_EQ(RoundTiesToEven(number), expected) << number;
    }
}

TEST(RoundingTest, ChecksTheRangeAfterRounding) {
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ToInt16(-32768.5), -32768);
    EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(ToInt64(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ErrorOf([] { ToInt16(32767.5); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { ToInt32(-2147483648.6); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { ToInt64(9223372036854775808.0); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { ToInt64(std::nan("")); }), "Overflow");
}

TEST(ClockTest, CutsTheFractionOfASecond) {
    const DateTime now = NowToTheSecond();
    EXPECT_EQ(now.micros % kMicrosPerSecond, 0);
    EXPECT_LE(now, Now());
    EXPECT_GE(ToCivil(now).year, 2024);
}

}  // namespace
}  // namespace varnel
