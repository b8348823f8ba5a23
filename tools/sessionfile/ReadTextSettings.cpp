#include "tools/sessionfile/ReadTextSettings.h"

#include <algorithm>
#include <iterator>

namespace varnel::admin {
namespace {

/// The repository's code of a qualifier written as the character itself.
std::string QualifierCode(const std::string& written) {
    if (written == "\"") return "DQ";
    return written == "'" ? "SQ" : written;
}

/// A target type and the characters of its cells in the fixed layout; 0: as many as the column's width says.
struct OutputType {
    std::string_view type, word;
    std::int32_t width;
};

constexpr OutputType kOutputTypes[] = {
    {"BigInt", "20", 8},       {"Boolean", "11", 5},        {"Char", "Char", 0},          {"Currency", "6", 21},
    {"Date", "Date", 10},      {"DBDate", "133", 10},       {"DBTime", "134", 10},        {"DBTimeStamp", "135", 22},
    {"Decimal", "131", 19},    {"Double", "5", 17},         {"GUID", "72", 16},           {"Integer", "Integer", 7},
    {"LongVarChar", "201", 0}, {"LongVarWChar", "203", 0},  {"Numeric", "131", 19},       {"Single", "4", 4},
    {"SmallInt", "2", 7},      {"TinyInt", "16", 1},        {"UnsignedTinyInt", "17", 1}, {"Varchar", "200", 0},
    {"VarNumeric", "139", 40}, {"VarWchar", "VarWchar", 0}, {"Wchar", "130", 0},
};

}  // namespace

SourceText ReadSourceText(const toml::table& table, Faults& faults) {
    KeyReader keys(table, "source_text", faults);
    SourceText text;
    text.delimiter = keys.Text("delimiter", "delimiter = \",\"").value_or(text.delimiter);
    if (text.delimiter.empty() || text.delimiter.find('"') != std::string::npos)
        faults.Add(
            keys.At("delimiter"),
            "delimiter must not be empty nor hold a double quote; write delimiter = \",\", or \"\\t\" for a tab");
    text.qualifier = QualifierCode(keys.Text("qualifier", "qualifier = '\"'").value_or(text.qualifier));
    text.header = keys.Flag("header", "header = true").value_or(text.header);
    keys.Finish();
    return text;
}

TargetText ReadTargetText(const toml::table& table, Faults& faults) {
    KeyReader keys(table, "target_text", faults);
    TargetText text;
    text.format = keys.Word("format", "format = \"DELIMITED\"", {"DELIMITED", "FIXED"}).value_or(text.format);
    text.delimiter = keys.Text("delimiter", "delimiter = \",\"").value_or(text.delimiter);
    text.qualifier = QualifierCode(keys.Text("qualifier", "qualifier = '\"'").value_or(text.qualifier));
    text.header = keys.Flag("header", "header = true").value_or(text.header);
    text.folder = keys.Text("folder", "folder = 'C:\\out'").value_or("");
    text.extension = keys.Text("extension", "extension = \".csv\"").value_or("");
    keys.Finish();
    return text;
}

void ReadPolling(KeyReader& keys, SessionDefinition& session, Faults& faults) {
    const std::string_view example = "polling = {folder = 'C:\\in', pattern = \"*.csv\", rename = \"done\"}";
    const toml::table* table = keys.Table("polling", example);
    if (session.sourceKind == "TEXTPOLL" && !table) keys.Missing("polling", example);
    if (!table) return;
    if (session.sourceKind != "TEXTPOLL")
        faults.Add(*table, "polling belongs to a source of kind TEXTPOLL; remove it, or write kind = \"TEXTPOLL\"");
    KeyReader polling(*table, "polling", faults);
    session.pollFolder = polling.RequiredText("folder", "folder = 'C:\\in'");
    session.pollPattern = polling.RequiredText("pattern", "pattern = \"*.csv\"");
    const auto rename = polling.Text("rename", "rename = \"done\"");
    if (!polling.Has("rename")) polling.Missing("rename", "rename = \"done\"");
    session.pollRename = rename.value_or("");
    polling.Finish();
}

void CheckTextKeys(const KeyReader& keys, const SessionDefinition& session, Faults& faults) {
    if (keys.Has("source_text") && !session.sourceKind.empty() && !IsTextSource(session))
        faults.Add(keys.At("source_text"), "source_text belongs to a source of kind TEXT or TEXTPOLL; remove it");
    if (keys.Has("target_text") && !session.targetKind.empty() && session.targetKind != "TEXT")
        faults.Add(keys.At("target_text"), "target_text belongs to a target of kind TEXT; remove it");
}

std::string UsualTarget(const SessionDefinition& session, const std::string& source) {
    const bool isPolled = session.sourceKind == "TEXTPOLL";
    if (session.targetKind != "TEXT") return isPolled ? "" : source;
    std::string folder = session.targetText.folder;
    if (isPolled || folder.empty()) return "";
    if (!folder.ends_with('\\') && !folder.ends_with('/')) {
        folder += folder.find('/') != std::string::npos && folder.find('\\') == std::string::npos ? '/' : '\\';
    }
    return folder + source + session.targetText.extension;
}

void GiveOutputType(ColumnMapping& column) {
    if (!column.targetType.empty()) return;
    const auto* known = std::find_if(std::begin(kOutputTypes), std::end(kOutputTypes),
                                     [&](const OutputType& output) { return output.type == column.type; });
    if (known == std::end(kOutputTypes)) return;
    column.targetType = known->word;
    if (known->width > 0) column.targetWidth = known->width, column.targetScale = 0;
}

}  // namespace varnel::admin
