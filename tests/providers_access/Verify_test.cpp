#include "providers/access/Verify.h"

#include <gtest/gtest.h>

#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"

using namespace varnel;
using namespace varnel::access;

namespace {

FileReport Verified(std::vector<std::uint8_t> bytes) {
    const Layout shape = LayoutOf(bytes);
    MemoryPageFile file(std::move(bytes), shape, "sample.mdb");
    return VerifyDatabase(file);
}

std::string Lines(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += text + "\n";
    return all;
}

class SoundSamples : public testing::TestWithParam<const char*> {};

TEST_P(SoundSamples, HaveNoFindings) {
    const auto path = SamplePath(GetParam());
    if (!path) GTEST_SKIP() << "no sample file " << GetParam();
    const FileReport report = Verified(BytesOfFile(*path));
    EXPECT_EQ(Lines(report.findings), "");
    std::printf("%s", Lines(report.notes).c_str());
    EXPECT_EQ(report.extent, "");
}

INSTANTIATE_TEST_SUITE_P(Files, SoundSamples,
                         testing::Values("adox_jet4.mdb", "compIndexTestV2000.mdb", "fixedNumericTestV2000.mdb",
                                         "indexTestV2000.mdb", "linkerTestV2007.accdb", "nwind97.mdb",
                                         "overflowTestV2000.mdb", "queryTestV2000.mdb", "test2V2003.mdb",
                                         "testIndexCodesV1997.mdb", "testIndexPropertiesV2000.mdb",
                                         "testUnicodeCompV2003.mdb"));

}  // namespace
