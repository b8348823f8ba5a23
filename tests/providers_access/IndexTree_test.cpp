#include "providers/access/IndexTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"
#include "providers/access/IndexPageEdit.h"
#include "providers/access/IndexWalk.h"
#include "providers/access/VerifyIndexTree.h"
#include "tests/providers_access/AllocatedPages.h"
#include "tests/support/ErrorOf.h"

using namespace varnel;
using namespace varnel::access;

namespace {

constexpr PageNumber kOwner = 77;

/// An empty index on pages in memory.
struct TreeBench {
    AllocatedPages pages{kJet4Layout};
    RealIndex index;
    std::unique_ptr<IndexTree> tree;

    TreeBench() {
        Step step(pages);
        index.root = pages.Take({});
        IndexImage().Write(pages.Change(index.root), IndexShapeOf(kJet4Layout), kOwner);
        step.Keep();
        tree = std::make_unique<IndexTree>(pages, pages, kOwner, index);
    }

    void Insert(const std::string& entry) {
        Step step(pages);
        tree->Insert(entry);
        step.Keep();
    }
    bool Remove(const std::string& entry) {
        Step step(pages);
        const bool removed = tree->Remove(entry);
        step.Keep();
        return removed;
    }
    std::vector<std::string> Entries() {
        std::vector<std::string> entries;
        IndexWalk walk(pages, kOwner, index.root);
        std::string entry;
        while (walk.Next(entry)) entries.push_back(entry);
        return entries;
    }
    /// What is wrong with the pages, one line each.
    std::string Findings() {
        std::string found;
        const auto report = [&](PageNumber page, const std::string& what) {
            found += std::to_string(page) + ": " + what + "\n";
        };
        const IndexTreeFindings findings = VerifyIndexTree(pages, kOwner, index.root, report, [](std::string_view) {});
        if (findings.looseKeys > 0) found += std::to_string(findings.looseKeys) + " keys are not exact\n";
        if (!(findings.pages.Count() == pages.taken.Count())) found += "pages were lost\n";
        return found;
    }
};

std::string EntryOf(std::string key, std::uint32_t row) {
    AppendRowId(key, {row / 100 + 1, static_cast<std::uint8_t>(row % 100)});
    return key;
}

/// The shapes of keys that trees meet. Self-delimiting, as all keys are.
std::string KeyOfShape(int shape, std::mt19937& random) {
    const auto number = [&](std::uint32_t below) { return static_cast<std::uint32_t>(random() % below); };
    std::string key = "\x7F";
    switch (shape) {
        case 0: {  // a long
            const std::uint32_t value = number(1U << 20);
            for (const unsigned shift : {24U, 16U, 8U, 0U}) key.push_back(static_cast<char>(value >> shift & 0xFF));
            return key;
        }
        case 1:  // words of a few letters, many of them equal
            for (std::uint32_t k = number(12); k-- > 0;) key.push_back(static_cast<char>(0x4A + number(4)));
            return key + std::string("\x01\0", 2);
        case 2:  // long texts that begin alike, of very different lengths
            key += std::string(number(3) * 120, 'L');
            for (std::uint32_t k = number(140); k-- > 0;) key.push_back(static_cast<char>(0x4A + number(20)));
            return key + std::string("\x01\0", 2);
        default:  // few different keys: the row id decides
            return key + static_cast<char>(number(3));
    }
}

class IndexTreeShapes : public testing::TestWithParam<int> {};

TEST_P(IndexTreeShapes, HoldWhatASetHolds) {
    std::mt19937 random(static_cast<unsigned>(4711 + GetParam()));
    TreeBench bench;
    std::set<std::string> model;
    std::vector<std::string> inserted;
    std::uint32_t row = 0;
    for (int round = 0; round < 12; ++round) {
        const bool grows = round < 5 || (round > 7 && round < 10);
        for (int k = 0; k < 1500; ++k) {
            if (model.empty() || random() % 10 < (grows ? 8U : 1U)) {
                const std::string entry = EntryOf(KeyOfShape(GetParam(), random), row++);
                bench.Insert(entry);
                model.insert(entry);
                continue;
            }
            auto victim = model.lower_bound(KeyOfShape(GetParam(), random));
            if (victim == model.end()) victim = std::prev(victim);
            ASSERT_TRUE(bench.Remove(*victim));
            model.erase(victim);
        }
        ASSERT_EQ(bench.Findings(), "") << "round " << round;
        ASSERT_EQ(bench.Entries(), std::vector<std::string>(model.begin(), model.end()));
    }
    const std::string missing = EntryOf(KeyOfShape(GetParam(), random), row);
    EXPECT_FALSE(bench.Remove(missing));
    while (!model.empty()) {
        ASSERT_TRUE(bench.tree->Has(*model.begin()));
        ASSERT_EQ(bench.tree->Find(KeyOf(*model.begin())), RowIdOf(*model.begin()));
        ASSERT_TRUE(bench.Remove(*model.begin()));
        model.erase(model.begin());
    }
    EXPECT_EQ(bench.Findings(), "");
    EXPECT_EQ(bench.pages.taken.Count(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Keys, IndexTreeShapes, testing::Values(0, 1, 2, 3));

/// Keys of a long, ascending.
std::string LongEntry(std::uint32_t value) {
    std::string key = "\x7F";
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        key.push_back(static_cast<char>(((value | 0x80000000U) >> shift) & 0xFF));
    }
    return EntryOf(key, value);
}

TEST(IndexTree, AscendingEntriesFillTheirLeaves) {
    TreeBench bench;
    constexpr std::uint32_t kRows = 200'000;
    for (std::uint32_t k = 0; k < kRows; ++k) bench.Insert(LongEntry(k));
    EXPECT_EQ(bench.Findings(), "");
    EXPECT_EQ(bench.Entries().size(), kRows);
    // A leaf has 3,616 bytes; entries of 9 with a common start take some 6.
    EXPECT_LT(bench.pages.taken.Count(), kRows / 500);
    EXPECT_EQ(bench.tree->Find(KeyOf(LongEntry(123'456))), RowIdOf(LongEntry(123'456)));
    EXPECT_FALSE(bench.tree->Find(KeyOf(LongEntry(kRows))));
    EXPECT_NE(ErrorOf([&] { bench.Insert(LongEntry(17)); }), "");
    EXPECT_EQ(bench.Findings(), "");
}

TEST(IndexTree, AnUndoneStepIsForgotten) {
    TreeBench bench;
    for (std::uint32_t k = 0; k < 1000; ++k) {
        bench.Insert(LongEntry(2 * k));
        {
            const Step undone(bench.pages);
            bench.tree->Insert(LongEntry(2 * k + 1));
        }
        if (k % 2 == 0) bench.tree->Forget();
        EXPECT_FALSE(bench.tree->Find(KeyOf(LongEntry(2 * k + 1))));
    }
    EXPECT_EQ(bench.Findings(), "");
    EXPECT_EQ(bench.Entries().size(), 1000U);
}

/// Every byte of the headers and masks, and the first bytes of the entries, set to a few values.
TEST(IndexTree, DamagedPagesAreRefusedOrRead) {
    TreeBench bench;
    const auto entry = [](std::uint32_t k) { return std::string(80, static_cast<char>('a' + k / 40)) + LongEntry(k); };
    for (std::uint32_t k = 0; k < 200; ++k) bench.Insert(entry(2 * k));
    ASSERT_GT(bench.pages.PageCount(), 4U);
    for (PageNumber page = 1; page < 4; ++page) {
        for (std::size_t at = 0; at < 0x1F8; at += at < 0x60 || at > 0x1D8 ? 1 : 13) {
            const std::uint8_t kept = bench.pages.At(page)[at];
            for (const unsigned value : {0U, 0xFFU, kept ^ 0x10U}) {
                bench.pages.At(page)[at] = static_cast<std::uint8_t>(value);
                bench.tree->Forget();
                ErrorOf([&] { bench.Findings(); });
                ErrorOf([&] { bench.Entries(); });
                for (const std::uint32_t k : {0U, 200U, 398U}) {
                    ErrorOf([&] { bench.tree->Find(KeyOf(entry(k))); });
                    const Step undone(bench.pages);
                    ErrorOf([&] { bench.tree->Remove(entry(k)); });
                    ErrorOf([&] { bench.tree->Insert(entry(k + 1)); });
                }
            }
            bench.pages.At(page)[at] = kept;
        }
    }
    bench.tree->Forget();
    EXPECT_EQ(bench.Findings(), "");
}

}  // namespace
