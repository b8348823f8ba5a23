// The indexes of real files: every entry is the key that we build from its row.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"
#include "providers/access/Schema.h"
#include "providers/access/TableScan.h"
#include "providers/access/UsageMapReader.h"
#include "providers/access/VerifyIndexTree.h"
#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"

using namespace varnel;
using namespace varnel::access;

namespace {

/// How many indexes and entries were compared, and what differed.
struct Outcome {
    std::size_t indexes = 0, entries = 0, withoutKeys = 0;
    std::string differences;
};

class SampleIndexes {
public:
    explicit SampleIndexes(std::shared_ptr<PageFile> file) : file_(std::move(file)), schema_(file_, 2, 1252) {}

    Outcome Compare() {
        for (const CatalogEntry& entry : schema_.Objects().Entries()) {
            if (entry.type != kLocalTable) continue;
            table_ = schema_.DefinitionOf(entry);
            for (const RealIndex& index : table_->realIndexes) CompareIndex(index);
        }
        return outcome_;
    }

private:
    void CompareIndex(const RealIndex& index) {
        std::vector<std::string> stored;
        const auto report = [&](PageNumber page, const std::string& what) {
            outcome_.differences +=
                table_->name + "." + index.name + ", page " + std::to_string(page) + ": " + what + "\n";
        };
        const IndexTreeFindings tree = VerifyIndexTree(*file_, table_->Id(), index.root, report,
                                                       [&](std::string_view entry) { stored.emplace_back(entry); });
        EXPECT_EQ(tree.pages, ReadUsageMap(*file_, index.map)) << table_->name << "." << index.name;
        const IndexKey key(*table_, index);
        const bool oldTexts = file_->Shape().version == Version::Jet3 && HasText(key);
        if (!key.Obstacle().empty() || oldTexts) {
            ++outcome_.withoutKeys;
            return;
        }
        ++outcome_.indexes;
        outcome_.entries += stored.size();
        CompareEntries(index, stored, BuiltEntries(key));
    }

    bool HasText(const IndexKey& key) const {
        return std::any_of(key.Positions().begin(), key.Positions().end(), [&](std::size_t at) {
            const ColumnType type = table_->columns[at].type;
            return type == ColumnType::Text || type == ColumnType::Memo;
        });
    }

    std::vector<std::string> BuiltEntries(const IndexKey& key) {
        std::vector<std::string> built;
        TableScan scan(*file_, *table_, {});
        const MemoText noMemos = [](std::size_t) -> Bytes { throw Error(ErrorKind::Misuse, "", "a memo"); };
        RowView row(file_->Shape().version);
        std::string entry;
        while (scan.Next()) {
            EXPECT_EQ(scan.RowFault(), nullptr);
            EXPECT_EQ(row.Attach(scan.Row()), nullptr);
            if (key.BuildStored(entry, row, noMemos) == KeyState::NoEntry) continue;
            AppendRowId(entry, scan.Where());
            built.push_back(entry);
        }
        std::sort(built.begin(), built.end());
        return built;
    }

    void CompareEntries(const RealIndex& index, const std::vector<std::string>& stored,
                        const std::vector<std::string>& built) {
        if (stored == built) return;
        std::vector<std::string> differing;
        std::set_symmetric_difference(stored.begin(), stored.end(), built.begin(), built.end(),
                                      std::back_inserter(differing));
        outcome_.differences += table_->name + "." + index.name + ": " + std::to_string(differing.size()) + " of " +
                                std::to_string(stored.size()) + " entries\n";
    }

    std::shared_ptr<PageFile> file_;
    Schema schema_;
    std::shared_ptr<const TableDefinition> table_;
    Outcome outcome_;
};

struct SampleCase {
    const char* file;
    std::size_t indexes, entries, withoutKeys;
    const char* differences;
};

class NativeIndexes : public testing::TestWithParam<SampleCase> {};

TEST_P(NativeIndexes, HoldTheKeysThatWeBuild) {
    const auto path = SamplePath(GetParam().file);
    if (!path) GTEST_SKIP() << "no sample file " << GetParam().file;
    const auto bytes = BytesOfFile(*path);
    const Outcome outcome =
        SampleIndexes(std::make_shared<MemoryPageFile>(bytes, LayoutOf(bytes), GetParam().file)).Compare();
    EXPECT_EQ(outcome.differences, GetParam().differences);
    EXPECT_EQ(outcome.indexes, GetParam().indexes);
    EXPECT_EQ(outcome.entries, GetParam().entries);
    EXPECT_EQ(outcome.withoutKeys, GetParam().withoutKeys);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, NativeIndexes,
    testing::Values(SampleCase{"adox_jet4.mdb", 7, 32, 0, ""}, SampleCase{"compIndexTestV2000.mdb", 9, 599, 0, ""},
                    SampleCase{"fixedNumericTestV2000.mdb", 11, 106, 0, ""},
                    SampleCase{"indexTestV2000.mdb", 21, 249, 0, ""},
                    SampleCase{"linkerTestV2007.accdb", 24, 343, 0, ""}, SampleCase{"nwind97.mdb", 24, 17666, 23, ""},
                    SampleCase{"overflowTestV2000.mdb", 8, 99, 0, ""}, SampleCase{"queryTestV2000.mdb", 8, 242, 0, ""},
                    SampleCase{"test2V2003.mdb", 17, 211, 0, ""},
                    SampleCase{"testIndexCodesV1997.mdb", 24, 583, 47, ""},
                    SampleCase{"testIndexPropertiesV2000.mdb", 23, 206, 0, ""},
                    // The key of one row was written by another program, its own way.
                    SampleCase{"testUnicodeCompV2003.mdb", 20, 272, 0, "Table.Unicode: 2 of 8 entries\n"}),
    [](const auto& row) {
        std::string name = row.param.file;
        return name.substr(0, name.find('.'));
    });

}  // namespace
