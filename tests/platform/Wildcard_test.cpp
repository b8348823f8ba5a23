#include "platform/Wildcard.h"

#include <gtest/gtest.h>

#include <string>

namespace varnel {
namespace {

struct MatchCase {
    const char* name;
    const char* pattern;
    bool matches;
};

TEST(WildcardTest, Matches) {
    for (const auto& [name, pattern, matches] : {MatchCase{"orders.csv", "*.csv", true},
                                                 {"ORDERS.CSV", "*.csv", true},
                                                 {"orders.csv.bak", "*.csv", false},
                                                 {"orders", "*.*", true},
                                                 {"orders.csv", "*.*", true},
                                                 {"orders", "*", true},
                                                 {"", "*", true},
                                                 {"orders", "*.csv", false},
                                                 {"a1.txt", "a?.txt", true},
                                                 {"a.txt", "a?.txt", true},
                                                 {"a.txt", "a???.txt", true},
                                                 {"ab", "ab?", true},
                                                 {"abc", "ab?", true},
                                                 {"abcd", "ab?", false},
                                                 {"b.txt", "?a.txt", false},
                                                 {"xay", "?a?", true},
                                                 {"a?b", "a?b", true},
                                                 {"ab", "a?b", false},
                                                 {"file.html", "*.htm", false},
                                                 {"ÄRGER.txt", "ä*.TXT", true},
                                                 {"ö", "?", true},
                                                 {"öö", "?", false},
                                                 {"aXbXc", "*x*x*", true},
                                                 {"aXbc", "*x*x*", false},
                                                 {"", "", true},
                                                 {"a", "", false},
                                                 {"", "a", false},
                                                 {"[x].txt", "[x].txt", true},
                                                 {"x.txt", "[x].txt", false},
                                                 {"x.txt", "*.txt.*", true},
                                                 {"\xFF.txt", "?.txt", true}}) {
        EXPECT_EQ(MatchesWildcard(name, pattern), matches) << name << " against " << pattern;
    }
}

TEST(WildcardTest, ManyStarsTakeNoLongTime) {
    const std::string name(5000, 'a');
    std::string pattern;
    for (int k = 0; k < 30; ++k) pattern += "a*";
    EXPECT_FALSE(MatchesWildcard(name, pattern + "b"));
}

}  // namespace
}  // namespace varnel
