// What the tests of FoxPro tables share: tables as lines of text, the same from whatever program reads them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/FoxProDatabase.h"

namespace varnel::foxpro {

using Lines = std::vector<std::string>;

/// tests/data/foxpro/NAME.
std::string SamplePath(std::string_view name);

/// A value without what readers show differently: no blanks behind a text, no zeros behind decimals, "" for Null, line
/// ends as \r \n, bytes in hexadecimal, "!words" for a failure.
std::string PlainText(const Value& value);
/// The columns in order with '|' between.
std::string LineOf(const std::vector<Value>& row);
/// A line per row.
Lines RowsOf(TableFile& table);
/// The same at the end of lines, as far as they can be read.
void AppendRows(Lines& lines, TableFile& table);
/// The rows of a sample's or any other .dbf file.
Lines RowsOfFile(const std::string& path, DatabaseOptions options = {});

/// "" or the first place where two lists of lines differ.
std::string Difference(const Lines& ours, const Lines& theirs);

/// The same lines by another program: the Python library dbfread or dbf.
Lines RowsByReader(const std::string& reader, const std::string& path);
bool HasReader(const std::string& reader);

/// A table of the one definition "name TYPE(args) [NOT NULL]" per column.
ColumnDefinition Column(std::string name, std::string typeWord, std::vector<int> arguments = {}, bool notNull = false);

/// Appends a row with every column set, and leaves committing to the caller.
void Add(TableFile& table, std::vector<Value> values);

}  // namespace varnel::foxpro
