// Sizes: long values, many columns, many records; and files that change while they are read.
#include <gtest/gtest.h>
#include <atomic>
#include <filesystem>
#include <numeric>

#include "providers/text/FileLook.h"
#include "providers/text/OpenRecords.h"
#include "providers/text/TextDatabase.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;

/// A text in memory that counts how much of it was read.
class CountingSource : public ByteSource {
public:
    explicit CountingSource(std::string bytes) : size_(bytes.size()), bytes_(std::move(bytes)) {}
    std::size_t ReadAt(std::uint64_t offset, std::span<char> into) const override {
        const std::size_t count = bytes_.ReadAt(offset, into);
        read_ += count;
        return count;
    }
    double TimesRead() const { return static_cast<double>(read_) / static_cast<double>(size_); }

private:
    std::size_t size_;
    MemorySource bytes_;
    mutable std::atomic<std::size_t> read_ = 0;
};

std::int64_t CountRecords(const std::shared_ptr<const ByteSource>& source, std::size_t bufferBytes) {
    const auto records = OpenRecords(source, TextFormat(), kUtf8Page, bufferBytes);
    std::int64_t count = 0;
    while (records->Next()) ++count;
    return count;
}

std::string Lines(const char* line, std::size_t count) {
    std::string lines;
    for (std::size_t k = 0; k < count; ++k) lines += line;
    return lines;
}

TEST(LargeText, LongValuesAreReadWhole) {
    const struct {
        std::size_t bytes;
        const char *qualifier, *part, *meant;  // what the value consists of, as it stands in the file and as it is read
    } cases[] = {{100 * kMegabyte, "", "some words and blanks ", "some words and blanks "},
                 {100 * kMegabyte, "\"", "a line, with \"\"marks\"\" in it\n", "a line, with \"marks\" in it\n"},
                 {10 * kMegabyte, "", "a\xE7 caf\xE9 ", "aç café "}};
    for (const auto& row : cases) {
        const std::size_t parts = row.bytes / std::string_view(row.part).size();
        const TempFolder folder;
        folder.Write("t.csv", "A,B\n" + (row.qualifier + Lines(row.part, parts) + row.qualifier) + ",7\nx,8\n");
        TextDatabase database(folder.Path());
        const auto table = database.OpenTable("t.csv");
        EXPECT_EQ(table->Columns()[0].type, adLongVarWChar);
        const std::vector<std::size_t> wanted = {0, 1};
        std::vector<Value> values(2);
        const auto rows = table->Rows(wanted);
        ASSERT_TRUE(rows->Next(values));
        EXPECT_TRUE(values[0].AsText() == Lines(row.meant, parts)) << row.part;
        EXPECT_EQ(values[1].AsInteger(), 7);
        ASSERT_TRUE(rows->Next(values));
        EXPECT_EQ(values[0].AsText(), "x");
        EXPECT_FALSE(rows->Next(values));
    }
}

TEST(LargeText, UnclosedQualifiersAreReadInLinearTime) {
    // The window is far smaller than the rest of the file, which is searched once for the closing qualifier.
    constexpr std::int64_t kCount = 100'000;
    const struct {
        const char *start, *line;
        std::int64_t records;  // 0: as many as the qualifiers happen to make
    } cases[] = {{"x,y,z\n1,\"stray,2\n", "a,b,1\n", kCount + 2},
                 {"x,y,z\n1,\"stray,2\n", "\"\",\"\"\"\"\"\",1\n", kCount + 2},
                 {"x,y,z\n1,\"stray,2\n", "a,\"b\"\"c\",1\n", 0},
                 {"", "1,\"a,2\n", 0}};
    for (const auto& row : cases) {
        const auto source = std::make_shared<CountingSource>(row.start + Lines(row.line, kCount));
        const std::int64_t records = CountRecords(source, 4096);
        EXPECT_TRUE(row.records == 0 || records == row.records) << row.line << records;
        EXPECT_LT(source->TimesRead(), 3.0) << row.line;
    }
}

TEST(LargeText, LongQualifiedValuesAreReadTwiceAtMost) {
    std::string bytes;
    for (int k = 0; k < 20; ++k) bytes += "1,\"" + Lines("line, with \"\"marks\"\"\n", 20'000) + "\"\n";
    const auto source = std::make_shared<CountingSource>(std::move(bytes));
    EXPECT_EQ(CountRecords(source, 4096), 20);
    EXPECT_LT(source->TimesRead(), 2.5);
}

TEST(LargeText, ALookReadsTheFileOnce) {
    const auto source = std::make_shared<CountingSource>("A,B\n" + Lines("1,\xC3\xA4 text\n", 100'000));
    EXPECT_EQ(LookAtFile(source, TextFormat(), "t.csv", kBufferBytes).records, 100'000);
    EXPECT_LT(source->TimesRead(), 1.1);
}

TEST(LargeText, TenThousandColumns) {
    std::string header, line, digits;
    for (int k = 0; k < 10'000; ++k) {
        header += (k == 0 ? "Same" : ",Same");
        line += (k == 0 ? "" : ",") + std::to_string(k % 100 + 10);
    }
    const TempFolder folder;
    folder.Write("t.csv", header + "\n" + line + "\n" + line + "\n");
    TextDatabase database(folder.Path());
    const auto table = database.OpenTable("t.csv");
    ASSERT_EQ(table->Columns().size(), 10'000u);
    EXPECT_EQ(table->Columns()[9'999].name, "Same9999");
    EXPECT_EQ(table->Columns()[9'999].type, adInteger);
    EXPECT_EQ(table->FindColumn("same5000"), 5000u);
    const std::vector<std::size_t> wanted = {9'999, 3};
    std::vector<Value> row(2);
    const auto rows = table->Rows(wanted);
    ASSERT_TRUE(rows->Next(row));
    EXPECT_EQ(row[0].AsInteger(), 109);
    EXPECT_EQ(row[1].AsInteger(), 13);
}

TEST(ChangingText, EmptyFilesAreRefused) {
    const std::string refusal = "An attempt was made to import or link an empty text file: 't.csv'";
    for (const char* bytes : {"", "\n\r\n", "\xEF\xBB\xBF", "\x1A"}) {
        EXPECT_EQ(ErrorOf([&] { ReadText(bytes); }), refusal);
        EXPECT_EQ(ErrorOf([&] { ReadText(bytes, "ColNameHeader=False"); }), refusal);
    }
    const Shown headerOnly = ReadText("A,B");
    EXPECT_EQ(headerOnly.types + headerOnly.rows, "202|202");
}

TEST(ChangingText, IsLookedAtAnewWhenItsStateChanges) {
    const TempFolder folder;
    TextDatabase database(folder.Path());
    for (int k = 0; k < 20; ++k) {  // of the same size, at nearly the same time
        folder.Write("t.csv", k % 2 == 0 ? "A\n1\n" : "A\nx\n");
        EXPECT_EQ(database.OpenTable("t.csv")->Columns()[0].type, k % 2 == 0 ? adInteger : adVarWChar);
    }
    folder.Write("Schema.ini", "[t.csv]\nCol1=B Memo\n");
    EXPECT_EQ(database.OpenTable("t.csv")->Columns()[0].name, "B");
    folder.Write("Schema.ini", "[t.csv]\nCol1=C Memo\n");
    EXPECT_EQ(database.OpenTable("t.csv")->Columns()[0].name, "C");
}

TEST(ChangingText, MayChangeBetweenLookAndRead) {
    const TempFolder folder;
    folder.Write("t.csv", "A,B\n1,2\n3,4\n");
    TextDatabase database(folder.Path());
    const auto table = database.OpenTable("t.csv");
    folder.Write("t.csv", "A,B\nx,2\n\"y\xE4");
    EXPECT_EQ(ShownRows(*table),
              "!Type mismatch in 't.csv', record 1, column 'A'|2\n!Type mismatch in 't.csv', record 2, column 'A'|~");
    folder.Write("t.csv", "A\n5,6,7,8");
    EXPECT_EQ(ShownRows(*table), "5|!More values than columns in 't.csv', record 1: 4 instead of 2");
    std::filesystem::remove(folder.Path() + "/t.csv");
    EXPECT_NE(ErrorOf([&] { ShownRows(*table); }), "");
}

TEST(ChangingText, MayShrinkWhileItIsRead) {
    const TempFolder folder;
    const std::string path = folder.Write("t.csv", "A,B\n" + Lines("1,two\n", 1000));
    TextDatabase database(folder.Path(), "", 16);
    const auto table = database.OpenTable("t.csv");
    const std::vector<std::size_t> wanted = {0, 1};
    std::vector<Value> row(2);
    const auto rows = table->Rows(wanted);
    ASSERT_TRUE(rows->Next(row));
    std::filesystem::resize_file(path, 300);
    int count = 1;
    while (rows->Next(row)) ++count;
    EXPECT_EQ(count, 50);  // the records of 300 bytes, the last one cut
}

}  // namespace
}  // namespace varnel::text
