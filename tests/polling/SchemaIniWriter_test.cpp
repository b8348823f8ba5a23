#include "polling/SchemaIniWriter.h"

#include <gtest/gtest.h>

namespace varnel {
namespace {

TEST(SchemaIniSection, WritesDelimiterHeaderAndQualifier) {
    struct Case {
        const char* delimiter;
        std::int16_t header;
        const char *qualifier, *lines;
    };
    const Case cases[] = {
        {",", 1, "DQ", "Format=CSVDelimited\r\nColNameHeader=True\r\n"},
        {"\t", 0, "SQ", "Format=TabDelimited\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\n"},
        {"|", 2, "", "Format=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"\"\"\"\r\n"},
        {")", 1, "1", "Format=Delimited())\r\nColNameHeader=True\r\nTextDelimiter=\"1\"\r\n"},
    };
    for (const Case& c : cases) {
        TableEntry table;
        table.TableName = "a.csv";
        table.SFormat = c.delimiter;
        table.SFirstColLine = c.header;
        table.TextQ = c.qualifier;
        EXPECT_EQ(SchemaIniSection(table), std::string("\r\n\r\n[a.csv]\r\n") + c.lines + "MaxScanRows=0\r\n");
    }
}

}  // namespace
}  // namespace varnel
