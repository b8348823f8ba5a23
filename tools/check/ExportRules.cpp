#include "tools/check/ExportRules.h"

#include <filesystem>
#include <system_error>

#include "ado/types/ConnectionString.h"
#include "export/OutputLines.h"
#include "export/Padding.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "platform/StoredPath.h"
#include "tools/check/NearestName.h"
#include "tools/check/TypeTraits.h"

namespace varnel::admin {
namespace {

constexpr int kUtf8 = 65001;

/// The file that the table is read from; "" for a table of a server.
std::string SourceFile(const Side& source, const TableFacts& facts) {
    const std::string& place = source.Place().path;
    if (place.empty() || !FolderExists(place)) return place;
    return place + (place.ends_with('\\') || place.ends_with('/') ? "" : "/") + facts.From().TableName;
}

void CheckOutputFile(const Side& source, const TableFacts& facts) {
    const std::string& path = facts.To().TableName;
    try {
        const std::string why = path.empty() ? "its path is empty" : WhyNotWritable(path);
        if (!why.empty()) {
            facts.Found().Fault("", "the output file cannot be written: " + why,
                                "make the folder, or correct DestTableName, which holds the whole path");
            return;
        }
        const std::string from = SourceFile(source, facts);
        std::error_code ignored;
        if (!from.empty() && std::filesystem::equivalent(LocalPath(from), LocalPath(path), ignored))
            facts.Found().Fault("", "the output file '" + path + "' is the source itself, which would be overwritten",
                                "write to another file");
        else if (FileExists(path))
            facts.Found().Note("", "the output file '" + path + "' exists and is written anew");
    } catch (const Error& error) {
        facts.Found().Fault("", std::string("the output file cannot be written: ") + error.what(),
                            "make the drives/ or shares/ folder, or correct DestTableName");
    }
}

/// Rows are never wider than their cells may be; a header that is wider or narrower stands askew.
void CheckFixedCell(const TableFacts& facts, std::size_t k, bool certainOnly) {
    const CellRule rule = RuleOf(facts, k);
    const ColumnEntry& column = *facts.columns[k];
    if (IsLongOrBinary(facts.source[k].type)) {
        facts.Found().Fault(column.SCName, "a fixed-width file cannot hold the long column: the table is skipped",
                            "de-select the column, or use the layout DELIMITED");
        return;
    }
    std::string row, header;
    AppendFixedCell(row, rule, Value());
    AppendHeaderCell(header, column, false);
    if (!certainOnly && rule.group == CellGroup::Number && NumberWidth(rule.type) < TextLengthOf(facts.source[k]))
        facts.Found().Warning(column.SCName,
                              "numbers of more than " + std::to_string(NumberWidth(rule.type)) +
                                  " characters are cut at the end without a word",
                              "use the layout DELIMITED when there may be such numbers");
    if (rule.group == CellGroup::Other && SortOf(rule.type) == TypeSort::Guid)
        facts.Found().Fault(column.SCName, "a GUID has no fixed-width cell: every row with one fails",
                            "de-select the column, or use the layout DELIMITED");
    if (SessionDef.DFirstColLine && CharacterCount(header) != CharacterCount(row))
        facts.Found().Warning(column.SCName,
                              "its heading takes " + std::to_string(CharacterCount(header)) +
                                  " characters and its cells take " + std::to_string(CharacterCount(row)) +
                                  ": the columns behind it do not line up with their headings",
                              "correct DDType and DWidth, or write no header line");
}

void CheckDelimited(const TableFacts& facts) {
    bool hasText = false;
    for (const ColumnInfo& column : facts.source) hasText |= IsText(column.type);
    if (SessionDef.DFormat.empty() && facts.columns.size() > 1)
        facts.Found().Warning("DFormat", "there is no separator: the cells of a line run together",
                              "store a separator, such as a comma");
    if (hasText && SessionDef.DTextQ.empty())
        facts.Found().Warning("DTextQ",
                              "texts are written without a qualifier: a separator or line break in one "
                              "makes the line unreadable",
                              "store DQ for the double quote");
}

void CheckCharacters(const TableFacts& facts, int codePage) {
    if (codePage == kUtf8) return;
    std::vector<std::string> texts;
    for (const ColumnInfo& column : facts.source)
        if (IsText(column.type)) texts.push_back(column.name);
    if (texts.empty()) return;
    facts.Found().Warning("",
                          "the file is written in code page " + std::to_string(codePage) + ": where " +
                              ShortList(texts) +
                              " hold a character that it lacks, the cell stays empty and is "
                              "reported",
                          "put CharacterSet=65001 into the Extended Properties of the target connection string, or "
                          "look with --values");
}

}  // namespace

void CheckExportCodePage(Findings& found) {
    try {
        const int codePage = ExportCodePage(SessionDef.TargetConnStr);
        if (codePage != kUtf8 && !CodePage::IsSupported(codePage))
            found.Fault("TargetConnStr", "the code page " + std::to_string(codePage) + " is not known here",
                        "write CharacterSet=65001 or another code page number");
    } catch (const Error& error) {
        found.Fault("TargetConnStr", error.what(), "correct the target connection string");
    }
}

void CheckExport(const Side& source, const TableFacts& facts, bool certainOnly) {
    CheckOutputFile(source, facts);
    if (facts.source.empty()) return;
    const bool delimited = SessionDef.FileFormat == "DELIMITED";
    if (delimited) CheckDelimited(facts);
    for (std::size_t k = 0; !delimited && k < facts.source.size(); ++k) CheckFixedCell(facts, k, certainOnly);
    try {
        if (!certainOnly) CheckCharacters(facts, ExportCodePage(SessionDef.TargetConnStr));
    } catch (const Error&) {  // told once for the session
    }
}

CellRule RuleOf(const TableFacts& facts, std::size_t k) {
    const bool fromText = SessionDef.SourceDBName == "TEXT";
    const ColumnInfo& field = facts.source[k];
    return {fromText ? GroupOfTypeName(facts.columns[k]->DDType) : GroupOfType(field.type), field.type,
            field.definedSize, fromText};
}

}  // namespace varnel::admin
