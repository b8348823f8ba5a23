#include "providers/access/Verify.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"

using namespace varnel;
using namespace varnel::access;

namespace {

FileReport Verified(const std::vector<std::uint8_t>& bytes) {
    MemoryPageFile file(bytes, LayoutOf(bytes), "sample.mdb");
    return VerifyDatabase(file);
}

std::string Lines(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += text + "\n";
    return all;
}

struct SoundCase {
    const char* file;
    const char* extent;
    const char* findings;
    const char* notes;
};

constexpr SoundCase kSound[] = {
    {"adox_jet4.mdb", "4 tables, 24 rows, 7 indexes with 32 entries, 16 pages", "", ""},
    {"compIndexTestV2000.mdb", "6 tables, 582 rows, 9 indexes with 599 entries, 35 pages", "", ""},
    {"fixedNumericTestV2000.mdb", "7 tables, 86 rows, 11 indexes with 106 entries, 32 pages", "", ""},
    {"indexTestV2000.mdb", "13 tables, 182 rows, 21 indexes with 249 entries, 72 pages", "", ""},
    {"linkerTestV2007.accdb", "23 tables, 246 rows, 24 indexes with 343 entries, 111 pages", "", ""},
    {"nwind97.mdb", "19 tables, 7508 rows, 47 indexes with 21747 entries, 1466 pages", "", ""},
    {"overflowTestV2000.mdb", "6 tables, 87 rows, 8 indexes with 99 entries, 35 pages", "", ""},
    {"queryTestV2000.mdb", "8 tables, 212 rows, 8 indexes with 242 entries, 43 pages", "",
     "Table 'MSysQueries': it has 90 rows, its definition says 82.\n"},
    {"test2V2003.mdb", "10 tables, 146 rows, 17 indexes with 211 entries, 67 pages", "", ""},
    {"testIndexCodesV1997.mdb", "38 tables, 1790 rows, 71 indexes with 3429 entries, 226 pages", "", ""},
    {"testIndexPropertiesV2000.mdb", "12 tables, 144 rows, 23 indexes with 206 entries, 61 pages", "", ""},
    // Another program wrote the key of this row, in a way of its own: a search misses the row.
    {"testUnicodeCompV2003.mdb", "12 tables, 177 rows, 20 indexes with 272 entries, 72 pages",
     "Table 'Table', index 'Unicode': row 7 of page 55 has an entry with another key.\n", ""}};

/// Every key of every index is compared with the one that is built from its row.
TEST(Verify, FindsNothingInSoundFiles) {
    for (const SoundCase& sample : kSound) {
        const auto path = SamplePath(sample.file);
        if (!path) continue;  // one of them is not kept with the tests
        const FileReport report = Verified(BytesOfFile(*path));
        EXPECT_EQ(Lines(report.findings), sample.findings) << sample.file;
        EXPECT_EQ(Lines(report.notes), sample.notes) << sample.file;
        EXPECT_EQ(report.extent, sample.extent) << sample.file;
    }
}

/// One byte of a sample changed.
struct DamageCase {
    const char* file;
    PageNumber page;
    int slot;  ///< at counts from this row's start; below 0: from the page's start
    std::size_t at;
    std::uint8_t flip;  ///< bits
    const char* finding;
};

constexpr const char *kIndexed = "indexTestV2000.mdb", *kTree = "compIndexTestV2000.mdb", *kMemos = "test2V2003.mdb",
                     *kMoved = "overflowTestV2000.mdb";
constexpr std::size_t kColumns = 0x6F, kReal = 0x132, kLogical = 0x202;  // in the definition of Table1 of kIndexed

constexpr DamageCase kDamages[] = {
    // Pages of rows.
    {kIndexed, 62, -1, 0, 2, "Table 'Table1', page 62: it is no page of rows."},
    {kIndexed, 62, -1, 2, 1, "Table 'Table1', page 62: its free space is noted wrongly."},
    {kIndexed, 62, -1, 4, 1, "Table 'Table1', page 62: it belongs to something else."},
    {kIndexed, 62, -1, 12, 0x80, "Table 'Table1', page 62: the row slots of its page are damaged."},
    {kIndexed, 62, -1, 15, 0xC0,
     "Table 'Table1', index 'PrimaryKey': row 0 of page 62 has an entry but is no such row."},
    {kIndexed, 62, 0, 6, 1, "Table 'Table1', index 'PrimaryKey': row 0 of page 62 has an entry with another key."},
    {kMoved, 27, 2, 1, 2, "Table 'Table1', page 27, row 2: the pointer to the row leads to no row."},
    {kMoved, 27, 4, 1, 3, "Table 'Table1', page 27, row 4: two pointers lead to the same row."},
    {kMoved, 27, 4, 1, 3, "Table 'Table1', page 31, row 0: no pointer leads to this moved row."},
    {kMoved, 28, -1, 15, 0x40, "Table 'Table1', page 27, row 2: the pointer to the row leads to no row."},
    {kMoved, 27, 0, 31, 0x40, "Table 'Table1', page 27, row 0, column 'data1' cannot be read"},
    // Definitions.
    {kIndexed, 24, -1, 0, 1, "page 24 holds no definition of a table"},
    {kIndexed, 24, -1, 2, 1, "Table 'Table1', page 24: the free space of the definition is noted wrongly."},
    {kIndexed, 24, -1, 8, 1, "Table 'Table1', page 24: the length of the definition is not the noted one."},
    {kIndexed, 24, -1, 0x2B, 1, "column 'data': its place among the columns of varying length is not its own."},
    {kIndexed, 24, -1, kColumns + 5, 2, "Table 'Table1', column 'otherfk2': its id is not its own."},
    {kIndexed, 24, -1, kColumns + 25 + 0x15, 4, "Table 'Table1': columns of fixed length overlap."},
    {kIndexed, 24, -1, kReal + 4, 0x0F, "Index 'id' of table 'Table1' names a column that does not exist."},
    {kIndexed, 24, -1, kReal + 0x22, 6, "this map of pages is used twice"},
    {kIndexed, 24, -1, kReal + 0x26, 6, "Table 'Table1', index 'id': its map of pages does not name the pages of its"},
    {kIndexed, 24, -1, kLogical + 28 + 4, 1, "Table 'Table1', index 'PrimaryKey': another one has the same number."},
    {kIndexed, 24, -1, kLogical + 2 * 28 + 0x11, 1, "the other table of the relationship does not know it."},
    // Maps of pages.
    {kIndexed, 1, 0, 12, 0x40, "Page 62 is noted as free, but used by the data of table 'Table1'."},
    {kIndexed, 25, -1, 2, 1, "Page 25 (maps of pages): its free space is noted wrongly."},
    {kIndexed, 25, 0, 0, 5, "the map of pages in row 0 cannot be read: it is of no known kind"},
    {kIndexed, 25, 0, 12, 0x40, "row 0 of page 62 has an entry but is no such row."},
    {kIndexed, 25, 0, 12, 0x10,
     "Page 60 is used twice: by the data of table 'Table1' and by the data of table 'Table2'."},
    {kIndexed, 25, 0, 30, 0x10, "named by the data of table 'Table1', lies behind the end of the file."},
    {kIndexed, 25, 1, 12, 0x10, "Table 'Table1': its map of room names page 60, which is not the table's."},
    {kIndexed, 25, 4, 8, 0x10, "index 'PrimaryKey': its map of pages does not name the pages of its tree."},
    // Trees.
    {kTree, 29, -1, 0x1E0 + 2, 0x80, "Table 'Table1', index 'CD_AGENTE', page 29: a key is below the highest entry"},
    {kTree, 32, -1, 0x10, 1, "Table 'Table1', index 'CD_AGENTE', page 32: its link to the next page is wrong"},
    {kTree, 33, -1, 0x1E0 + 2, 1, "Table 'Table1', index 'CD_AGENTE', page 33: its entries are out of order"},
    {kTree, 33, -1, 4, 1, "is damaged: it belongs to something else."},
    {kTree, 33, -1, 2, 1, "damaged: its last entry does not end where its free space begins"},
    {kTree, 33, -1, 0x0C, 1, "index 'CD_AGENTE', page 33: its link to the page before is wrong"},
    {kTree, 33, -1, 0x14, 9, "index 'CD_AGENTE', page 33: it is a leaf with a tail"},
    {kTree, 33, -1, 0x18, 0x80, "its prefix is as long as its first entry"},
    {kTree, 33, -1, 0x1A, 1, "its level contradicts its type"},
    {kTree, 33, -1, 0x1DF, 0x80, "its entry mask names an entry behind the last one"},
    // Long values.
    {kMemos, 53, -1, 8, 1, "column 'RESERVED_BINARY_DATA': the stamp of a long value is not that of its pages."},
    {kMemos, 54, -1, 4, 1, "page 54, long values of column 'RESERVED_BINARY_DATA': it belongs to something else."},
    {kMemos, 54, 0, 1, 1, "the long value on page 54, row 0 belongs to another value as well."},
    {kMemos, 57, 0, 1, 0x3A, "a long value has not the length that its row says."},
    {kMemos, 59, -1, 15, 0xC0, "a long value leads to page 59, row 0, where column 'PROJ_PROP_AUTHOR'"},
    // The catalog.
    {kIndexed, 14, 17, 6, 0x20, "MSysObjects: the object 'Table1' (24) is kept in something that is not there."},
    {kIndexed, 15, 0, 5, 0x40, "MSysACEs: a row names the object 1073741826, which is not in MSysObjects."},
    {kIndexed, 37, 5, 14, 1, "MSysRelationships: 'Uable2Table1' is not in MSysObjects."},
};

TEST(Verify, FindsEachDamage) {
    for (const DamageCase& damage : kDamages) {
        std::vector<std::uint8_t> bytes = BytesOfFile(SamplePath(damage.file).value());
        const std::size_t page = damage.page * kJet4Layout.pageSize;
        const std::size_t slot = page + kJet4Layout.slotsAt + 2 * static_cast<std::size_t>(std::max(damage.slot, 0));
        const std::size_t row = damage.slot < 0 ? 0 : (bytes.at(slot) | bytes.at(slot + 1) << 8) & 0x1FFF;
        bytes.at(page + row + damage.at) ^= damage.flip;
        const std::string findings = Lines(Verified(bytes).findings);
        EXPECT_NE(findings.find(damage.finding), std::string::npos) << damage.finding << "\n  in:\n" << findings;
    }
}

TEST(Verify, NotesPagesThatAreNeitherUsedNorFree) {
    std::vector<std::uint8_t> bytes = BytesOfFile(SamplePath(kIndexed).value());
    bytes.resize(bytes.size() + kJet4Layout.pageSize);  // its bit in the map of free pages says free
    EXPECT_EQ(Lines(Verified(bytes).notes), "");
    bytes.at(4096 + 4096 - 69 + 5 + 72 / 8) ^= 1;
    EXPECT_EQ(Lines(Verified(bytes).notes), "Page 72 is neither used nor free.\n");
}

}  // namespace
