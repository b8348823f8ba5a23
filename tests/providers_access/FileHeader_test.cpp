#include "providers/access/FileHeader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "tests/providers_access/JetFileBuilder.h"
#include "tests/support/ErrorOf.h"

namespace varnel::access {
namespace {

FileHeader Parse(const std::string& file) {
    const std::vector<std::uint8_t> bytes(file.begin(), file.end());
    return ParseFileHeader(bytes, bytes.size(), "x.mdb");
}

TEST(FileHeaderTest, ReadsEveryVersion) {
    struct Case {
        std::uint8_t version;
        Version expected;
    };
    for (const auto& [version, expected] :
         {Case{0, Version::Jet3}, {1, Version::Jet4}, {2, Version::Ace}, {5, Version::Ace}}) {
        const FileHeader header = Parse(JetFileBuilder(version).Password("Secret7").Build(3));
        EXPECT_EQ(header.layout->version, expected);
        EXPECT_EQ(header.freePages, (RowPointer{1, 0}));
        EXPECT_EQ(header.releasedPages, (RowPointer{1, 1}));
        EXPECT_EQ(header.catalog, 2u);
        EXPECT_EQ(header.codePage, 1252);
        EXPECT_EQ(header.sortOrder.language, expected == Version::Jet3 ? 0 : 0x0409);
        EXPECT_FALSE(header.encrypted);
        EXPECT_EQ(header.password, "Secret7");
        EXPECT_EQ(ErrorOf([&, h = header] { CheckPassword(h, "secret7", "x.mdb"); }), "Not a valid password.");
        EXPECT_EQ(ErrorOf([&, h = header] { CheckPassword(h, "Secret7", "x.mdb"); }), "");
    }
    EXPECT_EQ(Parse(JetFileBuilder().Build(3)).password, "");
}

TEST(FileHeaderTest, RefusesWhatIsNoneOfOurs) {
    const std::string good = JetFileBuilder().Build(3);
    std::string otherText = good;
    otherText[4] = 's';
    for (const std::string& file : {std::string(), std::string("SQLite format 3"), otherText, good.substr(0, 0x97)}) {
        EXPECT_EQ(ErrorOf([&] { Parse(file); }), "Unrecognized database format 'x.mdb'");
    }
    EXPECT_EQ(ErrorOf([&] { Parse(good.substr(0, good.size() - 1)); }), "'x.mdb' is an Access file that was cut off");
    EXPECT_THAT(ErrorOf([&] { Parse(JetFileBuilder(9).Build(3)); }), testing::HasSubstr("unknown version 9"));
    EXPECT_TRUE(Parse(JetFileBuilder().Put(0x3E, 7, 4).Build(3)).encrypted);
}

}  // namespace
}  // namespace varnel::access
