#include "platform/Wildcard.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnel {
namespace {

TEST(WildcardTest, Matches) {
    const struct {
        const char* pattern;
        std::vector<const char*> matching, other;
    } cases[] = {{"*.csv", {"orders.csv", "ORDERS.CSV"}, {"orders.csv.bak", "orders"}},
                 {"*.*", {"orders", "orders.csv"}, {}},
                 {"*", {"orders", ""}, {}},
                 {"a?.txt", {"a1.txt", "a.txt"}, {}},
                 {"a???.txt", {"a.txt"}, {}},
                 {"ab?", {"ab", "abc"}, {"abcd"}},
                 {"?a.txt", {}, {"b.txt"}},
                 {"?a?", {"xay"}, {}},
                 {"a?b", {"a?b"}, {"ab"}},
                 {"*.htm", {}, {"file.html"}},
                 {"ä*.TXT", {"ÄRGER.txt"}, {}},
                 {"?", {"ö"}, {"öö"}},
                 {"*x*x*", {"aXbXc"}, {"aXbc"}},
                 {"", {""}, {"a"}},
                 {"a", {}, {""}},
                 {"[x].txt", {"[x].txt"}, {"x.txt"}},
                 {"*.txt.*", {"x.txt"}, {}},
                 {"?.txt", {"\xFF.txt"}, {}}};
    for (const auto& one : cases) {
        for (const char* name : one.matching) EXPECT_TRUE(MatchesWildcard(name, one.pattern)) << name << one.pattern;
        for (const char* name : one.other) EXPECT_FALSE(MatchesWildcard(name, one.pattern)) << name << one.pattern;
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
