#include "providers/access/FileHeader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/providers_access/SampleFiles.h"
#include "tests/support/ErrorOf.h"

namespace varnel::access {
namespace {

std::vector<std::uint8_t> Sample(const std::string& name) {
    return BytesOfFile(SamplePath(name).value());
}

FileHeader Parse(const std::vector<std::uint8_t>& bytes) {
    return ParseFileHeader(bytes, bytes.size(), "x.mdb");
}

TEST(FileHeaderTest, ReadsEveryVersion) {
    for (const auto& [name, version] : {std::pair{"testIndexCodesV1997.mdb", Version::Jet3},
                                        {"adox_jet4.mdb", Version::Jet4},
                                        {"linkerTestV2007.accdb", Version::Ace}}) {
        std::vector<std::uint8_t> bytes = Sample(name);
        EXPECT_EQ(Parse(bytes).password, "");
        // Under its masks the password is empty; each unit is exclusive-ored into its place.
        std::size_t at = 0x42;
        for (const char c : std::string_view("Secret7")) {
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ static_cast<unsigned char>(c));
            at += version == Version::Jet3 ? 1 : 2;
        }
        const FileHeader header = Parse(bytes);
        EXPECT_EQ(header.layout->version, version);
        EXPECT_EQ(header.freePages, (RowPointer{1, 0}));
        EXPECT_EQ(header.releasedPages, (RowPointer{1, 1}));
        EXPECT_EQ(header.catalog, 2u);
        EXPECT_EQ(header.codePage, 1252);
        EXPECT_EQ(header.sortOrder.language, 0x0409);
        EXPECT_FALSE(header.encrypted);
        EXPECT_EQ(header.password, "Secret7");
        EXPECT_EQ(ErrorOf([&] { CheckPassword(header, "secret7", "x.mdb"); }), "Not a valid password.");
        EXPECT_EQ(ErrorOf([&] { CheckPassword(header, "Secret7", "x.mdb"); }), "");
    }
}

TEST(FileHeaderTest, RefusesWhatIsNoneOfOurs) {
    const std::vector<std::uint8_t> good = Sample("adox_jet4.mdb");
    const auto with = [&](std::size_t at, std::uint8_t byte) {
        std::vector<std::uint8_t> bytes = good;
        bytes[at] = byte;
        return bytes;
    };
    using Bytes = std::vector<std::uint8_t>;
    for (const Bytes& file : {Bytes(), with(4, 's'), Bytes(good.begin(), good.begin() + 0x97)})
        EXPECT_EQ(ErrorOf([&] { Parse(file); }), "Unrecognized database format 'x.mdb'");
    EXPECT_EQ(ErrorOf([&] {
                  Parse({good.begin(), good.begin() + 4095});
              }),
              "'x.mdb' is an Access file that was cut off");
    EXPECT_THAT(ErrorOf([&] { Parse(with(0x14, 9)); }), testing::HasSubstr("unknown version 9"));
    EXPECT_TRUE(Parse(with(0x3E, good[0x3E] ^ 7)).encrypted);
}

}  // namespace
}  // namespace varnel::access
