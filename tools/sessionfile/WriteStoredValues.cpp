#include "tools/sessionfile/WriteStoredValues.h"

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"

namespace varnel::admin {
namespace {

std::string TomlValue(const Value& value) {
    if (value.Kind() == ValueKind::Text) return Quoted(value.AsText());
    if (value.Kind() == ValueKind::Boolean) return value.AsBoolean() ? "true" : "false";
    return DefaultText(value);
}

/// "{Pos = 0, TName = \"Orders\"}" without the Nulls.
std::string InlineTable(const StoredValues& values) {
    std::string text;
    for (const StoredValue& stored : values)
        if (!stored.value.IsNull())
            text += (text.empty() ? "" : ", ") + stored.column + " = " + TomlValue(stored.value);
    return "{" + text + "}";
}

std::string NullList(const StoredValues& values) {
    std::string text;
    for (const StoredValue& stored : values)
        if (stored.value.IsNull()) text += (text.empty() ? "" : ", ") + Quoted(stored.column);
    return "[" + text + "]";
}

bool IsConnection(std::string_view column) {
    return EqualNoCase(column, "SourceConnStr") || EqualNoCase(column, "TargetConnStr");
}

void AddBlock(TomlText& out, const StoredRow& row, Passwords passwords) {
    out.Line("");
    out.Line(row.table == "sessions" ? "[stored_session.sessions]" : "[[stored_session." + row.table + "]]");
    for (const auto& [column, value, place] : row.values) {
        if (value.IsNull()) continue;
        const bool hides = IsConnection(column) && value.Kind() == ValueKind::Text;
        out.Line(column + " = " +
                 (hides ? Quoted(WrittenConnection(std::string(value.AsText()), passwords)) : TomlValue(value)));
    }
}

}  // namespace

std::vector<std::string> StoredKeys(const StoredValues& values) {
    std::vector<std::string> keys;
    const std::string table = InlineTable(values), nulls = NullList(values);
    if (table != "{}") keys.push_back("stored = " + table);
    if (nulls != "[]") keys.push_back("stored_null = " + nulls);
    return keys;
}

std::string StoredSessionText(const SessionDefinition& session, Passwords passwords) {
    TomlText out;
    out.Comments(session.comments);
    out.Line("[[stored_session]]");
    out.Key("id", session.id);
    // Keys of the block itself stand before its tables.
    out.Line("SrcDCols = [");
    for (const StoredRow& row : session.rows)
        if (row.table == "SrcDCols") out.Line("    " + InlineTable(row.values) + ",");
    out.Line("]");
    for (const StoredRow& row : session.rows)
        if (row.table != "SrcDCols") AddBlock(out, row, passwords);
    return out.Text();
}

}  // namespace varnel::admin
