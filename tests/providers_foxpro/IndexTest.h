// What tests of indexes need: a table with a structural index, and samples to work on.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/foxpro/CdxBuilder.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/FoxProDatabase.h"
#include "providers/foxpro/KeyExpression.h"
#include "providers/foxpro/TableIndex.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {

/// Copies samples into the folder.
inline void CopySamples(const TempFolder& folder, const std::vector<std::string>& names) {
    for (const std::string& name : names) std::filesystem::copy("tests/data/foxpro/" + name, folder.File(name));
}

/// A container, its tables and their indexes.
inline const std::vector<std::string> kExpenses = {
    "EXPENSES.DBC",        "EXPENSES.DCT",           "EXPENSES.DCX",           "employees.dbf",
    "employees.FPT",       "expense categories.dbf", "expense categories.CDX", "expense details.dbf",
    "expense details.CDX", "expense reports.dbf",    "expense reports.FPT",    "expense reports.CDX"};

inline CdxTag NewTag(std::string name, std::uint16_t keyLength, std::uint8_t options, std::string keyText,
                     std::string filterText = "") {
    CdxTag tag;
    tag.name = std::move(name);
    tag.keyLength = keyLength;
    tag.options =
        static_cast<std::uint8_t>(options | kCompactTag | kCompoundTag | (filterText.empty() ? 0 : kFilteredTag));
    tag.signature = 1;
    tag.keyText = std::move(keyText);
    tag.filterText = std::move(filterText);
    return tag;
}

/// Gives a table its structural index, with the keys of its records.
inline void MakeIndex(const std::string& dbfPath, const std::vector<CdxTag>& tags) {
    const std::string cdxPath = dbfPath.substr(0, dbfPath.size() - 4) + ".cdx";
    WriteBytes(cdxPath, "");
    const auto table = DbfFile::Open(dbfPath);
    {
        const auto hold = table->HoldForReading();
        const DbfHeader header = table->Header();
        const FindKeyField fields = KeyFieldsOf(*table, header);
        std::vector<TagKeys> keys;
        std::vector<KeyShape> shapes;
        for (const CdxTag& tag : tags) shapes.push_back(keys.emplace_back(tag, header, fields).Shape());
        const auto files = OpenJournaledFiles(cdxPath, false);
        const auto writeHold = files->HoldForWriting();
        BuildCdx(*files, 0, tags, shapes, 0, [&](std::size_t at, KeySorter& sorter) {
            std::vector<std::uint8_t> key;
            VisitRecords(*table, [&](const KeyRecord& record) {
                if (keys[at].KeyOf(record, key)) sorter.Add(key, static_cast<std::uint32_t>(record.number));
            });
        });
        files->Commit();
    }
    const auto hold = table->HoldForWriting();
    table->SetIndexFlag(true);
    table->Commit();
}

/// Columns ID int, NAME C(20), NOTE C(240), PRICE N(10,2) and DAY date, the last two nullable; six tags.
inline std::shared_ptr<DbfFile> MakeIndexedTable(const TempFolder& folder) {
    FoxProDatabase database(folder.Path());
    const std::vector<ColumnDefinition> columns = {{"id", "INTEGER", {}, true, false, false},
                                                   {"name", "CHARACTER", {20}, true, false, false},
                                                   {"note", "CHARACTER", {240}, true, false, false},
                                                   {"price", "NUMERIC", {10, 2}, false, false, false},
                                                   {"day", "DATE", {}, false, false, false}};
    database.CreateTable("goods", columns);
    MakeIndex(folder.File("goods.dbf"),
              {NewTag("DAY", 9, kNullableTag, "day"), NewTag("FIRSTNAME", 20, kUniqueTag, "name"),
               NewTag("ID", 4, kCandidateTag, "id", ".NOT.DELETED()"), NewTag("NAME", 28, 0, "UPPER(name)+STR(id,8)"),
               NewTag("NOTE", 240, 0, "note"), NewTag("PRICE", 9, kNullableTag, "price", "id>10.AND..NOT.DELETED()")});
    return DbfFile::Open(folder.File("goods.dbf"));
}

inline std::vector<Value> Goods(std::int64_t id, const std::string& name, const std::string& note) {
    std::vector<Value> row(5);
    row[0].SetInteger(id);
    row[1].SetText(name);
    row[2].SetText(note);
    if (id % 3 != 0) row[3] = Value::OfDecimal(std::to_string(id % 50) + ".25");
    if (id % 4 != 0) row[4] = Value::OfDateTime({static_cast<std::int32_t>(30'000 + id % 100), 0});
    return row;
}

inline const std::vector<bool> kAllSet(5, true);

}  // namespace varnel::foxpro
