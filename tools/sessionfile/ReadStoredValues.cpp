#include "tools/sessionfile/ReadStoredValues.h"

#include <limits>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

void AddValue(StoredValues& values, std::string_view column, const toml::node& node, Faults& faults) {
    StoredValue stored{std::string(column), {}, faults.Place(node)};
    if (const auto* text = node.as_string())
        stored.value.SetText(text->get());
    else if (const auto* integer = node.as_integer())
        stored.value.SetInteger(integer->get());
    else if (const auto* number = node.as_floating_point())
        stored.value.SetDouble(number->get());
    else if (const auto* flag = node.as_boolean())
        stored.value.SetBoolean(flag->get());
    else
        faults.Add(node,
                   stored.column + " must be a text, a number, true or false; write " + stored.column + " = \"\"");
    values.push_back(std::move(stored));
}

StoredValues ReadRow(const toml::table& table, Faults& faults) {
    StoredValues values;
    for (const auto& [key, node] : table) AddValue(values, key.str(), node, faults);
    return values;
}

// A connection string of a stored row need not be readable; whatever *** it holds once was a password.
void CheckPasswords(const toml::table& row, Faults& faults) {
    for (const auto& [key, node] : row) {
        const bool isConnection = EqualNoCase(key.str(), "SourceConnStr") || EqualNoCase(key.str(), "TargetConnStr");
        if (isConnection && node.is_string() && node.as_string()->get().find("***") != std::string::npos)
            faults.Add(node, std::string(key.str()) + " holds ***, which only hides a password; write the password");
    }
}

void ReadRows(KeyReader& keys, std::string_view table, std::vector<StoredRow>& rows, Faults& faults) {
    const std::string example = "[[stored_session." + std::string(table) + "]] and its columns below";
    const toml::array* list = keys.Array(table, example);
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        const toml::node& node = *list->get(i);
        if (const toml::table* row = node.as_table())
            rows.push_back({std::string(table), ReadRow(*row, faults), faults.Place(node)});
        else
            faults.Add(node, "a row must be a table; write " + example);
    }
}

}  // namespace

StoredValues ReadStoredValues(KeyReader& keys, Faults& faults) {
    StoredValues values;
    if (const toml::table* table = keys.Table("stored", "stored = {Pos = 0}")) values = ReadRow(*table, faults);
    const std::string example = "stored_null = [\"TName\"]";
    const toml::array* nulls = keys.Array("stored_null", example);
    for (std::size_t i = 0; nulls && i < nulls->size(); ++i) {
        const toml::node& node = *nulls->get(i);
        if (const auto* column = node.as_string())
            values.push_back({column->get(), {}, faults.Place(node)});
        else
            faults.Add(node, "stored_null must be a list of column names; write " + example);
    }
    return values;
}

SessionDefinition ReadStoredSession(const toml::table& node, Faults& faults) {
    using Id = std::numeric_limits<std::int16_t>;
    KeyReader keys(node, "a stored session", faults);
    SessionDefinition session;
    session.place = faults.Place(node);
    session.id = static_cast<std::int16_t>(keys.RequiredNumber("id", "id = 12", Id::min(), Id::max()).value_or(0));
    const std::string example = "sessions = {SessionName = \"Nightly orders\"}";
    const toml::table* row = keys.Table("sessions", example);
    if (!keys.Has("sessions")) keys.Missing("sessions", example);
    if (row) CheckPasswords(*row, faults);
    if (row) session.rows.push_back({"sessions", ReadRow(*row, faults), faults.Place(*row)});
    ReadRows(keys, "vrtabs", session.rows, faults);
    ReadRows(keys, "SrcDCols", session.rows, faults);
    keys.Finish();
    return session;
}

}  // namespace varnel::admin
