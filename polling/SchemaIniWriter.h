// Schema.ini of a polled folder: how a text driver is to read each matching file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Files.h"
#include "repository/model/SessionModel.h"

namespace varnel {

class SchemaIniWriter {
public:
    /// Creates the file anew in the folder (a stored path). files: the names of all sections to come; the file is
    /// written in Windows-1252 when all of them fit, else in UTF-8. Throws Error{Io}.
    SchemaIniWriter(const std::string& storedFolder, const std::vector<std::string>& files);

    /// Writes the section of one source table: two empty lines, its name, format, header, qualifier, MaxScanRows=0.
    void AddSection(const TableEntry& table);
    void Close() { file_.Close(); }

private:
    OutputFile file_;
    std::optional<CodePage> codePage_;
};

/// The section's text in UTF-8, lines ended by CR LF.
std::string SchemaIniSection(const TableEntry& table);

}  // namespace varnel
