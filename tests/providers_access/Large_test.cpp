// Values, tables and files that outgrow what a map of pages holds in its row.
#include <filesystem>

#include "providers/access/RowPage.h"
#include "tests/providers_access/WriteTest.h"

namespace varnel::access {
namespace {

TEST_F(WriteTest, MapsOutgrowTheirPage) {
    std::string columns = "Id LONG";
    for (int k = 0; k < 7; ++k) columns += ", T" + std::to_string(k) + " TEXT";
    for (std::size_t at = 0; (at = columns.find("TEXT", at)) != std::string::npos; at += 9)
        columns.replace(at, 4, "TEXT(255)");
    for (int k = 0; k < 26; ++k)
        columns += ", M" + std::to_string(k) + " MEMO";  // their maps fill the table's map page
    auto table = Make("t", columns);
    std::string wide;
    for (int k = 0; k < 255; ++k) wide += "Ω";
    std::vector<Value> row(34);
    for (std::size_t k = 1; k < 8; ++k) row[k] = Txt(wide);
    constexpr int kRows = 4'200;  // a page each
    const auto fill = [&] {
        for (int k = 0; k < kRows; ++k) {
            row[0] = Int(k);
            if (k % 100 == 0) row[8] = Txt(std::string(3'000, 'm')), row[9] = Txt(std::string(6'000, 'c'));
            Add(*table, row);
            row[8].SetNull(), row[9].SetNull();
        }
        table->Commit();
        EXPECT_EQ(table->CountRows(), kRows);
        Verify();
    };
    fill();
    EXPECT_EQ(OutputOf("mdb-export -H " + path_ + " t | wc -l"), std::to_string(kRows) + "\n");
    table->DeleteAll();
    table->Commit();
    Verify();
    table.reset();
    database_->DropTable("t");
    Verify();
}

TEST_F(WriteTest, TheMapOfFreePagesOutgrowsItsPage) {
    auto table = Make("t", "Id LONG PRIMARY KEY, O OLEOBJECT");
    {
        const auto hold = file_->HoldForWriting();
        Step step(*file_);
        RowPage(file_->Change(1), 1, 1).AddSpace(3'500);  // leaves the map room for some 4,000 pages
        step.Keep();
        file_->Commit();
    }
    constexpr std::size_t kBytes = 20'000'000;  // 4,900 pages
    std::string bytes(kBytes, '\0');
    for (std::size_t k = 0; k < kBytes; k += 4'000) bytes[k] = static_cast<char>(k / 4'000);
    const Value value = Value::OfBytes(bytes);
    Add(*table, {Int(1), value});
    for (int k = 2; k < 200; ++k) Add(*table, {Int(k), Value::OfBytes(std::string(200, 'o'))});
    table->Commit();
    Verify();
    const std::size_t wanted[] = {1};
    Value found;
    const auto rows = table->Rows(wanted);
    ASSERT_TRUE(rows->Next({&found, 1}));
    EXPECT_TRUE(found == value);
    table->Delete(rows->Current());
    table->Commit();
    Verify();
    Add(*table, {Int(1), value});
    table->Commit();
    Verify();
}

TEST_F(WriteTest, AFileOfTwoGigabytesTakesNoMore) {
    Make("t", "Id LONG PRIMARY KEY, O OLEOBJECT")->Commit();
    database_.reset(), file_.reset();
    std::filesystem::resize_file(path_, 0x7FFFF000);  // a hole; the pages that counted as free stay so
    Reopen();
    const auto table = database_->OpenTable("t");
    Add(*table, {Int(1), Value::OfBytes("small")});
    EXPECT_EQ(ErrorOf([&] {
                  Add(*table, {Int(2), Value::OfBytes(std::string(3'000'000, 'o'))});
              }),
              "'" + path_ + "' has reached its limit of 2 GB");
    Add(*table, {Int(3), Value::OfBytes("small")});
    table->Commit();
    EXPECT_EQ(Rows("t"), "1|736D616C6C\n3|736D616C6C\n");
}

}  // namespace
}  // namespace varnel::access
