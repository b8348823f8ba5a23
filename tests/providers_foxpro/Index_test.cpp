#include <gmock/gmock.h>

#include <map>
#include <random>

#include "platform/Error.h"
#include "tests/providers_foxpro/IndexTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorOf.h"

namespace varnel::foxpro {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(SampleIndexes, HoldTheKeysOfTheirRecords) {
    const TempFolder folder;
    CopySamples(folder, kExpenses);
    CopySamples(folder, {"suppliers.dbf", "suppliers.fpt", "suppliers.cdx"});
    for (const char* name : {"EXPENSES.DBC", "expense categories.dbf", "expense details.dbf", "expense reports.dbf"}) {
        EXPECT_THAT(CheckIndex(*DbfFile::Open(folder.File(name))), IsEmpty()) << name;
    }
    // Its container is not here, so the long name of one column is unknown; the other two tags are right.
    EXPECT_THAT(CheckIndex(*DbfFile::Open(folder.File("suppliers.dbf"))),
                ElementsAre(HasSubstr("COMPANYNAM: in 'UPPER(companyname)' the table has no field 'companyname'")));
    EXPECT_THAT(CheckIndex(*DbfFile::Open(folder.File("employees.dbf"))), ElementsAre(HasSubstr("not there")));
}

/// The suppliers with the one long name that their container gave.
std::shared_ptr<DbfFile> Suppliers(const TempFolder& folder) {
    CopySamples(folder, {"suppliers.dbf", "suppliers.fpt", "suppliers.cdx"});
    std::string cdx = ReadBytes(folder.File("suppliers.cdx"));
    const std::size_t at = cdx.find("UPPER(companyname)");
    cdx.replace(at, 20, std::string("UPPER(companynam)\0\0\0", 20));
    WriteBytes(folder.File("suppliers.cdx"), cdx);
    return DbfFile::Open(folder.File("suppliers.dbf"));
}

std::vector<CdxTag> TagsOf(const std::string& cdxPath) {
    const auto files = OpenJournaledFiles(cdxPath, true);
    const auto hold = files->HoldForReading();
    return CdxFile(*files, 0, cdxPath).Tags();
}

/// A page of a one-leaf tree without what lies between its entries and its keys.
std::string LeafWithoutGap(const std::string& cdx, CdxPage page) {
    const auto u8 = [&](std::size_t at) { return static_cast<unsigned char>(cdx[page + at]); };
    const std::size_t entries = (u8(2) + 256u * u8(3)) * u8(23), gap = u8(12) + 256u * u8(13);
    return cdx.substr(page, 24 + entries) + cdx.substr(page + 24 + entries + gap, 488 - entries - gap);
}

TEST(SampleIndexes, AreBuiltAsTheyWere) {
    for (const std::string name : {"expense categories", "expense details", "expense reports"}) {
        const TempFolder folder;
        CopySamples(folder, kExpenses);
        const std::string before = ReadBytes(folder.File(name + ".CDX"));
        std::vector<CdxTag> tags = TagsOf(folder.File(name + ".CDX"));
        // The directory is by name, the heads lie in the order in which the tags were made.
        std::sort(tags.begin(), tags.end(), [](const CdxTag& a, const CdxTag& b) { return a.head < b.head; });
        std::filesystem::remove(folder.File(name + ".CDX"));
        MakeIndex(folder.File(name + ".dbf"), tags);
        const std::string after = ReadBytes(folder.File(name + ".cdx"));
        for (const CdxTag& now : TagsOf(folder.File(name + ".cdx"))) {
            const auto sameName = [&](const CdxTag& tag) { return tag.name == now.name; };
            const CdxTag& was = *std::find_if(tags.begin(), tags.end(), sameName);
            EXPECT_EQ(after.substr(now.head + 4, 12), before.substr(was.head + 4, 12)) << now.name;
            EXPECT_EQ(after.substr(now.head + 36, 988), before.substr(was.head + 36, 988)) << now.name;
            EXPECT_EQ(LeafWithoutGap(after, now.root), LeafWithoutGap(before, was.root)) << now.name;
        }
        if (name != "expense categories") continue;  // tags were deleted from the others once, which left holes
        EXPECT_EQ(after.size(), before.size()) << name;
        EXPECT_EQ(after.substr(1024, 512), before.substr(1024, 512)) << name;
    }
}

TEST(IndexKeeper, RefusesTablesWhoseIndexItCannotKeep) {
    struct Case {
        std::size_t at;
        std::string bytes, reason;
    };
    const Case cases[] = {
        {1536 + 494, "GENERAL", "cannot be changed: index tag POSTALCODE: its collating sequence is GENERAL"},
        {1536 + 15, "\5", "POSTALCODE: it is of a sort that only"},
        {1536 + 512, std::string("SOUN(1)\0", 8), "'SOUN', as it is used, is not known"},
        {2560 + 511, "X", "POSTALCODE does not match the table"},
        {6144 + 24, std::string(3, '\0'), "damaged"},          // the order of its keys
        {6656 + 8, std::string("\0\x1A\0\0", 4), "damaged"}};  // a circle of pages
    for (const Case& each : cases) {
        const TempFolder folder;
        Suppliers(folder);
        std::string cdx = ReadBytes(folder.File("suppliers.cdx"));
        WriteBytes(folder.File("suppliers.cdx"), cdx.replace(each.at, each.bytes.size(), each.bytes));
        const auto table = DbfFile::Open(folder.File("suppliers.dbf"));
        EXPECT_THAT(ErrorOf([&] { table->HoldForWriting(); }), HasSubstr(each.reason));
        EXPECT_THAT(CheckIndex(*table), testing::Not(IsEmpty())) << each.reason;
        EXPECT_EQ(ReadBytes(folder.File("suppliers.cdx")), cdx) << each.reason;
    }
}

TEST(IndexKeeper, RefusesKeysThatMustBeDistinct) {
    const TempFolder folder;
    const auto table = MakeIndexedTable(folder);
    const auto hold = table->HoldForWriting();
    for (int id = 1; id <= 300; ++id) table->Append(Goods(id, "n", ""), kAllSet);
    table->Commit();
    table->Append(Goods(301, "n", ""), kAllSet);
    const std::string words = "Uniqueness of index ID is violated";
    EXPECT_THAT(ErrorOf([&] { table->Append(Goods(7, "n", ""), kAllSet); }), HasSubstr(words));
    EXPECT_THAT(ErrorOf([&] { table->Append(Goods(301, "n", ""), kAllSet); }), HasSubstr(words));
    EXPECT_THAT(ErrorOf([&] { table->Update(9, Goods(301, "n", ""), kAllSet); }), HasSubstr(words));
    EXPECT_EQ(table->Records(), 301u);
    table->Update(9, Goods(9, "other", ""), kAllSet);
    table->Delete(7);  // its key leaves the filtered tag
    table->Append(Goods(7, "n", ""), kAllSet);
    table->Commit();
    EXPECT_THAT(CheckIndex(*table), IsEmpty());
}

/// Random changes; what a name may be makes many equal keys, and long keys of which a leaf takes one.
class Changes {
public:
    Changes(DbfFile& table, unsigned seed) : table_(table), random_(seed) {}

    void Make(int count) {
        for (int k = 0; k < count; ++k) {
            const RecordNumber records = table_.Records();
            const unsigned choice = random_() % 100;
            if (records == 0 || choice < 60) {
                table_.Append(Row(nextId_++), kAllSet);
            } else if (choice < 85) {
                const RecordNumber number = 1 + random_() % records;
                table_.Update(number, Row(nextId_++), kAllSet);
            } else {
                table_.Delete(1 + random_() % records);
            }
        }
    }

private:
    std::vector<Value> Row(std::int64_t id) {
        static const std::vector<std::string> kNames = {"", "a", "A", "\xC3\xA9t\xC3\xA9", "zz top", "B 1", "B 2"};
        std::string note(random_() % 3 == 0 ? random_() % 240 : 0, ' ');
        for (char& c : note) c = static_cast<char>('!' + random_() % 90);
        if (random_() % 2 == 0) note = std::string(random_() % 200, 'x') + "end";
        return Goods(ascending_ ? id : static_cast<std::int64_t>(id * 7919 % 1'000'003),
                     kNames[random_() % kNames.size()], note);
    }

    DbfFile& table_;
    std::mt19937 random_;
    std::int64_t nextId_ = 1;
    bool ascending_ = random_() % 2 == 0;
};

TEST(IndexKeeper, KeepsEveryTagThroughRandomChanges) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        const TempFolder folder;
        const auto table = MakeIndexedTable(folder);
        Changes changes(*table, seed);
        for (int round = 0; round < 5; ++round) {
            {
                const auto hold = table->HoldForWriting();
                if (round == 3) table->DeleteAll();
                changes.Make(400);
                table->Commit();
                changes.Make(50);  // these are taken back
            }
            ASSERT_THAT(CheckIndex(*table), IsEmpty()) << "seed " << seed << ", round " << round;
        }
    }
}

TEST(IndexKeeper, EmptiesATreeAndFillsItAgain) {
    const TempFolder folder;
    const auto table = MakeIndexedTable(folder);
    const auto hold = table->HoldForWriting();
    for (int id = 1; id <= 3000; ++id) table->Append(Goods(id, "n" + std::to_string(id % 17), ""), kAllSet);
    for (RecordNumber number = 1; number <= 3000; ++number) table->Delete((number * 7) % 3001);
    table->Commit();
    ASSERT_THAT(CheckIndex(*table), IsEmpty());
    for (int id = 3000; id > 0; --id) table->Append(Goods(id, "m", ""), kAllSet);
    table->Commit();
    EXPECT_THAT(CheckIndex(*table), IsEmpty());
}

TEST(IndexKeeper, IsInStepAfterAKillAtAnyMoment) {
    bool ended = false;
    for (int n = 1; !ended; n += 1 + n / 8) {
        const TempFolder folder;
        MakeIndexedTable(folder);
        const ChildEnd child = InChild([&](const auto&) {
            EndAtMoment(n);
            const auto table = DbfFile::Open(folder.File("goods.dbf"));
            const auto hold = table->HoldForWriting();
            Changes changes(*table, 7);
            for (int round = 0; round < 3; ++round) {
                if (round == 2) table->DeleteAll();
                changes.Make(60);
                table->Commit();
            }
        });
        ended = child.status == 0;
        const auto table = DbfFile::Open(folder.File("goods.dbf"));
        ASSERT_THAT(CheckIndex(*table), IsEmpty()) << "killed at step " << n;
        const auto hold = table->HoldForWriting();
        Changes(*table, 8).Make(1);
        table->Commit();
    }
}

TEST(KeySorter, MergesWhatDoesNotFit) {
    std::mt19937 random(5);
    std::multimap<std::string, std::uint32_t> model;
    KeySorter sorter(3, 5000);
    for (std::uint32_t record = 1; record <= 5000; ++record) {
        std::string key(3, '\0');
        for (char& c : key) c = static_cast<char>(random() % 256);
        if (record % 3 == 0) key = "same";
        key.resize(3);
        model.emplace(key, record);
        sorter.Add({reinterpret_cast<const std::uint8_t*>(key.data()), 3}, record);
    }
    for (const auto& [key, record] : model) {
        ASSERT_TRUE(sorter.Next());
        EXPECT_EQ(std::string(sorter.Key().begin(), sorter.Key().end()), key);
        EXPECT_EQ(sorter.Record(), record);
    }
    EXPECT_FALSE(sorter.Next());
}

}  // namespace
}  // namespace varnel::foxpro
