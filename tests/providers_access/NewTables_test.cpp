// New databases and new tables: their bytes, and what other programs see in them.
#include "providers/access/DdlTypes.h"
#include "providers/access/RowBuilder.h"
#include "tests/providers_access/WriteTest.h"

namespace varnel::access {
namespace {

/// Bytes that the format leaves unused, or that say when objects were made, as zeros.
void BlankOut(std::vector<std::uint8_t>& file) {
    const auto clear = [&](std::size_t from, std::size_t to) {
        std::fill(file.begin() + static_cast<std::ptrdiff_t>(from), file.begin() + static_cast<std::ptrdiff_t>(to),
                  std::uint8_t{0});
    };
    constexpr std::size_t kPage = 4096, kMsysObjectsRows = 14;
    for (std::size_t page = 1; page < file.size() / kPage; ++page) {
        const std::size_t at = page * kPage;
        const std::size_t free = file[at + 2] + std::size_t{256} * file[at + 3];
        if (file[at] == 1) {
            const std::size_t slots = at + 14 + std::size_t{2} * file[at + 12];
            clear(slots, slots + free);
            for (std::size_t row = 0; page == kMsysObjectsRows && row < file[at + 12]; ++row) {
                const std::size_t start =
                    at + file[at + 14 + 2 * row] + std::size_t{256} * (file[at + 15 + 2 * row] & 0x1F);
                clear(start + 2 + 10, start + 2 + 26);  // DateCreate, DateUpdate
            }
        } else if (file[at] == 2) {
            clear(at + 0x20, at + 0x28);
            clear(at + kPage - 8 - free, at + kPage);
        } else if (file[at] == 4) {
            clear(at + kPage - free, at + kPage);
        }
    }
}

/// Fields of a definition that hold old memory: the offset of variable columns, a number in each index block, the
/// direction of columns that an index does not have.
void BlankOutDefinitions(std::vector<std::uint8_t>& file) {
    for (const std::size_t page : {2U, 3U, 4U, 5U}) {
        const std::size_t at = page * 4096, columns = file[at + 0x2D], indexes = file[at + 0x33];
        std::size_t p = at + 0x3F + 12 * indexes;
        for (std::size_t k = 0; k < columns; ++k, p += 25)
            if ((file[p + 15] & 1) == 0) file[p + 0x15] = file[p + 0x16] = 0;
        for (std::size_t k = 0; k < columns; ++k) p += 2 + std::size_t{file[p]};
        for (std::size_t k = 0; k < indexes; ++k, p += 52) {
            std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(p) + 0x2A, 4, std::uint8_t{0});
            for (std::size_t c = 0; c < 10; ++c)
                if (file[p + 4 + 3 * c] == 0xFF) file[p + 6 + 3 * c] = 0;
        }
    }
}

TEST(BlankDatabase, IsByteForByteTheOneThatOtherProgramsMake) {
    const auto sample = SamplePath("adox_jet4.mdb");
    if (!sample) GTEST_SKIP() << "adox_jet4.mdb is not on this machine";
    std::vector<std::uint8_t> theirs = BytesOfFile(*sample), ours = BlankDatabase({45'000, 0});
    ASSERT_EQ(ours.size(), theirs.size());
    for (auto* file : {&ours, &theirs}) BlankOut(*file), BlankOutDefinitions(*file);
    for (std::size_t page = 0; page < ours.size() / 4096; ++page)
        for (std::size_t at = page * 4096; at < (page + 1) * 4096; ++at)
            if (ours[at] != theirs[at]) {
                ADD_FAILURE() << "page " << page << " differs at " << std::hex << at % 4096 << ": " << int{ours[at]}
                              << " for " << int{theirs[at]};
                break;
            }
}

/// "4E 00" for the two bytes.
std::string Hex(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        constexpr const char* kDigits = "0123456789ABCDEF";
        text += {kDigits[byte >> 4], kDigits[byte & 15], ' '};
    }
    return text;
}

TEST(Encoders, CompressTextsAsAccessDoes) {
    const Column column = ColumnFromDefinition({"T", "TEXT", {50}, false, false, false});
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"ab", "61 00 62 00 "},
                                                         {"abc", "FF FE 61 62 63 "},
                                                         {"aéÿ", "FF FE 61 E9 FF "},
                                                         {"abΩ", "61 00 62 00 A9 03 "},
                                                         {"€ab", "AC 20 61 00 62 00 "},
                                                         {"😀", "3D D8 00 DE "}};
    for (const auto& [text, stored] : cases) {
        ValueEncoder encoder;
        std::array<std::uint8_t, kLongestStoredValue> bytes{};
        const std::size_t count = encoder.Encode(column, Txt(text), bytes);
        EXPECT_EQ(Hex(std::span(bytes).first(count)), stored) << text;
    }
}

TEST_F(WriteTest, ANewDatabaseNeverReplacesAFile) {
    EXPECT_EQ(ErrorOf([&] { CreateBlankDatabase(path_); }), "File already exists: '" + path_ + "'");
    EXPECT_EQ(ErrorOf([&] { CreateBlankDatabase(folder_.File("no/such.mdb")); }),
              "Path not found: '" + folder_.File("no/such.mdb") + "'");
}

TEST_F(WriteTest, EveryTypeGoesThereAndBack) {
    auto table = Make("All Types",
                      "Id COUNTER PRIMARY KEY, B YESNO, U BYTE, S SHORT, L INTEGER, C CURRENCY, F SINGLE, D DOUBLE, W "
                      "DATETIME, T TEXT(20), M MEMO, O OLEOBJECT, X VARBINARY(10), G GUID, N DECIMAL(18,4), W2 TEXT");
    Value bytes = Value::OfBytes(std::string("\0\1\xFF", 3));
    Add(*table,
        {Value(), Value::OfBoolean(true), Int(255), Int(-32768), Int(-2147483647), Value::OfCurrency(-12'345),
         Value::OfSingle(1.5F), Value::OfDouble(-1e300), Value::OfDateTime({36'526, 6 * 3600 * kMicrosPerSecond}),
         Txt("Ærøskøbing"), Txt("memo " + std::string(5, 'x') + "Ω"), bytes, bytes,
         Value::OfGuid("{00010203-0405-0607-0809-0A0B0C0D0E0F}"), Value::OfDecimal("-12345678901234.5678"),
         Txt("Мир")});
    Add(*table, std::vector<Value>(16));
    table->Commit();
    table.reset();
    const std::string expected =
        "1|True|255|-32768|-2147483647|-1.2345|1.5|-1E+300|1/1/2000 6:00:00 AM|Ærøskøbing|memo xxxxxΩ|0001FF|0001FF|"
        "{00010203-0405-0607-0809-0A0B0C0D0E0F}|-12345678901234.5678|Мир\n2|False|~|~|~|~|~|~|~|~|~|~|~|~|~|~\n";
    EXPECT_EQ(Rows("All Types"), expected);
    Reopen();
    EXPECT_EQ(Rows("All Types"), expected);
    EXPECT_EQ(OutputOf("mdb-tables -1 " + path_), "All Types\n");
    EXPECT_EQ(OutputOf("mdb-export -H -T '%Y-%m-%d %H:%M:%S' -b strip " + path_ + " 'All Types'"),
              "1,1,255,-32768,-2147483647,-1.2345,1.5,-1e+300,\"2000-01-01 06:00:00\",\"Ærøskøbing\",\"memo "
              "xxxxxΩ\",\"\",,\"\",-12345678901234.5678,\"Мир\"\n2,0,,,,,,,,,,,,,,\n");
}

}  // namespace
}  // namespace varnel::access
