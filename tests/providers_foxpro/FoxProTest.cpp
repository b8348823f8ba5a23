#include "tests/providers_foxpro/FoxProTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <numeric>
#include <sstream>

#include "ado/types/ValueText.h"

namespace varnel::foxpro {
namespace {

std::string TextOfMoment(DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", civil.year, civil.month, civil.day, civil.hour,
                  civil.minute, civil.second);
    return moment.micros == 0 ? std::string(text, 10) : text;
}

std::string EscapedText(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\r') out += "\\r";
        if (c == '\n') out += "\\n";
        if (c != '\r' && c != '\n') out += c;
    }
    out.resize(out.find_last_not_of(' ') + 1);
    return out;
}

std::string HexText(std::span<const std::uint8_t> bytes) {
    std::string out;
    char two[3];
    for (const std::uint8_t byte : bytes) std::snprintf(two, sizeof two, "%02x", byte), out += two;
    return out;
}

Lines LinesOfCommand(const std::string& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    char block[4096];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, pipe.get())) > 0;) output.append(block, got);
    Lines lines;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace

std::string SamplePath(std::string_view name) {
    return std::string(VARNEL_TESTS_FOLDER) + "/data/foxpro/" + std::string(name);
}

std::string PlainText(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return "";
        case ValueKind::Boolean:
            return value.AsBoolean() ? "T" : "F";
        case ValueKind::DateTime:
            return TextOfMoment(value.AsDateTime());
        case ValueKind::Text:
            return EscapedText(value.AsText());
        case ValueKind::Bytes:
            return HexText(value.AsBytes());
        case ValueKind::Failure:
            return "!" + std::string(value.FailureText());
        default:
            return DefaultText(value);
    }
}

std::string LineOf(const std::vector<Value>& row) {
    std::string line;
    for (const Value& value : row) line += (&value == row.data() ? "" : "|") + PlainText(value);
    return line;
}

void AppendRows(Lines& lines, TableFile& table) {
    std::vector<std::size_t> wanted(table.Columns().size());
    std::iota(wanted.begin(), wanted.end(), std::size_t{0});
    std::vector<Value> row(wanted.size());
    for (const auto rows = table.Rows(wanted); rows->Next(row);) lines.push_back(LineOf(row));
}

Lines RowsOf(TableFile& table) {
    Lines lines;
    AppendRows(lines, table);
    return lines;
}

Lines RowsOfFile(const std::string& path, DatabaseOptions options) {
    FoxProDatabase database(path, options);
    return RowsOf(*database.OpenTable(path));
}

std::string Difference(const Lines& ours, const Lines& theirs) {
    for (std::size_t k = 0; k < std::min(ours.size(), theirs.size()); ++k) {
        if (ours[k] == theirs[k]) continue;
        const auto at = std::mismatch(ours[k].begin(), ours[k].end(), theirs[k].begin(), theirs[k].end()).first;
        const auto from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(at - ours[k].begin() - 40, 0));
        return "line " + std::to_string(k + 1) + ": '" + ours[k].substr(from, 200) + "' against '" +
               theirs[k].substr(std::min(from, theirs[k].size()), 200) + "'";
    }
    if (ours.size() == theirs.size()) return "";
    return std::to_string(ours.size()) + " lines against " + std::to_string(theirs.size());
}

Lines RowsByReader(const std::string& reader, const std::string& path) {
    return LinesOfCommand("/usr/bin/python3 '" VARNEL_TESTS_FOLDER "/providers_foxpro/dump_table.py' " + reader + " '" +
                          path + "'");
}

bool HasReader(const std::string& reader) {
    return std::system(("/usr/bin/python3 -c 'import " + reader + "' >/dev/null 2>&1").c_str()) == 0;
}

ColumnDefinition Column(std::string name, std::string typeWord, std::vector<int> arguments, bool notNull) {
    ColumnDefinition column;
    column.name = std::move(name);
    column.typeWord = std::move(typeWord);
    column.typeArguments = std::move(arguments);
    column.notNull = notNull;
    return column;
}

void Add(TableFile& table, std::vector<Value> values) {
    table.Append(values, std::vector<bool>(values.size(), true));
}

}  // namespace varnel::foxpro
