#include "tools/repository/HeldRows.h"

#include <algorithm>
#include <limits>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "platform/Rounding.h"

namespace varnel::admin {
namespace {

Value WholeNumber(double number, std::string_view type) {
    return Value::OfInteger(type == "SHORT" ? std::int64_t{ToInt16(number)} : std::int64_t{ToInt32(number)});
}

// A fraction is rounded away. Throws Error{Conversion} without a place.
Value Converted(std::string_view type, const Value& value) {
    if (value.IsNull()) return {};
    if (type == "YESNO") return Value::OfBoolean(ToBoolean(value));
    if (type == "DOUBLE") return Value::OfDouble(ToDouble(value));
    if (type == "SHORT" || type == "LONG") return WholeNumber(ToDouble(value), type);
    if (value.Kind() == ValueKind::Bytes) throw Error(ErrorKind::Conversion, "", "bytes are no text");
    return Value::OfText(DefaultText(value));
}

bool LosesFraction(const Value& before, const Value& after) {
    return after.Kind() == ValueKind::Integer && ToDouble(before) != ToDouble(after);
}

std::string NameOf(const RepositoryTable& table, std::string_view column) {
    return std::string(table.name) + "." + std::string(column);
}

Value ConvertedAt(const RepositoryTable& table, const RepositoryColumn& column, const StoredValue& stored) {
    try {
        return Converted(column.type, stored.value);
    } catch (const Error& error) {
        const std::string place = stored.place.empty() ? "" : stored.place + ": ";
        throw Error(ErrorKind::Conversion, stored.place,
                    place + NameOf(table, column.name) + " holds a value that its type (" + std::string(column.type) +
                        ") cannot: " + error.what());
    }
}

void NoteOtherColumns(const RepositoryTable& table, const StoredTable& stored, std::vector<std::string>& notes) {
    for (std::size_t k = 0; k < stored.columns.size(); ++k) {
        const bool ours = std::any_of(table.columns.begin(), table.columns.end(),
                                      [&](const auto& known) { return EqualNoCase(known.name, stored.columns[k]); });
        const bool holds =
            std::any_of(stored.rows.begin(), stored.rows.end(), [&](const auto& row) { return !row[k].IsNull(); });
        if (!ours && holds)
            notes.push_back(NameOf(table, stored.columns[k]) +
                            " is left out: no session needs it, and a session file has no place for it");
    }
}

}  // namespace

Value HeldValue(const RepositoryTable& table, const RepositoryColumn& column, const StoredValue& stored) {
    Value held = ConvertedAt(table, column, stored);
    if (!held.IsNull() && LosesFraction(stored.value, held))
        throw Error(ErrorKind::Conversion, stored.place,
                    stored.place + ": " + NameOf(table, column.name) + " takes whole numbers only; write " +
                        std::string(column.name) + " = " + DefaultText(held));
    return held;
}

StoredRows HeldRows(const StoredRows& stored, std::vector<std::string>& notes) {
    StoredRows held;
    for (std::size_t t = 0; t < held.size(); ++t) {
        const RepositoryTable& table = kRepositoryTables[t];
        NoteOtherColumns(table, stored[t], notes);
        held[t].rows.resize(stored[t].rows.size());
        for (const RepositoryColumn& column : table.columns) {
            held[t].columns.emplace_back(column.name);
            for (std::size_t row = 0; row < stored[t].rows.size(); ++row) {
                const Value& before = stored[t].At(row, column.name);
                held[t].rows[row].push_back(ConvertedAt(table, column, {std::string(column.name), before, ""}));
                const Value& after = held[t].rows[row].back();
                if (!after.IsNull() && LosesFraction(before, after))
                    notes.push_back(NameOf(table, column.name) + " " + DefaultText(before) + " is written as " +
                                    DefaultText(after) + ", which is how it is read");
            }
        }
    }
    return held;
}

}  // namespace varnel::admin
