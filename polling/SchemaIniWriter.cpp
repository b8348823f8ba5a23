#include "polling/SchemaIniWriter.h"

#include <algorithm>

#include "platform/Error.h"

namespace varnel {

namespace {

constexpr int kWindowsLatin = 1252;

bool Fits(const CodePage& page, const std::string& name) {
    try {
        std::string bytes;
        page.Encode(bytes, name);
        return true;
    } catch (const Error&) {
        return false;
    }
}

std::string PathIn(std::string folder) {
    if (!folder.ends_with('\\')) folder += '\\';
    return folder + "Schema.ini";
}

std::string FormatLine(const std::string& delimiter) {
    if (delimiter == ",") return "Format=CSVDelimited";
    if (delimiter == "\t") return "Format=TabDelimited";
    return "Format=Delimited(" + delimiter + ")";
}

/// Nothing for the double quote, which is the driver's default.
std::string QualifierLine(const std::string& code) {
    if (code == "DQ") return "";
    if (code == "SQ") return "TextDelimiter=\"'\"\r\n";
    if (code.empty()) return "TextDelimiter=\"\"\"\"\r\n";
    return "TextDelimiter=\"" + code + "\"\r\n";
}

}  // namespace

SchemaIniWriter::SchemaIniWriter(const std::string& storedFolder, const std::vector<std::string>& files)
    : file_(PathIn(storedFolder), OutputFile::Mode::Truncate) {
    CodePage page(kWindowsLatin);
    const bool fits =
        std::all_of(files.begin(), files.end(), [&](const std::string& name) { return Fits(page, name); });
    if (fits) codePage_.emplace(std::move(page));
}

void SchemaIniWriter::AddSection(const TableEntry& table) {
    const std::string section = SchemaIniSection(table);
    if (!codePage_) return file_.Write(section);
    std::string bytes;
    codePage_->Encode(bytes, section);
    file_.Write(bytes);
}

std::string SchemaIniSection(const TableEntry& table) {
    return "\r\n\r\n[" + table.TableName + "]\r\n" + FormatLine(table.SFormat) +
           "\r\nColNameHeader=" + (table.SFirstColLine == 1 ? "True" : "False") + "\r\n" + QualifierLine(table.TextQ) +
           "MaxScanRows=0\r\n";
}

}  // namespace varnel
