#include <gtest/gtest.h>

#include <cmath>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"

namespace varnel {
namespace {

struct ReadCase {
    const char* text;
    const char* moment;  // in ISO form
};

TEST(ParseDateTimeTest, ReadsTheUsualForms) {
    const ReadCase cases[] = {{"11/18/2026 4:23:05 PM", "2026-11-18 16:23:05"},
                              {"2026-11-18", "2026-11-18 00:00:00"},
                              {"2026-11-18 16:23:05", "2026-11-18 16:23:05"},
                              {"2026-11-18 16:23:05.25", "2026-11-18 16:23:05.25"},
                              {"2026-11-18T16:23:05", "2026-11-18 16:23:05"},
                              {"2026-11-18 16:23:05.000001", "2026-11-18 16:23:05.000001"},
                              {"2026-11-18 16:23:05.1234560", "2026-11-18 16:23:05.123456"},
                              {" 2026-11-18 04:23:05 PM ", "2026-11-18 16:23:05"},
                              {"2026-11-18 16:23", "2026-11-18 16:23:00"},
                              {"16:23:05", "1899-12-30 16:23:05"},
                              {"4:23 PM", "1899-12-30 16:23:00"},
                              {"4:23pm", "1899-12-30 16:23:00"},
                              {"12:00:00 AM", "1899-12-30 00:00:00"},
                              {"12:30 PM", "1899-12-30 12:30:00"},
                              {"18-Nov-2026", "2026-11-18 00:00:00"},
                              {"18-november-26", "2026-11-18 00:00:00"},
                              {"1-2-2026", "2026-01-02 00:00:00"},
                              {"13/2/2026", "2026-02-13 00:00:00"},
                              {"1/2/29", "2029-01-02 00:00:00"},
                              {"1/2/30", "1930-01-02 00:00:00"},
                              {"1/1/100", "0100-01-01 00:00:00"},
                              {"2/29/2024", "2024-02-29 00:00:00"},
                              {"2026/1/5 9:05:00", "2026-01-05 09:05:00"},
                              {"0001-01-01", "0001-01-01 00:00:00"},
                              {"9999-12-31 23:59:59.999999", "9999-12-31 23:59:59.999999"}};
    for (const auto& [text, moment] : cases) {
        const auto read = ParseDateTime(text);
        ASSERT_TRUE(read.has_value()) << text;
        std::string iso;
        AppendIsoDateTime(iso, *read);
        EXPECT_EQ(iso, moment) << text;
    }
}

TEST(ParseDateTimeTest, RefusesEverythingElse) {
    const std::vector<const char*> noDays = {"",           " ",          "2026",        "2026-11",     "2/30/2026",
                                             "2023-02-29", "13/13/2026", "2026-11/18",  "18-Foo-2026", "20261-11-18",
                                             "0000-00-00", "1/1/10000",  "2026-11-18x", "-1-1-2026"};
    const std::vector<const char*> noTimes = {"2026-11-18 24:00:00",
                                              "16:60",
                                              "13:00 PM",
                                              "0:10 AM",
                                              "4 PM",
                                              "2026-11-18 16",
                                              "2026-11-18 16:23:05Z",
                                              "2026-11-18 16:23:05+01:00",
                                              "2026-11-18 16:23:05.1234567",
                                              "2026-11-18 16:23:05.",
                                              "11/18/2026 4:23:05 PM PM",
                                              "123:00",
                                              "2026-11-18 16:23:05 x"};
    for (const auto& texts : {noDays, noTimes})
        for (const char* text : texts) EXPECT_FALSE(ParseDateTime(text).has_value()) << text;
}

TEST(ParseDateTimeTest, ReadsBackTheGeneralDate) {
    for (const char* text : {"2026-11-18 16:23:05", "1950-01-01", "1899-12-30 12:00:00", "0100-01-01 00:00:01"}) {
        const auto moment = ParseDateTime(text);
        ASSERT_TRUE(moment.has_value());
        EXPECT_EQ(ParseDateTime(GeneralDate(*moment)), moment) << text;
    }
}

TEST(ParseDoubleTest, ReadsWhatAPersonWrites) {
    const struct {
        const char* text;
        double number;
    } cases[] = {{"42", 42},     {" -7.5 ", -7.5},
                 {"+.5", 0.5},   {"5.", 5},
                 {"1e3", 1000},  {"1E-2", 0.01},
                 {"0.1", 0.1},   {"1e-999", 0},
                 {"-1e-400", 0}, {"0.0000000000000000000000000000000000000000000", 0}};
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(ParseDouble(text), number) << text;
    }
    for (const char* text :
         {"", "-", ".", "+-1", "1e", "1e999", "inf", "nan", "0x10", "1,5", "1 2", "$5", "1d3", "12abc"}) {
        EXPECT_FALSE(ParseDouble(text).has_value()) << text;
    }
}

}  // namespace
}  // namespace varnel
