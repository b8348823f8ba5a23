#include "tests/providers_text/TextTest.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <numeric>

#include "ado/types/ValueText.h"
#include "providers/text/TextDatabase.h"

namespace varnel::text {
namespace {

std::string Joined(const std::vector<std::string>& parts, const char* separator) {
    std::string all;
    for (const std::string& part : parts) all += (&part == parts.data() ? "" : separator) + part;
    return all;
}

}  // namespace

std::string ShownValue(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return "~";
        case ValueKind::Failure:
            return "!" + std::string(value.FailureText());
        case ValueKind::Text:
            return "\"" + std::string(value.AsText()) + "\"";
        case ValueKind::DateTime: {
            std::string text;
            AppendIsoDateTime(text, value.AsDateTime());
            return text;
        }
        default:
            return DefaultText(value);
    }
}

/// The rows as text; the count must be theirs.
std::string ShownRows(TableFile& table) {
    std::vector<std::size_t> wanted(table.Columns().size());
    std::iota(wanted.begin(), wanted.end(), std::size_t{0});
    std::vector<Value> row(wanted.size());
    std::vector<std::string> lines, cells(wanted.size());
    const auto rows = table.Rows(wanted);
    while (rows->Next(row)) {
        std::transform(row.begin(), row.end(), cells.begin(), ShownValue);
        lines.push_back(Joined(cells, "|"));
        EXPECT_EQ(rows->Current(), static_cast<RowId>(lines.size()));
    }
    EXPECT_EQ(table.CountRows(), static_cast<std::int64_t>(lines.size()));
    return Joined(lines, "\n");
}

Shown ReadTable(const TempFolder& folder, const std::string& table, const std::string& options,
                std::size_t bufferBytes) {
    TextDatabase database(folder.Path(), options, bufferBytes);
    const auto file = database.OpenTable(table);
    std::vector<std::string> names, types;
    for (const ColumnInfo& column : file->Columns()) {
        names.push_back(column.name);
        types.push_back(std::to_string(static_cast<int>(column.type)));
    }
    return {Joined(names, "|"), Joined(types, "|"), ShownRows(*file), file->CountRows()};
}

Shown ReadText(std::string_view bytes, const std::string& schema, const std::string& options) {
    const TempFolder folder;
    folder.Write("t.csv", bytes);
    if (!schema.empty()) folder.Write("Schema.ini", "[t.csv]\r\n" + schema + "\r\n");
    const Shown shown = ReadTable(folder, "t.csv", options);
    for (const std::size_t bufferBytes : {16u, 17u, 29u, 64u}) {
        const Shown again = ReadTable(folder, "t.csv", options, bufferBytes);
        EXPECT_EQ(again.names, shown.names) << "window of " << bufferBytes;
        EXPECT_EQ(again.types, shown.types) << "window of " << bufferBytes;
        EXPECT_EQ(again.rows, shown.rows) << "window of " << bufferBytes;
        EXPECT_EQ(again.count, shown.count) << "window of " << bufferBytes;
    }
    return shown;
}

}  // namespace varnel::text
