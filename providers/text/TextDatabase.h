// A folder of text files as a database that is only read: every file is a table.
// Start here. Needs nothing but the folder; a Schema.ini in it says how its files are laid out. Writes nothing.
//
// From bytes to values, each stage in files of its own:
//   ByteSource, Utf8Stream     the file's bytes, and UTF-8 out of any code page
//   RecordBuffer               a window on the text that moves forward
//   Delimited-/FixedRecords    records and fields
//   Cell..., CellRule          what a field's text means in a column of some type
//   FileLook, LookCache        one look at a whole file finds its code page, columns, types and number of records
//   TextTable, TextRows        the table and its rows
//   SchemaIni, FormatWords     how a file is laid out
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/InputFile.h"
#include "providers/tablefile/TableFile.h"
#include "providers/text/RecordBuffer.h"
#include "providers/text/SchemaIni.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

class TextDatabase : public TableStore {
public:
    /// storedPath: the folder; of a file, its folder is meant. extendedProperties: as in a connection string
    /// ("text;HDR=Yes;FMT=Delimited"); an option holds where Schema.ini does not say otherwise for a file.
    /// bufferBytes: of the window through which files are read.
    /// Throws Error{Io} "'C:\in' is not a valid path." and Error{Syntax} for an option without such a value.
    explicit TextDatabase(std::string_view storedPath, std::string_view extendedProperties = "",
                          std::size_t bufferBytes = kBufferBytes);

    /// The files of the folder without Schema.ini, sorted by name without regard to case.
    std::vector<std::string> TableNames() override;
    /// name: in any form of TableName.h. Looks at the whole file, unless that was done before.
    std::unique_ptr<TableFile> OpenTable(std::string_view name) override;
    /// These throw Error{NotSupported} "Cannot update. Database or object is read-only."
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) override;
    void DropTable(std::string_view name) override;
    void RequireWritable() override;

private:
    const SchemaIni& SchemaOf(const std::string& folder);

    std::string folder_;
    TextFormat options_;
    std::size_t bufferBytes_;
    /// Schema.ini as read last, of which folder and in which state.
    SchemaIni schema_;
    std::string schemaPath_;
    FileState schemaState_;
};

}  // namespace varnel::text
