#include "tools/sessionfile/ReadColumnMapping.h"

#include <limits>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "tools/sessionfile/ColumnShortForm.h"
#include "tools/sessionfile/ColumnTypes.h"
#include "tools/sessionfile/ReadStoredValues.h"

namespace varnel::admin {
namespace {

template <class Integer>
constexpr std::int64_t kLeast = std::numeric_limits<Integer>::min();
template <class Integer>
constexpr std::int64_t kMost = std::numeric_limits<Integer>::max();

// A column as written in either form, before anything is taken for granted.
struct WrittenColumn {
    ColumnSides sides;
    std::optional<std::string> sourceTypeName;
    bool selected = true;
    StoredValues stored;
};

WrittenColumn ReadLongForm(const toml::table& table, Faults& faults) {
    KeyReader keys(table, "a column", faults);
    WrittenColumn written;
    ColumnSide& source = written.sides.source;
    source.name = keys.RequiredText("source", "source = \"CustomerID\"");
    source.type = keys.RequiredText("type", "type = \"Integer\"");
    source.width = keys.Number("width", "width = 50", kLeast<std::int32_t>, kMost<std::int32_t>);
    source.scale = keys.Number("scale", "scale = 2", kLeast<std::int16_t>, kMost<std::int16_t>);
    ColumnSide& target = written.sides.target.emplace();
    target.name = keys.Text("target", "target = \"CustomerID\"").value_or(source.name);
    target.type = keys.Text("target_type", "target_type = \"Long\"").value_or("");
    target.width = keys.Number("target_width", "target_width = 50", kLeast<std::int32_t>, kMost<std::int32_t>);
    target.scale = keys.Number("target_scale", "target_scale = 2", kLeast<std::int16_t>, kMost<std::int16_t>);
    written.sourceTypeName = keys.Text("source_type", "source_type = \"MONEY\"");
    written.selected = keys.Flag("selected", "selected = false").value_or(true);
    written.stored = ReadStoredValues(keys, faults);
    keys.Finish();
    return written;
}

template <class Integer>
Integer InRange(const std::optional<std::int64_t>& number, Integer otherwise, const std::string& what,
                const toml::node& node, Faults& faults) {
    if (!number) return otherwise;
    if (*number >= kLeast<Integer> && *number <= kMost<Integer>) return static_cast<Integer>(*number);
    faults.Add(node, what + " " + std::to_string(*number) + " is out of range; write a number from " +
                         std::to_string(kLeast<Integer>) + " to " + std::to_string(kMost<Integer>));
    return otherwise;
}

std::string CheckedType(const ColumnSide& source, const toml::node& node, Faults& faults) {
    const std::string column = "column \"" + source.name + "\"";
    if (source.type.empty()) {
        faults.Add(node, column + " needs the type of its source; write \"" + source.name + " Integer\"");
        return "";
    }
    const auto stored = StoredTypeName(source.type);
    if (!stored)
        faults.Add(node, column + " has the unknown type \"" + source.type + "\"; write one of " + AllTypeNames());
    else if (NeedsWidth(*stored) && !source.width)
        faults.Add(node, column + " needs a width; write " + *stored +
                             (stored->ends_with("umeric") || *stored == "Decimal" ? "(10,2)" : "(50)") +
                             ", in the long form width = 50");
    return stored.value_or("");
}

ColumnMapping Complete(const WrittenColumn& written, const toml::node& node, Faults& faults) {
    const ColumnSide& source = written.sides.source;
    const ColumnSide target = written.sides.target.value_or(ColumnSide{source.name, "", {}, {}});
    ColumnMapping column;
    column.source = source.name;
    column.target = target.name;
    column.type = CheckedType(source, node, faults);
    column.sourceTypeName = written.sourceTypeName.value_or(AsciiUpper(column.type));
    column.targetType = target.type;
    column.width = InRange(source.width, UsualWidth(column.type), "width", node, faults);
    column.scale = InRange<std::int16_t>(source.scale, 0, "scale", node, faults);
    column.targetWidth = InRange(target.width, column.width, "target width", node, faults);
    column.targetScale = InRange(target.scale, column.scale, "target scale", node, faults);
    column.selected = written.selected;
    column.stored = written.stored;
    return column;
}

}  // namespace

ColumnMapping ReadColumnMapping(const toml::node& node, bool needsTargetType, Faults& faults) {
    WrittenColumn written;
    if (const toml::table* table = node.as_table()) {
        written = ReadLongForm(*table, faults);
        if (written.sides.source.type.empty()) return {};
    } else if (const auto* text = node.as_string()) {
        bool read = false;
        faults.Note(node, [&] {
            written.sides = ParseShortForm(text->get());
            read = true;
        });
        if (!read) return {};
    } else {
        faults.Add(node, "a column must be a text or a table; write \"CustomerID Integer\"");
        return {};
    }
    ColumnMapping column = Complete(written, node, faults);
    if (needsTargetType && column.selected && column.targetType.empty())
        faults.Add(node, "column \"" + column.source +
                             "\" needs a target type, because its table does not exist yet and is made from these "
                             "columns; write \"" +
                             column.source + " " + column.type + " -> " + column.target + " Long\"");
    return column;
}

}  // namespace varnel::admin
